#include "attribute_differences.h"
#include "configured_instance.h"
#include "option_value.h"
#include "output.h"
#include "snapshot_rows.h"
#include "subcommand.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

struct AttributesOptions {
    RequestOptions request;
    std::vector<std::string> comparedRequests;  ///< two or none
    std::vector<std::string> comparedRules;     ///< two or none
    std::vector<std::string> comparedRates;     ///< two or none
    OutputOptions output;
};

/// The rates of both directions at which a channel runs.
struct RatePair {
    unsigned tx = 0;
    unsigned rx = 0;
};

/// "TX_RX", two numbers.
std::optional<RatePair> ratePairOf(const std::string& text) {
    RatePair rates;
    const char* const end = text.data() + text.size();
    const auto [middle, txFault] = std::from_chars(text.data(), end, rates.tx);
    if (txFault != std::errc() || middle == end || *middle != '_') {
        return std::nullopt;
    }
    const auto [rest, rxFault] = std::from_chars(middle + 1, end, rates.rx);
    return rxFault == std::errc() && rest == end ? std::optional(rates) : std::nullopt;
}

std::string ratePairFault(const std::string& text) {
    return ratePairOf(text) ? std::string()
                            : "\"" + text +
                                  "\" is no pair of rates; write the transmit and the receive rate "
                                  "with \"_\" between, such as 0_1";
}

Answer attributesAnswer(const textMap& attributes) {
    Answer answer;
    answer.table.columns = {"name", "value", "hex"};
    answer.document = Json::object();
    for (const auto& [name, value] : attributes) {
        answer.table.rows.push_back({Cell(name), Cell(value), Cell(hexadecimalOf(value))});
        answer.document->push_back({name, value});
    }
    answer.text = alignedText(withShortTexts(answer.table));
    return answer;
}

/// What a request answered, to be looked at when its instance is gone.
struct RequestAnswer {
    std::string name;
    textMap attributes;
    std::map<std::string, attributeInfo> registers;
};

RequestInputs inputsOfSide(const AttributesOptions& options, std::size_t side) {
    RequestOptions own = options.request;
    own.file = options.comparedRequests[side];
    if (!options.comparedRules.empty()) {
        const RuleSet& rules = *findRuleSetNamed(options.comparedRules[side]);
        own.family = rules.family;
        own.selector = rules.selector;
    }
    return {own, options.output};
}

RequestAnswer answerOfRequest(const RequestInputs& inputs, Console& console) {
    ConfiguredInstance instance(inputs.request, inputs.database, console);
    textMap attributes = instance.attributes();
    instance.finish();
    return {inputs.request.file + " (" + nameOf(*inputs.request.rules) + ")", std::move(attributes),
            instance.engine().attributes};
}

Answer differenceOfRequests(const AttributesOptions& options, Console& console) {
    const RequestInputs firstInputs = inputsOfSide(options, 0);
    const RequestInputs secondInputs = inputsOfSide(options, 1);
    const RequestAnswer first = answerOfRequest(firstInputs, console);
    const RequestAnswer second = answerOfRequest(secondInputs, console);
    return answerOf(valueDifferences({first.attributes, first.registers},
                                     {second.attributes, second.registers}),
                    false, first.name, second.name);
}

/// A channel's pass at a pair of rates, null when it ran none.
const variableMap* passAt(const std::vector<variableMap>& passes, const RatePair& rates) {
    const auto found =
        std::find_if(passes.begin(), passes.end(), [&rates](const variableMap& pass) {
            const PassLabel label = labelOf(0, pass);
            return label.txRate == rates.tx && label.rxRate == rates.rx;
        });
    return found == passes.end() ? nullptr : &*found;
}

/// The registers that have a value in a pass.
textMap registersOf(const variableMap& pass,
                    const std::map<std::string, attributeInfo>& registers) {
    textMap values;
    for (const auto& [name, info] : registers) {
        const auto found = pass.find(name);
        if (found != pass.end() && found->second.value.which() != 0) {
            values[name] = rule_engine_base::textOf(found->second.value);
        }
    }
    return values;
}

