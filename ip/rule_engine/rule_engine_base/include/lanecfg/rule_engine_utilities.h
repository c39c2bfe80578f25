#pragma once

#include <lanecfg/export.h>
#include <lanecfg/rule_engine_base.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Static helpers of every layer: the log, messages to the user, conversions, and how many
/// channels and clock units a quad of a family has.
class LANECFG_EXPORT rule_engine_utilities {
  public:
    /// The log: text lines in order of writing, one list for the whole process.
    static void write_log(std::string line);
    static std::vector<std::string> get_log_content();
    static void clean_log();

    /// Sends `text` to the host at the severity "info", "warning", "critical_warning" or "error",
    /// in any case of letters; another word sends nothing.
    static void addMessage(const std::string& text, std::string severity);

    /// Conversions of the standard streams: a text that does not begin with a number gives 0,
    /// what follows the number is ignored, "-1" read unsigned gives 4294967295.
    static std::string getString(int number);
    static unsigned int getInt(const std::string& text);
    static float getFloat(const std::string& text);
    static double getDouble(const std::string& text);
    /// True exactly for "1" and "true", in any case of letters.
    static bool stringToBool(const std::string& text);
    static std::string boolToString(bool flag);

    /// Number of elements equal to "}" at the end of the list.
    static int calculateDeep(const std::vector<std::string>& tokens);
    /// Replaces every occurrence from left to right; an empty `from` changes nothing.
    static void find_and_replace(std::string& text, const std::string& from, const std::string& to);

    /// Units in one quad of a family; an unknown family word counts as a four-channel one.
    static int ChPerBlock(const std::string& family);
    static int HsClkPerBlock(const std::string& family);
    static int CtrlPerBlock(const std::string& family);
    static int RcalPerBlock(const std::string& family);
    static int ChPerHsClk(const std::string& family);

    /// Order of attribute records by the decimal number under "Address". Throws
    /// std::invalid_argument or std::out_of_range when an address is no int.
    static bool addressCompare(std::map<std::string, std::string> first,
                               std::map<std::string, std::string> second);

    /// Each variable as { rule number or "None", value in text form with "%f" for fractions }.
    static std::map<std::string, std::vector<std::string>> serializeMap(
        std::map<std::string, varInfo> vars);
    /// `serializeMap` of every snapshot, `[channel][pass]`.
    static std::vector<std::vector<std::map<std::string, std::vector<std::string>>>> repkgVarMap(
        std::vector<std::vector<std::map<std::string, varInfo>>> snapshots);

  private:
    static std::vector<std::string> mLogContent;
};

}  // namespace sable_lanecfg
