#include "block/rate_table_limits.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/join.hpp>

#include <cstddef>
#include <string>
#include <utility>

namespace sable_lanecfg {

namespace {

constexpr std::size_t wordsPerLine = 8;
constexpr std::size_t digitsPerNibble = 4;
constexpr int bytesPerWord = 4;

void beginGeneration() {
    rule_engine_utilities::clean_log();
}

void beginLoggedGeneration() {
    beginGeneration();
    rule_engine_utilities::write_log("*****New Version*****");
}

/// Lends the series to the steps of a generation while it lives.
class lentSeries {
  public:
    lentSeries(seriesCache*& place, seriesCache& series) : place_(place) { place_ = &series; }
    ~lentSeries() { place_ = nullptr; }
    lentSeries(const lentSeries&) = delete;
    lentSeries& operator=(const lentSeries&) = delete;

  private:
    seriesCache*& place_;
};

}  // namespace

void gt_rule_engine::analyseRegisters(RateTableChannel* channels, bool withStaticList) {
    parseRateTableData_New(channels);
    if (withStaticList) {
        statNpiRegList = parseRateTableDataForStaticAttributes(channels);
    }
}

std::vector<std::string> gt_rule_engine::rateTableWords(bool withStaticList) {
    // Critical and static registers and the words of the table come from the same snapshots, which
    // are walked once for all.
    seriesCache series;
    const lentSeries lent(analysedSeries, series);
    RateTableChannel channels[rateTableChannels];
    parseHeaderInfo_New(channels);
    analyseRegisters(channels, withStaticList);
    adjustRateTable_New(channels);
    return getRateTable_New(channels);
}

std::vector<std::string> gt_rule_engine::getRateTable_New(RateTableChannel* channels) {
    RateTableControl control;
    separateCriticalAttributes_New(channels, control);
    sortRateTable_New(channels, control);
    writeRateTable_New(channels, control);
    return std::move(control.rateTable);
}

std::string gt_rule_engine::generateRateTable(bool /*unused*/) {
    beginLoggedGeneration();
    const std::vector<std::string> words = rateTableWords(true);
    std::string text = "//Version 2.0 32-bit\n";
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i % wordsPerLine == 0) {
            text += "  ";
        }
        for (std::size_t digit = 0; digit < words[i].size(); digit += digitsPerNibble) {
            text += nibbleToHex.at(words[i].substr(digit, digitsPerNibble));
        }
        text += ' ';
        if (i % wordsPerLine == wordsPerLine - 1) {
            text += '\n';
        }
    }
    return text;
}

std::string gt_rule_engine::generateRateTableInBinary() {
    beginLoggedGeneration();
    return boost::algorithm::join(rateTableWords(false), "");
}

int gt_rule_engine::getRateTableSize() {
    beginGeneration();
    return bytesPerWord * static_cast<int>(rateTableWords(false).size());
}

}  // namespace sable_lanecfg
