#pragma once

#include "support/packing_request.h"

#include <lanecfg/gt_rule_engine.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lanecfg_test {

/// What the packing left of one PLL, a row for each slot.
struct PllRows {
    sable_lanecfg::packingNumbers frequencies;
    sable_lanecfg::packingNumbers shared;
    sable_lanecfg::packingNumbers clocks;
    sable_lanecfg::packingNumbers clockIds;
    sable_lanecfg::packingTexts sources;
};

/// Rows of a PLL with these frequencies, each with 156.25 MHz from R0; `shared` as of the rows.
PllRows rowsOf(const sable_lanecfg::packingNumbers& frequencies, double shared = 0.0);

/// An engine of the family without rules, for services that work on user parameters.
class ServiceEngine : public testing::Test {
  protected:
    void make(const PackingRequest& request);

    /// Enters rows as if the packing had found them.
    void enterRows(const std::string& dual, const std::string& group, const std::string& pll,
                   const PllRows& rows);

    /// The parameters of a place (direction 0 transmit, 1 receive).
    const std::map<std::string, sable_lanecfg::ruleValue>& parametersAt(std::size_t direction,
                                                                        std::size_t lane,
                                                                        std::size_t slot = 0) const;

    bool has(std::size_t direction, std::size_t lane, std::size_t slot,
             const std::string& name) const;

    template <class Value>
    Value valueAt(std::size_t direction, std::size_t lane, std::size_t slot,
                  const std::string& name) const {
        const auto& parameters = parametersAt(direction, lane, slot);
        const auto found = parameters.find(name);
        const Value* const value =
            found == parameters.end() ? nullptr : boost::get<Value>(&found->second);
        EXPECT_NE(value, nullptr) << name << " of lane " << lane << " at rate " << slot;
        return value == nullptr ? Value() : *value;
    }

    std::unique_ptr<sable_lanecfg::gt_rule_engine> engine;
};

/// An engine of four lanes, each in its pass of rate 0, whose registers of the quad hold 0. The
/// numbers of a pass tell its lane: dividers 10 and more, words of PLLs 100 and more, and in the
/// reference clock words selectors 1 and more.
class QuadWordsEngine : public ServiceEngine {
  protected:
    /// `database` names a folder of the reference data, which has the registers. The fields of the
    /// reference clock words begin with the prefixes.
    void makeQuad(const std::string& database, const std::vector<std::string>& registers,
                  const std::vector<std::string>& referencePrefixes);

    /// Gives a variable of a lane's pass a value.
    void set(std::size_t lane, const std::string& name, const sable_lanecfg::ruleValue& value);
};

}  // namespace lanecfg_test
