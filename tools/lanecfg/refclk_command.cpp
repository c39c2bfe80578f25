#include "option_value.h"
#include "output.h"
#include "subcommand.h"

#include <lanecfg/rule_engine_utilities.h>

#include <string>

namespace sable_lanecfg::tool {
namespace {

constexpr double partsPerMillion = 1e6;

struct RefclkOptions {
    double lineRate = 0.0;
    double refclk = 0.0;
    std::string pll;
    OutputOptions output;
};

/// What a PLL makes of a wanted reference clock.
struct ReferenceClock {
    double actual;  ///< MHz, 0.0 when the PLL does not reach the line rate
    bool isFractional;
};

ReferenceClock referenceClock(const RefclkOptions& options) {
    using utilities = rule_engine_utilities;
    if (options.pll == "SXD") {
        return {utilities::calculateActualRefclk_SXD(options.lineRate, options.refclk),
                utilities::fracNEnable_SXD(options.lineRate, options.refclk)};
    }
    return {utilities::calculateActualRefclk(options.lineRate, options.refclk, options.pll),
            utilities::fracNEnable(options.lineRate, options.refclk, options.pll)};
}

Answer answerOf(const RefclkOptions& options, const ReferenceClock& clock) {
    const double difference = (clock.actual - options.refclk) / options.refclk * partsPerMillion;
    Answer answer;
    answer.table.columns = {"rate", "refclk", "pll", "actual", "fractional", "difference_ppm"};
    answer.table.rows = {
        {Cell(options.lineRate), Cell(options.refclk), Cell(options.pll), Cell(clock.actual),
         Cell(clock.isFractional ? "yes" : "no", clock.isFractional), Cell(difference)}};
    answer.document = Json{{"rate", options.lineRate},
                           {"refclk", options.refclk},
                           {"pll", options.pll},
                           {"actual", clock.actual},
                           {"fractional", clock.isFractional},
                           {"difference_ppm", difference}};
    return answer;
}

ExitCode run(const RefclkOptions& options, Console& /*console*/) {
    const ReferenceClock clock = referenceClock(options);
    if (clock.actual == 0.0) {
        throw RequestError("No reference clock near " + jsonText(Json(options.refclk)) +
                           " MHz brings the " + options.pll + " to a line rate of " +
                           jsonText(Json(options.lineRate)) + " Gb/s.");
    }
    writeAnswer(answerOf(options, clock), options.output);
    return ExitCode::done;
}

}  // namespace

void addRefclkCommand(CLI::App& program, Work& chosen) {
    addSubcommand<RefclkOptions>(
        program, chosen, "refclk",
        "Reference clock nearest to a wanted one from which a PLL reaches a line rate",
        "lanecfg refclk --rate 10.3125 --refclk 156.25 --pll LCPLL",
        [](CLI::App& command, RefclkOptions& options) {
            addPositiveNumber(command, "--rate", options.lineRate, "Line rate in Gb/s")->required();
            addPositiveNumber(command, "--refclk", options.refclk, "Wanted reference clock in MHz")
                ->required();
            command.add_option("--pll", options.pll, "PLL: LCPLL or RPLL of SXA, SXB and SXC, SXD")
                ->check(CLI::IsMember({"LCPLL", "RPLL", "SXD"}))
                ->required();
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
