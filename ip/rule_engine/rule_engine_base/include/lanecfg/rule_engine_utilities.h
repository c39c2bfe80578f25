#pragma once

#include <lanecfg/export.h>
#include <lanecfg/rule_engine_base.h>

#include <map>
#include <set>
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

    /// Clocking math. Line rates in GHz (equal in number to Gb/s), reference and output clocks in
    /// MHz. The functions are pure and never fail: what cannot be reached, a number that is not
    /// finite included, gives 0.0, false or an empty set. PLL words are exactly "LCPLL" or "RPLL";
    /// the functions without suffix serve SXA, SXB and SXC, those with `_SXD` serve SXD.

    /// The reference clock nearest to `refclk` from which the PLL reaches the line rate, the lower
    /// one of two at the same distance. Every `pllType` but "LCPLL" means the RPLL.
    static double calculateActualRefclk(double lineRate, double refclk, std::string pllType);
    /// The same for SXD; also a line rate for which its PLL has no VCO clock gets a nearest clock.
    static double calculateActualRefclk_SXD(double lineRate, double refclk);

    /// True when the LCPLL must run with a fractional feedback divider to get from `refclk` to the
    /// line rate. False for every other `pllType`.
    static bool fracNEnable(double lineRate, double refclk, std::string pllType);
    static bool fracNEnable_SXD(double lineRate, double refclk);

    /// The output clocks up to 1000 MHz that the dividers behind the PLL `progDivSource` offer to
    /// the transmitter's fabric and that agree, themselves or divided by 2, 4 or 8, with its user
    /// clock. `refclk` counts only for an RPLL that runs no line. `userDataWidth` is the width (in
    /// bits) before encoding; encodings are told apart by "8B10B" and "64B66B_ASYNC", and exactly
    /// "1" is a used buffer. Combinations of PLL words with no path give an empty set, and so do
    /// unknown words of the transmitter's PLL and of the source.
    static std::set<double> findTXOUTCLKlist(double lineRate, double refclk, std::string txPllType,
                                             std::string rxPllType, std::string progDivSource,
                                             float userDataWidth, std::string encoding,
                                             std::string bufferMode);
    /// The same for the receiver, whose dividers are always behind its own PLL. An unknown
    /// `pllType` has the VCO limits of the RPLL.
    static std::set<double> findRXOUTCLKlist(double lineRate, std::string pllType,
                                             float userDataWidth, std::string encoding,
                                             std::string bufferMode);
    /// The same for SXD: `notPam4` is 0 for PAM4 and anything else for NRZ, `intDataWidth` the
    /// width (in bits) of the data inside the transceiver. The receiver takes the VCO clock from
    /// the line rate where the transmitter takes it from the symbol rate.
    static std::set<double> findTXOUTCLKlist_SXD(double lineRate, int notPam4, double intDataWidth);
    static std::set<double> findRXOUTCLKlist_SXD(double lineRate, int notPam4, double intDataWidth);

  private:
    static std::vector<std::string> mLogContent;
};

}  // namespace sable_lanecfg
