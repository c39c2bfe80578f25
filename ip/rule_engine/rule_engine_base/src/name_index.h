#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// Numbers by name. The names stay with the caller, who tells them by number.
///
/// Registering a rule set is mostly the search for names, in more memory than the caches hold.
/// Slots of eight bytes, probed one after the other, let a search touch one line of memory before
/// the name itself, where a node for each name would cost three.
class name_index {
  public:
    using number = std::uint32_t;

    /// What no name has.
    static constexpr number none = std::numeric_limits<number>::max();

    /// Hash of a name, for whoever may enter it after a search.
    static std::uint32_t hashOf(std::string_view name) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    }

    /// Number of the name, or `none`. `nameOf` gives the name of a number that was entered.
    template <class NameOf>
    number find(std::string_view name, std::uint32_t hash, const NameOf& nameOf) const {
        for (std::size_t position = hash;; ++position) {
            const slot& probed = slots[position & (slots.size() - 1)];
            if (probed.taken == none || (probed.hash == hash && nameOf(probed.taken) == name)) {
                return probed.taken;
            }
        }
    }

    /// Enters a name that is not there, by its hash.
    void enter(std::uint32_t hash, number entered) {
        if (2 * (count + 1) > slots.size()) {
            grow();
        }
        place({hash, entered});
        ++count;
    }

  private:
    struct slot {
        std::uint32_t hash = 0;
        number taken = none;
    };

    void place(slot placed) {
        std::size_t position = placed.hash;
        while (slots[position & (slots.size() - 1)].taken != none) {
            ++position;
        }
        slots[position & (slots.size() - 1)] = placed;
    }

    void grow() {
        for (const slot& kept : std::exchange(slots, std::vector<slot>(4 * slots.size()))) {
            if (kept.taken != none) {
                place(kept);
            }
        }
    }

    /// A power of two of them, at least half of them free, so that every search ends.
    std::vector<slot> slots = std::vector<slot>(64);
    std::size_t count = 0;
};

}  // namespace sable_lanecfg
