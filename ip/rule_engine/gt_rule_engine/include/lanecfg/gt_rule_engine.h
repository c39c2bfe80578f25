#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_base.h>

#include <boost/optional.hpp>

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Results of the packing, by dual, rate group, PLL and result name; a row for each rate slot.
template <class T>
using packingResultMap =
    std::map<std::string,
             std::map<std::string,
                      std::map<std::string, std::map<std::string, std::vector<std::vector<T>>>>>>;

/// Rule engine of one transceiver quad.
///
/// Adds to the rule graph the usage of channels, the user parameters, the register database, and
/// the run that evaluates the graph once for every channel and combination of its rates. A family
/// registers its rules and calls `runBlockRules` once; every answer is read from `blockVarMap`.
class LANECFG_EXPORT gt_rule_engine : public rule_engine_base {
  public:
    gt_rule_engine(const std::string& family, const std::vector<channelUsageInfo>& usage,
                   const std::map<std::string, paramTypeInfo>& paramTypes,
                   const userParamStore& userParams,
                   const std::map<std::string, attributeInfo>& attributes,
                   const std::map<std::string, std::vector<std::string>>& settings);
    gt_rule_engine(const gt_rule_engine&) = delete;
    gt_rule_engine& operator=(const gt_rule_engine&) = delete;

    /// Clears and fills `blockVarMap`: for each channel its passes, transmit rate outer, receive
    /// rate inner. Exceptions of rules leave as they were thrown.
    virtual void runBlockRules();
    /// Register words of each channel's pass of rate 0 in both directions, by prefixed name.
    /// Throws std::invalid_argument, naming register and type, on an unknown block type.
    virtual std::map<std::string, std::string> getAttribMap();

    /// Enters every parameter as a blank variable.
    void addVertices(const std::map<std::string, paramTypeInfo>& types);
    /// Fills `laneMode`: "txrx_rate_together" where one usage record gives a channel the same,
    /// non-empty rate name in both directions, else "txrx_rate_seperate".
    void findMode();
    /// Gives every channel and direction without a rate one rate of all defaults. Names that begin
    /// with "RX" are receive parameters, all others transmit; a parameter of unknown type is left
    /// out. Missing directions and channels are added.
    void populateUserParamDefaults(userParamStore& params);
    /// Prefix that tells the same register of different channels apart, "?????" and a log line
    /// for an unknown block type.
    std::string getPrefix(std::string attributeName, int channel);
    /// Word of a register, composed of its field variables in key order. Throws boost::bad_get
    /// when a field is not an unsigned value; an unknown register has no fields and is 0.
    unsigned int generateRegister(std::string attributeName);
    /// Copy of all snapshots, `[channel][pass]`.
    std::vector<std::vector<std::map<std::string, varInfo>>> getBlockVarMap();
    /// Walks every snapshot and leaves no trace; the snapshots are there in `getBlockVarMap`.
    void dumpVars();

    /// PLL frequencies (GHz) that could serve each line rate, by PLL of a dual (row) and channel
    /// and direction (column); the inner key is the rate. Reads line rates as float; throws
    /// boost::bad_get on another alternative or a missing value.
    std::array<std::array<std::map<int, std::set<double>>, 4>, 4> findPllRates();
    /// Intersection of all sets, none for an empty map.
    boost::optional<std::set<double>> intersectNSets(const std::map<int, std::set<double>>& sets);

    std::string statNpiRegList;   ///< registers that no rate changes, filled with the rate table
    std::string attributePrefix;  ///< empty
    std::string portPrefix;       ///< empty
    std::string family;
    std::vector<channelUsageInfo> channelUsage;
    userParamStore userParams;
    std::map<std::string, paramTypeInfo> paramTypes;
    std::map<std::string, std::vector<std::string>> settings;
    std::map<int, std::string> packedChannels;  ///< packing messages; empty when the quad packs
    std::map<int, std::string> laneMode;
    packingResultMap<double> intersectedCoordinates;
    packingResultMap<std::string> refclkSourceIntersectedCoordinates;
    std::map<std::string, attributeInfo> attributes;
    std::vector<std::vector<std::map<std::string, varInfo>>> blockVarMap;  ///< [channel][pass]

  protected:
    /// Values set in each pass after the defaults and before the rate's own; empty unless a
    /// family fills it.
    std::map<std::string, ruleValue> passStartValues;

  private:
    struct passInputs;

    std::string siliconRevision();
    void runChannel(passInputs& inputs);
    void runPass(passInputs& inputs, std::size_t txRate, std::size_t rxRate);
    std::string attributeKey(const std::string& name, const std::string& type, int channel) const;

    const std::map<int, std::string> pllNames;
    const std::map<std::string, int> blockSpan;  ///< channels that one block of a type covers
    /// Word offset of a block inside the controller's 10 bit range, by block type; the index is
    /// the channel, the dual, or 0, depending on the type.
    const std::map<std::string, std::vector<int>> blockOffsets;
    /// Word offset of a block in the quad's register space, indexed like `blockOffsets`.
    const std::map<std::string, std::vector<int>> blockBases;
    const std::set<std::string> staticExcluded;  ///< registers never reported as static
    const std::set<std::string> forcedCritical;  ///< registers in every rate table
    const std::set<std::string> alwaysMasked;    ///< registers that are only written under a mask
    const std::map<std::string, std::string> nibbleToHex;  ///< "1010" to "a"
};

/// Root of the current rule sets.
class LANECFG_EXPORT gt_rule_engine_live : public gt_rule_engine {
  public:
    using gt_rule_engine::gt_rule_engine;
};

/// Root of the frozen rule sets.
class LANECFG_EXPORT gt_rule_engine_iter_stable : public gt_rule_engine {
  public:
    using gt_rule_engine::gt_rule_engine;
};

}  // namespace sable_lanecfg
