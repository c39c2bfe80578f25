#include "option_value.h"
#include "output.h"
#include "parameter_doubts.h"
#include "subcommand.h"

#include <lanecfg/rule_engine_utilities.h>

#include <set>
#include <string>

namespace sable_lanecfg::tool {
namespace {

using utilities = rule_engine_utilities;

/// Inputs of the search; a text is empty, and a number 0, where its option was left out.
struct OutclkListOptions {
    std::string direction;
    double lineRate = 0.0;
    std::string pll;
    double width = 0.0;
    std::string encoding;
    std::string bufferMode;
    std::string source;
    std::string rxPll;
    double refclk = 0.0;
    std::string modulation;
    OutputOptions output;
};

bool isTransmit(const OutclkListOptions& options) {
    return options.direction == "TX";
}

bool isSxd(const OutclkListOptions& options) {
    return options.pll == "SXD";
}

void refuse(bool isGiven, const std::string& option, const std::string& reason) {
    if (isGiven) {
        throw UsageError(option + " has no effect " + reason + ". Leave it out.");
    }
}

/// Options that the search would not read are a misunderstanding.
void refuseIdleOptions(const OutclkListOptions& options) {
    if (isSxd(options)) {
        refuse(!options.encoding.empty(), "--encoding", "with --pll SXD");
        refuse(!options.bufferMode.empty(), "--buffer-mode", "with --pll SXD");
    } else {
        refuse(!options.modulation.empty(), "--modulation", "without --pll SXD");
    }
    if (isSxd(options) || !isTransmit(options)) {
        const std::string reason = "but for the transmitter of an LCPLL or RPLL";
        refuse(!options.source.empty(), "--source", reason);
        refuse(!options.rxPll.empty(), "--rx-pll", reason);
        refuse(options.refclk != 0.0, "--refclk", reason);
    }
}

std::string givenOr(const std::string& option, const std::string& other) {
    return option.empty() ? other : option;
}

std::set<double> clocksOfSxd(const OutclkListOptions& options) {
    const int notPam4 = options.modulation == "PAM4" ? 0 : 1;
    return isTransmit(options)
               ? utilities::findTXOUTCLKlist_SXD(options.lineRate, notPam4, options.width)
               : utilities::findRXOUTCLKlist_SXD(options.lineRate, notPam4, options.width);
}

std::set<double> clocksOfTransmitter(const OutclkListOptions& options) {
    const std::string source = givenOr(options.source, options.pll);
    const std::string rxPll = givenOr(options.rxPll, options.pll);
    const bool runsFreeRpll = options.pll == "LCPLL" && source == "RPLL" && rxPll != "RPLL";
    if (runsFreeRpll && options.refclk == 0.0) {
        throw UsageError(
            "An RPLL that runs no line starts from the reference clock. Give it with "
            "--refclk, in MHz.");
    }
    return utilities::findTXOUTCLKlist(options.lineRate, options.refclk, options.pll, rxPll, source,
                                       static_cast<float>(options.width),
                                       givenOr(options.encoding, "RAW"),
                                       givenOr(options.bufferMode, "1"));
}

std::set<double> offeredClocks(const OutclkListOptions& options) {
    if (isSxd(options)) {
        return clocksOfSxd(options);
    }
    return isTransmit(options)
               ? clocksOfTransmitter(options)
               : utilities::findRXOUTCLKlist(
                     options.lineRate, options.pll, static_cast<float>(options.width),
                     givenOr(options.encoding, "RAW"), givenOr(options.bufferMode, "1"));
}

ExitCode run(const OutclkListOptions& options, Console& /*console*/) {
    refuseIdleOptions(options);
    Answer answer;
    answer.table.columns = {"output_clock"};
    answer.document = Json::array();
    for (const double clock : offeredClocks(options)) {
        answer.table.rows.push_back({Cell(clock)});
        answer.document->push_back(clock);
    }
    nameLastColumnForPeople(answer, "output_clock_mhz");
    if (answer.table.rows.empty()) {
        answer.remarks = {"No output clock is offered."};
    }
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

void addSearchOptions(CLI::App& command, OutclkListOptions& options) {
    command.add_option("--direction", options.direction, "Transmitter or receiver")
        ->check(CLI::IsMember({"TX", "RX"}))
        ->required();
    addPositiveNumber(command, "--rate", options.lineRate, "Line rate in Gb/s")->required();
    command
        .add_option("--pll", options.pll, "PLL of the line: LCPLL or RPLL of SXA, SXB and SXC, SXD")
        ->check(CLI::IsMember({"LCPLL", "RPLL", "SXD"}))
        ->required();
    addPositiveNumber(command, "--width", options.width,
                      "Data width at the fabric before encoding, for SXD inside the transceiver, "
                      "in bits")
        ->required();
    command.add_option("--encoding", options.encoding, "Encoding or decoding; RAW unless given")
        ->check(CLI::IsMember(encodingWords()));
    command
        .add_option("--buffer-mode", options.bufferMode,
                    "1 with the buffer (unless given), 0 around it")
        ->check(CLI::IsMember({"0", "1"}));
    command
        .add_option("--source", options.source,
                    "PLL before the transmitter's dividers; that of the line unless given")
        ->check(CLI::IsMember({"LCPLL", "RPLL"}));
    command
        .add_option("--rx-pll", options.rxPll,
                    "PLL of the receiver beside the transmitter; that of the line unless given")
        ->check(CLI::IsMember({"LCPLL", "RPLL"}));
    addPositiveNumber(command, "--refclk", options.refclk,
                      "Reference clock in MHz of an RPLL that runs no line");
    command.add_option("--modulation", options.modulation, "Line code of SXD; NRZ unless given")
        ->check(CLI::IsMember({"NRZ", "PAM4"}));
}

}  // namespace

void addOutclkListCommand(CLI::App& program, Work& chosen) {
    addSubcommand<OutclkListOptions>(
        program, chosen, "outclk-list", "Output clocks (MHz) that the dividers offer to the fabric",
        "lanecfg outclk-list --direction RX --rate 10.3125 --pll LCPLL --width 32",
        [](CLI::App& command, OutclkListOptions& options) {
            addSearchOptions(command, options);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
