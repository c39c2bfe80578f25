#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_base.h>

#include <boost/optional.hpp>

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {

class seriesCache;

/// Results of the packing, by dual, packing group, PLL and result name; a row for each rate slot.
template <class T>
using packingResultMap =
    std::map<std::string,
             std::map<std::string,
                      std::map<std::string, std::map<std::string, std::vector<std::vector<T>>>>>>;

/// One register of one channel in a rate table.
struct RateTableAttribute {
    std::bitset<32> mask;      ///< bits that differ between rates
    std::string name;          ///< register name, key of `attributes`
    std::string type;          ///< block type that holds the register
    std::int64_t address = 0;  ///< word address in the controller's 10 bit range
    int channel = 0;           ///< channel whose snapshots hold the values
};

/// What a rate table needs to know of one channel. Operations take an array of exactly four.
struct RateTableChannel {
    int txMaster = 0;     ///< lowest channel with the same `txNet`
    int rxMaster = 0;     ///< lowest channel with the same `rxNet`
    int numTxRates = 0;   ///< distinct transmit rates in the channel's snapshots
    int numRxRates = 0;   ///< distinct receive rates, 0 for a duplex channel
    std::string txNet;    ///< rate pin of the transmit side, empty if none
    std::string rxNet;    ///< rate pin of the receive side, empty if none
    bool duplex = false;  ///< one table serves both directions
    std::vector<RateTableAttribute> txAttributes;  ///< critical ones, of both directions if duplex
    std::vector<RateTableAttribute> rxAttributes;  ///< empty if duplex
};

/// Working state of one rate table generation; the arrays are indexed by channel.
struct RateTableControl {
    std::set<std::string> maskedAttributes;     ///< full names, prefix and register
    std::set<std::string> nonMaskedAttributes;  ///< full names, prefix and register
    std::array<std::vector<RateTableAttribute>, 4> txMasked;
    std::array<std::vector<RateTableAttribute>, 4> rxMasked;
    std::array<std::vector<RateTableAttribute>, 4> txNormal;
    std::array<std::vector<RateTableAttribute>, 4> rxNormal;
    std::array<int, 4> txWordCount{};  ///< words of the transmit body, all rates
    std::array<int, 4> rxWordCount{};  ///< words of the receive body, all rates
    std::array<int, 4> pcieMode{};
    std::array<int, 4> txSingleLane{};   ///< 1 if masked writes go to one lane at a time
    std::array<int, 4> rxSingleLane{};   ///< 1 if masked writes go to one lane at a time
    std::vector<std::string> rateTable;  ///< 32 binary digits a word, most significant first
};

/// Rule engine of one transceiver quad.
///
/// Adds to the rule graph the usage of channels, the user parameters, the register database, and
/// the run that evaluates the graph once for every channel and combination of its rates. A family
/// registers its rules and calls `runBlockRules` once; every answer is read from `blockVarMap`.
class LANECFG_EXPORT gt_rule_engine : public rule_engine_base {
  public:
    /// Enters every parameter of `paramTypes` as a blank variable; there is no rule and no pass
    /// yet. All arguments are copied. They are what a request loads, `family` being the device's
    /// family word: `m_channelUsage`, `m_paramTypes`, `m_userParams`, `m_fields` and `m_deviceData`
    /// of a gt_db_load.
    ///
    /// Of each entry of `settings` the first text counts:
    ///   "siliconRev"                            silicon revision; empty where it is missing
    ///   "FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX"    oscillator of the LCPLL (GHz)
    ///   "FRPLLRANGE_MIN", "FRPLLRANGE_MAX"      the same of the RPLL, in families that pack
    ///   "FSXDLCRANGE_MIN"                       SXD4: from this symbol rate (Gbaud) on the
    ///                                           oscillator runs at half of it
    /// Nothing is refused here. A limit that is missing or no number throws in the pass that needs
    /// it, naming the limit: std::invalid_argument, or std::out_of_range for a number that no
    /// double holds.
    gt_rule_engine(const std::string& family, const std::vector<channelUsageInfo>& usage,
                   const std::map<std::string, paramTypeInfo>& paramTypes,
                   const userParamStore& userParams,
                   std::map<std::string, attributeInfo> attributes,
                   const std::map<std::string, std::vector<std::string>>& settings);
    /// Not virtual: the virtual table, which hosts know, has the destructor behind the operations
    /// of this class, where the frames of the families declare it. Delete through those.
    ~gt_rule_engine();
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

    /// Rate table as text: a header line and lines of eight hexadecimal words. Clears the log,
    /// fills `statNpiRegList`, and adjusts the snapshots of master channels. The argument has no
    /// effect. Throws std::invalid_argument on a register value or offset that is no number,
    /// std::out_of_range, naming the register, on a block that the address tables lack.
    std::string generateRateTable(bool);
    /// Rate table as binary digits, 32 a word without separators.
    std::string generateRateTableInBinary();
    /// Size of the rate table in bytes.
    int getRateTableSize();

    /// Steps of a generation, in calling order.
    ///
    /// Reads rate pins, masters and numbers of rates.
    void parseHeaderInfo_New(RateTableChannel* channels);
    /// Finds the critical attributes of every channel.
    void parseRateTableData_New(RateTableChannel* channels);
    /// Fills `txAttributes` and `rxAttributes` of one channel, each from the passes that have the
    /// other direction at rate 0. A channel without passes has none. Throws as
    /// `findCriticalAttributes_New`.
    void populateSimplexLane_New(RateTableChannel* channels, int channel);
    /// Fills `txAttributes` of one channel from all its passes and clears `rxAttributes`; otherwise
    /// as `populateSimplexLane_New`.
    void populateDuplexLane_New(RateTableChannel* channels, int channel);
    /// Registers that differ between the given snapshots, in name order, and those that belong in
    /// every table. Throws std::invalid_argument with the text "stoll" on a value that is no number
    /// and "stoul" on an offset that is none; std::out_of_range, naming the register, on an offset
    /// that is too large and on a block that the address tables lack.
    std::vector<RateTableAttribute> findCriticalAttributes_New(
        std::vector<std::map<std::string, varInfo>> rates, int channel);
    /// Registers that no rate changes, as byte address runs in hexadecimal.
    std::string parseRateTableDataForStaticAttributes(RateTableChannel* channels);
    /// `findStaticAttributes` of the two lists of passes of `populateSimplexLane_New`, transmit
    /// first; a register that both have is there twice. `channels` is not looked at.
    std::vector<long> SimplexStaticAttributes(RateTableChannel* channels, int channel);
    /// `findStaticAttributes` of all passes of the channel. `channels` is not looked at.
    std::vector<long> DuplexStaticAttributes(RateTableChannel* channels, int channel);
    /// Word addresses, in the quad's register space, of the registers that are equal in all given
    /// snapshots, in name order of the registers. Throws as `findCriticalAttributes_New` does of
    /// offsets and blocks.
    std::vector<long> findStaticAttributes(std::vector<std::map<std::string, varInfo>> rates,
                                           int channel);
    /// Makes a master's table do the work of its followers; changes snapshots.
    void adjustRateTable_New(RateTableChannel* channels);
    /// Masks, writes and words; gives the finished table.
    std::vector<std::string> getRateTable_New(RateTableChannel* channels);
    /// Decides which registers are written under a mask.
    void separateCriticalAttributes_New(RateTableChannel* channels, RateTableControl& control);
    /// Sorts the registers of each table owner by address.
    void sortRateTable_New(RateTableChannel* channels, RateTableControl& control);
    /// Writes `control.rateTable` from the sorted lists: two structure words, two words a channel,
    /// then the transmit and the receive bodies, whose lengths are added to the word counts of
    /// `control`. Throws std::out_of_range, naming register, channel and rate, where a channel ran
    /// fewer passes than a table needs of it, std::invalid_argument on a value that is no number.
    void writeRateTable_New(RateTableChannel* channels, RateTableControl& control);
    /// Words of a group of one or two registers, values from snapshot `snapshots[0]` and
    /// `snapshots[1]`.
    std::vector<std::string> rateTableBodyCase1_new(RateTableAttribute first,
                                                    RateTableAttribute second, int hasSecond,
                                                    std::set<std::string> masked,
                                                    std::vector<int> snapshots, bool singleLane);
    /// Words of a burst of registers with nearby addresses.
    std::vector<std::string> rateTableBodyCase2_new(std::vector<RateTableAttribute> burst,
                                                    int snapshot);

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
    struct bodyWriter;

    std::string siliconRevision();
    void runChannel(passInputs& inputs);
    void runPass(passInputs& inputs, std::size_t txRate, std::size_t rxRate);
    std::string attributeKey(const std::string& name, const std::string& type, int channel) const;

    const std::vector<variableMap>& passesOf(int channel) const;
    std::vector<RateTableAttribute> criticalAttributes(
        const std::vector<const variableMap*>& snapshots, int channel) const;
    std::vector<long> staticAttributes(const std::vector<const variableMap*>& snapshots,
                                       int channel) const;
    std::int64_t criticalAddress(const std::string& name, const attributeInfo& info,
                                 int channel) const;
    int blockNumber(const std::map<std::string, std::vector<int>>& table, const std::string& key,
                    int index, const std::string& name, const attributeInfo& info,
                    int channel) const;
    void analyseRegisters(RateTableChannel* channels, bool withStaticList);
    std::vector<std::string> rateTableWords(bool withStaticList);
    std::string snapshotText(const RateTableAttribute& attribute, int snapshot);
    std::vector<std::string> pairGroup(const RateTableAttribute& first,
                                       const RateTableAttribute& second, bool hasSecond,
                                       const std::set<std::string>& masked, int firstSnapshot,
                                       int secondSnapshot, bool singleLane);

    seriesCache* analysedSeries = nullptr;  ///< null unless a generation looks for registers
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
