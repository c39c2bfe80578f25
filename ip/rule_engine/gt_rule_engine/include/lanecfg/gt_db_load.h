#pragma once

#include <lanecfg/export.h>
#include <lanecfg/rule_engine_base.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// A user parameter as the types file declares it.
struct paramTypeInfo {
    std::string type;  ///< "string", "int", "bool", "float" or "double"
    std::string description;
    std::string default_value;
};

/// A register as the fields file declares it.
struct attributeInfo {
    std::string dstSubBlock;  ///< block type that holds the register
    /// Field name ("REGISTER.FIELD") to { bit offset, width }.
    std::map<std::string, std::vector<int>> fields;
    std::string Offset;  ///< register offset, hexadecimal text
};

/// Usage of one lane group. Position i of `txrate` names the rate pin of lane `tx[i]`, likewise
/// for the receive side.
struct channelUsageInfo {
    std::string group;
    std::string usageMode = "simplex";  ///< carried for hosts; nothing reads it
    bool usageFlag = false;             ///< carried for hosts; nothing reads it
    std::vector<std::string> txrate;
    std::vector<std::string> rxrate;
    std::vector<int> tx;
    std::vector<int> rx;
    std::vector<int> rates;
};

/// Usage of one quad. Made by the loader; instances keep pointing to it for their lifetime.
struct quadsUsageInfo {
    std::string quadName;
    std::vector<std::string> channels;
    std::string usageKey;  ///< first-level key that holds the quad
    std::vector<std::string> MSTRCLK;
    bool IS_CURRENT_QUAD = false;
};

/// Values of the user parameters, `[direction][lane][rate][name]`; direction 0 is transmit,
/// 1 receive.
using userParamStore = std::vector<std::vector<std::vector<std::map<std::string, ruleValue>>>>;

/// Nested text dictionaries of the host.
using textMap = std::map<std::string, std::string>;
using laneUsageMap = std::map<std::string, textMap>;                         ///< lane, key
using quadUsageMap = std::map<std::string, std::map<std::string, textMap>>;  ///< key, quad, entry
using settingsMap = std::map<std::string, std::map<std::string, textMap>>;   ///< lane, rate, name
using userParamMap = std::map<std::string, settingsMap>;                     ///< section

/// Everything that one request needs before a rule can run: device data, parameter types,
/// register layout, usage of lanes and quads, and the values of the user parameters.
///
/// All JSON files are read here; a file may be stored plain, gzipped or zlib packed. Faults are
/// reported through rule_engine_utilities::addMessage and the load goes on; only unusable user
/// parameters clear `m_loaded`.
class LANECFG_EXPORT gt_db_load {
  public:
    /// With an entry in `userParams` the dictionaries are taken, else `userParametersFile`.
    /// An empty `partName` gives an empty silicon revision unless the device data holds
    /// "siliconRev"; a malformed one is ToolPart's exception.
    gt_db_load(const textMap& options, const userParamMap& userParams,
               const laneUsageMap& laneUsage, const quadUsageMap& quadUsage,
               const std::string& userParameterTypesFile, const std::string& userParametersFile,
               const std::string& fieldsFile, const std::string& deviceDataFile,
               const std::string& partName);

    /// Fills `m_deviceData` from the entry `speedGrade` of the file, and "siliconRev".
    void fillDeviceData(const std::string& file, const std::string& speedGrade,
                        const std::string& siliconRev);
    /// Fills `m_paramTypes`.
    void getUserParameterTypes(const std::string& file);
    /// Fills `m_fields`.
    void getFields(const std::string& file);

    /// File form of a request; false when the user parameters are unusable.
    bool getUserParameters(const std::string& file);
    /// Dictionary form of a request; `family` is the device family word of the part.
    bool getUserParameters(const textMap& options, const userParamMap& userParams,
                           const laneUsageMap& laneUsage, const quadUsageMap& quadUsage,
                           const std::string& family);
    /// Reads one section of the dictionary form into lanes and rates; false when a parameter has
    /// no known type.
    bool loadSettings(const settingsMap& settings,
                      std::vector<std::vector<std::map<std::string, ruleValue>>>& out,
                      const std::string& family);

    std::map<std::string, quadsUsageInfo*> m_quadsUsage;  ///< by quad name; records outlive this
    std::vector<channelUsageInfo> m_channelUsage;
    userParamStore m_userParams;
    std::map<std::string, paramTypeInfo> m_paramTypes;
    std::map<std::string, attributeInfo> m_fields;
    std::map<std::string, std::vector<std::string>> m_deviceData;
    bool m_loaded = true;
};

}  // namespace sable_lanecfg
