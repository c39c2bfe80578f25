#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_base.h>

#include <boost/blank.hpp>
#include <boost/variant.hpp>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Something for each dual ("DUAL_0", "DUAL_1"), packing group and PLL ("LCPLL", "RPLL").
template <class Content>
using packingTable = std::map<std::string, std::map<std::string, std::map<std::string, Content>>>;

/// Lists of numbers or texts, one for each rate slot.
using packingNumbers = std::vector<std::vector<double>>;
using packingTexts = std::vector<std::vector<std::string>>;

/// A field of a candidate record.
using packingField = boost::variant<boost::blank, packingNumbers, std::string, packingTexts>;

/// Candidate records of one PLL by 2 * lane, plus 1 for receive. A record has the fields
///   "rate_pin"       text: name of the rate pin of the lane and direction
///   "rates"          numbers: PLL clocks (GHz) that would serve each slot
///   "refclks"        numbers: actual reference clock (MHz), once for each use of the slot
///   "refclkSources"  texts: source of the reference clock, once for each use of the slot
/// A slot that the record does not use has empty lists.
using packingRecords = std::map<int, std::map<std::string, packingField>>;

/// Whether the reference clocks of some uses agree. The first one is that of the first list.
struct refclkFreqCheck {
    std::string text;  ///< always empty
    double frequency = 0.0;
    bool isValid = false;
};

/// The same for the sources of reference clocks.
struct refclkSourceCheck {
    std::string text;  ///< always empty
    std::string source;
    bool isValid = false;
};

/// Whether the channels of a request can share a quad, and on which reference clock ports.
///
/// A quad has four lanes, 0 and 1 in DUAL_0, the others in DUAL_1; each dual has an LCPLL and an
/// RPLL. An object answers one question: `canBePacked` first, then whatever is wanted of the rest.
/// Its operations add to its tables, so asking twice is a matter of a second object.
///
/// Messages are numbered. Nothing that a request or the device limits hold makes an operation with
/// a `logErrors` throw: a fault ends the part of the work in which it arises and is told either as
/// a message to the user (`logErrors` true) or as the text "ERROR caught" under the next number.
class LANECFG_EXPORT gt_quad_packing {
  public:
    /// Copies all arguments and leaves the tables empty; nothing is looked at yet. They are what a
    /// request loads: `m_channelUsage`, `m_paramTypes`, `m_userParams`, `m_fields` and
    /// `m_deviceData` of a gt_db_load.
    gt_quad_packing(const std::vector<channelUsageInfo>& channelUsage,
                    const std::map<std::string, paramTypeInfo>& types,
                    const userParamStore& parameters,
                    const std::map<std::string, attributeInfo>& fields,
                    const std::map<std::string, std::vector<std::string>>& limits);

    /// Fills `intermediateData` and `refclkFrequencies` from the user parameters.
    std::map<int, std::string> intermediateDSCreation(bool logErrors);
    /// The same, then intersects the candidates of each PLL.
    std::map<int, std::string> runIntersection(bool logErrors);
    /// A transmitter without buffer, or with its phase interpolator on, must run on the PLL of its
    /// lane's receiver: a message for each pair of rates that does not.
    std::map<int, std::string> checkILOconfig(bool logErrors);
    /// Fills `refclkResources`; more than six connections are message 0.
    std::map<int, std::string> checkRefclkSourceResource(bool logErrors);
    /// The whole verdict: why the channels do not fit, numbered from 1; empty when they do. A text
    /// begins with "ChannelLevelCheck", "DualLevelCheck" or "QuadLevelCheck".
    std::map<int, std::string> canBePacked(bool logErrors);

    /// Names of reference clocks by port, for example "HSCLK0_LCPLLGTREFCLK0". Empty before
    /// `checkRefclkSourceResource`. Of several clocks at a port the last one stands.
    std::map<std::string, std::string> returnRefclkPorts() const;

    /// PLL clocks (GHz) from which a line rate (Gb/s) can be made, in the order of the dividers,
    /// some twice; empty for an unknown PLL. Widths are in bits. `dualRate` says that the LCPLL has
    /// to run 10.3125 beside 25.78125. Throws std::out_of_range for a missing device limit,
    /// std::invalid_argument for one that is no number, and std::domain_error for an LCPLL with an
    /// internal width of 0.
    std::vector<double> VCO_FrequencyCalculation(const std::string& pllType, double lineRate,
                                                 const std::string& encoding, unsigned intDataWidth,
                                                 unsigned userDataWidth, bool dualRate) const;
    /// The same for an output of the programmable divider (MHz), with the same failures.
    std::vector<double> VCO_FrequencyProgDivCalculation(const std::string& pllType,
                                                        double progDivFreq) const;

    /// The values that are in every list, ascending, each once; a list that is alone as it stands.
    /// No list at all is reported to the user as an error and gives none.
    static std::vector<double> mainIntersectionLogic(const packingNumbers& lists);
    /// Whether all elements of all lists are the first one of the first list (0.0, or an empty
    /// text, where that is empty). False without any list.
    static refclkFreqCheck checkRefclkFreq(const packingNumbers& lists);
    static refclkSourceCheck checkRefclkSource(const packingTexts& lists);

    /// Copies of the tables of the same name.
    packingTable<std::map<std::string, packingNumbers>> getIntersectedCoordinates() const;
    packingTable<std::map<std::string, packingTexts>> getRefclkSourceIntersectedCoordinates() const;

    /// The lane groups that are to share the quad. `rates` are the rate slots in use, indices
    /// of a lane's rates in `userParams`.
    std::vector<channelUsageInfo> channels;
    /// Line rates are in Gb/s, reference clocks in MHz, widths in bits.
    userParamStore userParams;
    std::map<std::string, attributeInfo> attributes;  ///< carried for hosts; nothing reads it
    /// Ranges of the PLLs (GHz), the first text of an entry: "FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX",
    /// "FRPLLRANGE_MIN", "FRPLLRANGE_MAX". Others are not read.
    std::map<std::string, std::vector<std::string>> deviceLimits;
    std::map<std::string, paramTypeInfo> paramTypes;  ///< carried for hosts; nothing reads it

    /// The candidates.
    packingTable<packingRecords> intermediateData;
    /// What is left of them. Each row has an entry for each rate slot, or a single one when the
    /// lanes of the PLL change rate independently:
    ///   "pllClkFreqs"         common PLL clocks (GHz); the other rows have as many numbers
    ///   "pllShared"           1.0 for a single entry, else 0.0
    ///   "refclks"             actual reference clock (MHz)
    ///   "refclkIDs"           its index in `refclkFrequencies`, 0 when it is not there
    ///   "refclk_valid"        1.0 when the reference clocks of all uses agree, else 0.0
    ///   "refclkSourcesValid"  1.0 when their sources agree, else 0.0
    packingTable<std::map<std::string, packingNumbers>> intersectedCoordinates;
    /// The row "refclkSources" beside them: the source, as often as there are common clocks.
    packingTable<std::map<std::string, packingTexts>> refclkSourceIntersectedCoordinates;
    /// By rate pin, PLL with the digit of its dual ("LCPLL0") and source ("R0" to "R5"):
    ///   "Frequency"   distinct actual reference clocks (MHz), double
    ///   "refClkName"  names of the connection, text
    packingTable<std::map<std::string, std::vector<ruleValue>>> refclkResources;
    /// Distinct actual reference clocks (MHz) of the data paths, by dual and PLL ("DUAL_0LCPLL"),
    /// in order of first appearance.
    std::map<std::string, std::vector<double>> refclkFrequencies;
};

}  // namespace sable_lanecfg
