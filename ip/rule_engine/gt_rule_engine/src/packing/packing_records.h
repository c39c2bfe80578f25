#pragma once

#include <lanecfg/gt_quad_packing.h>

#include <map>
#include <string>

namespace sable_lanecfg {

/// Fields of a candidate record.
inline constexpr const char* ratePinField = "rate_pin";
inline constexpr const char* ratesField = "rates";
inline constexpr const char* refclksField = "refclks";
inline constexpr const char* refclkSourcesField = "refclkSources";

using packingRecord = std::map<std::string, packingField>;

/// The lists under a field, none where the record has no value there. Throws boost::bad_get when
/// the field holds something else.
template <class Lists>
const Lists& listsOf(const packingRecord& record, const char* field) {
    static const Lists none;
    const auto found = record.find(field);
    const bool isBlank = found == record.end() || found->second.which() == 0;
    return isBlank ? none : boost::get<Lists>(found->second);
}

/// The list of a slot, empty beyond the last one.
template <class Lists>
const typename Lists::value_type& slotOf(const Lists& lists, std::size_t slot) {
    static const typename Lists::value_type none;
    return slot < lists.size() ? lists[slot] : none;
}

/// Whether a record uses a slot. One that it does not use has empty lists.
inline bool usesSlot(const packingRecord& record, std::size_t slot) {
    return !slotOf(listsOf<packingNumbers>(record, refclksField), slot).empty() ||
           !slotOf(listsOf<packingNumbers>(record, ratesField), slot).empty() ||
           !slotOf(listsOf<packingTexts>(record, refclkSourcesField), slot).empty();
}

}  // namespace sable_lanecfg
