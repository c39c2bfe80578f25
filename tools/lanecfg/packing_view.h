#pragma once

#include "table.h"

#include <lanecfg/gt_quad_packing.h>

#include <functional>
#include <set>
#include <string>

namespace sable_lanecfg::tool {

/// A candidate record of a packing, taken apart.
struct PackingRecordView {
    PackingRecordView(int key, const std::map<std::string, packingField>& record);

    /// Slots that the lane and direction uses.
    std::set<int> usedSlots() const;

    int lane;
    bool isReceive;
    std::string ratePin;
    packingNumbers rates;
    packingNumbers refclks;
    packingTexts sources;
};

/// One PLL of a dual in one packing group: its candidates, and what is left of them.
struct PllView {
    std::string dual;
    std::string group;
    std::string pll;
    std::vector<PackingRecordView> records;
    const std::map<std::string, packingNumbers>& left;
    const std::map<std::string, packingTexts>& leftTexts;

    /// Whether the lanes are on different rate pins, so that one frequency has to do for all rates.
    bool isIndependent() const;
    /// The slots that an entry of what is left is about.
    std::set<int> slotsOf(int entry) const;
};

/// All PLLs in use, by dual, group and name.
std::vector<PllView> pllViews(const gt_quad_packing& packing);

/// The candidates of every PLL, rate and lane, and what is left of them.
Table candidateTable(const gt_quad_packing& packing);
Json candidateDocument(const gt_quad_packing& packing);

}  // namespace sable_lanecfg::tool
