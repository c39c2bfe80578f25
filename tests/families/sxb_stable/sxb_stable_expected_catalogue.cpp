#include "sxb_stable_expected_catalogue.h"

#include "families/sxb/sxb_expected_catalogue.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace lanecfg_test {

namespace {

using sable_lanecfg::fieldKind;

/// What one row of the lists says.
enum class Change {
    constant,    ///< only frozen
    computed,    ///< only frozen
    word,        ///< only frozen, without fields
    composed,    ///< only frozen; its fields have rows of their own
    gone,        ///< a field, word or step that only the current rules have
    value,       ///< a constant of both
    copyFixed,   ///< a constant that follows a flag now
    wordFixed,   ///< a word of a constant that is composed now
    wordDropped  ///< a composed word that is constant now
};

struct Difference {
    Change change;
    std::string set;
    std::string registerName;
    std::string field;
    unsigned int before;
    unsigned int after;
};

const std::vector<Difference>& allDifferences() {
    static const std::vector<Difference> differences{
#define SXB_STABLE_CONSTANT(set, name, field, value) \
    {Change::constant, #set, #name, #field, 0, value},
#define SXB_STABLE_COMPUTED(set, name, field) {Change::computed, #set, #name, #field, 0, 0},
#define SXB_STABLE_WORD(set, name, value) {Change::word, #set, #name, {}, 0, value},
#define SXB_STABLE_COMPOSED(set, name) {Change::composed, #set, #name, {}, 0, 0},
#define SXB_CURRENT(set, name, field) {Change::gone, #set, #name, #field, 0, 0},
#define SXB_CURRENT_WORD(set, name) {Change::gone, #set, #name, {}, 0, 0},
#define SXB_CHANGED(set, name, field, before, after) \
    {Change::value, #set, #name, #field, before, after},
#define SXB_CHANGED_COPY(set, name, field, after) \
    {Change::copyFixed, #set, #name, #field, 0, after},
#define SXB_EMPTIED_WORD(set, name, after) {Change::wordFixed, #set, #name, {}, 0, after},
#define SXB_FILLED_WORD(set, name, before) {Change::wordDropped, #set, #name, {}, before, 0},
#include "sxb_stable_differences.inc"
#undef SXB_STABLE_CONSTANT
#undef SXB_STABLE_COMPUTED
#undef SXB_STABLE_WORD
#undef SXB_STABLE_COMPOSED
#undef SXB_CURRENT
#undef SXB_CURRENT_WORD
#undef SXB_CHANGED
#undef SXB_CHANGED_COPY
#undef SXB_EMPTIED_WORD
#undef SXB_FILLED_WORD
    };
    return differences;
}

std::string nameOf(const Difference& row) {
    return row.field.empty() ? row.registerName : row.registerName + "." + row.field;
}

/// The list of rows while the differences are applied.
class changed_rows {
  public:
    explicit changed_rows(std::vector<ExpectedField> rows) : rows_(std::move(rows)) {}

    void apply(const Difference& row) {
        switch (row.change) {
            case Change::constant:
                put(row, fieldKind::constant);
                break;
            case Change::computed:
                put(row, fieldKind::logic);
                break;
            case Change::word:
            case Change::wordFixed:
                require(!hasRegister(row), row);
                put(row, fieldKind::constant);
                break;
            case Change::composed:
                require(hasRegister(row), row);
                break;
            case Change::gone:
                remove(row);
                break;
            case Change::value:
                require(found(row)->kind == fieldKind::constant && found(row)->value == row.before,
                        row);
                found(row)->value = row.after;
                break;
            case Change::copyFixed:
                require(found(row)->kind == fieldKind::copy, row);
                put(row, fieldKind::constant);
                break;
            case Change::wordDropped:
                require(found(row)->value == row.before, row);
                rows_.erase(found(row));
                break;
        }
    }

    void erase(const std::string& set, const std::string& registerName, const std::string& field) {
        rows_.erase(found({Change::gone, set, registerName, field, 0, 0}));
    }

    std::vector<ExpectedField> take() { return std::move(rows_); }

  private:
    using iterator = std::vector<ExpectedField>::iterator;

    static void require(bool fits, const Difference& row) {
        if (!fits) {
            throw std::logic_error("the row of " + nameOf(row) + " does not fit");
        }
    }

    iterator rowOf(const Difference& row) {
        return std::find_if(rows_.begin(), rows_.end(), [&row](const ExpectedField& held) {
            return held.set == row.set && held.registerName == row.registerName &&
                   held.field == row.field;
        });
    }

    iterator found(const Difference& row) {
        const iterator place = rowOf(row);
        require(place != rows_.end(), row);
        return place;
    }

    /// Behind the last row of the register; the end without one.
    iterator endOfRegister(const Difference& row) {
        const auto last =
            std::find_if(rows_.rbegin(), rows_.rend(), [&row](const ExpectedField& held) {
                return held.set == row.set && held.registerName == row.registerName;
            });
        return last == rows_.rend() ? rows_.end() : last.base();
    }

    bool hasRegister(const Difference& row) {
        return std::any_of(rows_.begin(), rows_.end(), [&row](const ExpectedField& held) {
            return held.registerName == row.registerName;
        });
    }

    /// In the place of the field, or behind the register's other fields.
    void put(const Difference& row, fieldKind kind) {
        const ExpectedField changed{row.set, row.registerName, row.field, kind, row.after, {}};
        const iterator place = rowOf(row);
        if (place == rows_.end()) {
            rows_.insert(endOfRegister(row), changed);
        } else {
            *place = changed;
        }
    }

    /// A composed word has no row: it goes with its fields.
    void remove(const Difference& row) {
        if (row.field.empty()) {
            require(!hasRegister(row), row);
        } else {
            rows_.erase(found(row));
        }
    }

    std::vector<ExpectedField> rows_;
};

}  // namespace

const std::vector<ChangedRegister>& changedSxbRegisters() {
    static const std::vector<ChangedRegister> registers = [] {
        std::vector<ChangedRegister> named;
        std::set<std::string> seen;
        for (const Difference& row : allDifferences()) {
            if (seen.insert(row.registerName).second) {
                named.push_back({row.set, row.registerName});
            }
        }
        return named;
    }();
    return registers;
}

const std::set<std::string>& changedSxbNames() {
    static const std::set<std::string> names = [] {
        std::set<std::string> all;
        for (const Difference& row : allDifferences()) {
            all.insert(nameOf(row));
        }
        return all;
    }();
    return names;
}

const std::vector<ExpectedField>& expectedSxbStableFields() {
    static const std::vector<ExpectedField> fields = [] {
        changed_rows rows(expectedSxbFields());
        for (const Difference& row : allDifferences()) {
            rows.apply(row);
        }
        // Belongs to the recovery rule, which the constants replace; it has none.
        rows.erase("RX", "RX_CDR_CFG0", "LOWLATENCY_OVR");
        return rows.take();
    }();
    return fields;
}

}  // namespace lanecfg_test