std::vector<ValueDifference> differencesOfChannel(
    std::size_t channel, const variableMap& first, const variableMap& second,
    const std::map<std::string, attributeInfo>& registers) {
    const textMap firstValues = registersOf(first, registers);
    const textMap secondValues = registersOf(second, registers);
    std::vector<ValueDifference> differences =
        valueDifferences({firstValues, registers}, {secondValues, registers});
    for (ValueDifference& difference : differences) {
        difference.channel = static_cast<unsigned>(channel);
    }
    return differences;
}

Answer differenceOfRates(const AttributesOptions& options, Console& console) {
    const std::string& firstName = options.comparedRates[0];
    const std::string& secondName = options.comparedRates[1];
    const RequestRun run(options.request, options.output, console);
    console.endProgress();
    const auto& channels = run.instance.engine().blockVarMap;
    std::vector<ValueDifference> differences;
    std::vector<std::size_t> leftOut;
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        const variableMap* const first = passAt(channels[channel], *ratePairOf(firstName));
        const variableMap* const second = passAt(channels[channel], *ratePairOf(secondName));
        if (first == nullptr || second == nullptr) {
            leftOut.push_back(channel);
            continue;
        }
        const std::vector<ValueDifference> own =
            differencesOfChannel(channel, *first, *second, run.instance.engine().attributes);
        differences.insert(differences.end(), own.begin(), own.end());
    }
    if (leftOut.size() == channels.size()) {
        throw RequestError("No channel has passes of both rates " + firstName + " and " +
                           secondName + ". There are: " + passesAtHand(channels) + ".");
    }
    for (const std::size_t channel : leftOut) {
        console.warning("Channel " + std::to_string(channel) + " has no passes of both rates " +
                        firstName + " and " + secondName + ", so it is left out.");
    }
    run.instance.finish();
    return answerOf(differences, true, "rates " + firstName, "rates " + secondName);
}

Answer answerTo(const AttributesOptions& options, Console& console) {
    if (!options.comparedRequests.empty()) {
        return differenceOfRequests(options, console);
    }
    if (options.request.file.empty()) {
        throw UsageError("request is required, or --diff with two of them");
    }
    if (!options.comparedRates.empty()) {
        return differenceOfRates(options, console);
    }
    RequestRun run(options.request, options.output, console);
    Answer answer = attributesAnswer(run.instance.attributes());
    run.instance.finish();
    return answer;
}

ExitCode run(const AttributesOptions& options, Console& console) {
    writeAnswer(answerTo(options, console), options.output);
    return ExitCode::done;
}

void addComparisons(CLI::App& command, AttributesOptions& options) {
    CLI::Option* const request = command.get_option("request")->required(false);
    CLI::Option* const diff = addComparison(command, "--diff", options.comparedRequests,
                                            "Compare two requests and print what differs")
                                  ->type_name("REQUEST")
                                  ->check(emptyValueFault)
                                  ->excludes(request);
    addComparison(command, "--rules", options.comparedRules,
                  "Rules of the two requests, FAMILY or FAMILY:SELECTOR, in place of their own")
        ->type_name("RULES")
        ->check(ruleSetNameCheck())
        ->needs(diff)
        ->excludes(command.get_option("--family"))
        ->excludes(command.get_option("--selector"));
    addComparison(command, "--rates", options.comparedRates,
                  "Compare two pairs of rates (transmit_receive) of the request's channels and "
                  "print what differs")
        ->type_name("TX_RX")
        ->check(ratePairFault)
        ->excludes(diff);
}

}  // namespace

void addAttributesCommand(CLI::App& program, Work& chosen) {
    addSubcommand<AttributesOptions>(
        program, chosen, "attributes",
        "Register words of a request at the first rates: of each channel (CH0_...), of its PLLs "
        "(HSCLK0_...) and of the quad (without a prefix); or what differs between two requests or "
        "rates. A channel's or PLL's register that stands without a prefix too holds there what "
        "the last pass left",
        "lanecfg attributes data/requests/sxb_10gbase_r.json --format csv | grep -E "
        "'^(CH0|HSCLK0|A_CFG.)'\n"
        "  lanecfg attributes data/requests/sxb_pcie_gen4_x4.json --rates 1_1 2_2\n"
        "  lanecfg attributes --diff data/requests/sxb_10gbase_r.json "
        "data/requests/sxc_10gbase_r.json",
        [](CLI::App& command, AttributesOptions& options) {
            addRequestOptions(command, options.request);
            addComparisons(command, options);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
