#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::DoubleEq;
using testing::Not;

/// The numbers that an answer has under each of its names.
using NumbersByName = std::map<std::string, std::set<double>>;

/// The number that a value of an answer is, whether as such or as a text.
std::optional<double> numberOf(const json& value) {
    if (value.is_boolean()) {
        return value.get<bool>() ? 1.0 : 0.0;
    }
    if (!value.is_string()) {
        return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
    }
    const auto text = value.get<std::string>();
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' ? std::optional(number) : std::nullopt;
}

/// Every match of a pattern in a text, in order.
std::vector<std::smatch> matchesIn(const std::string& text, const std::regex& pattern) {
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

/// The paragraphs, items and tables of a page, each in one line.
std::vector<std::string> paragraphsOf(const std::string& page) {
    std::vector<std::string> paragraphs(1);
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.rfind("- ", 0) == 0) {
            paragraphs.emplace_back();
        }
        paragraphs.back() += line + " ";
    }
    return paragraphs;
}

/// Whether a paragraph is about another request than that of its page.
bool tellsOfChange(const std::string& paragraph) {
    return paragraph.rfind("- **To change it.**", 0) == 0;
}

/// The words of eight digits that a paragraph tells of. What it says would be otherwise, and what
/// it has something else "in place of", is not of the same request.
std::vector<std::string> wordsIn(const std::string& paragraph) {
    static const std::regex word("0x[0-9a-f]{8}\\b");
    static const std::regex otherwise("in place of 0x[0-9a-f]+|[^.;:]* would .*?(?=[.;:] |$)");
    const std::string told = std::regex_replace(paragraph, otherwise, "");
    std::vector<std::string> words;
    for (const std::smatch& match : matchesIn(told, word)) {
        words.push_back(match.str());
    }
    return words;
}

double valueOf(const std::string& word) {
    return static_cast<double>(std::stoul(word, nullptr, 16));
}

class RequestNumbers : public CommandLine {
  protected:
    /// What a request answers: its attributes, also without the prefix of their unit, and the
    /// variables of all its passes, fields also without their register. A word of the quad has the
    /// value of the attributes alone, and one of another unit none without a prefix there.
    NumbersByName numbersOf(const std::string& request) const {
        static const std::regex unit("^(CH|HSCLK|RCALBG)[0-9]_");
        const json attributes = answerOf({"attributes", request});
        NumbersByName numbers;
        for (const auto& attribute : attributes.items()) {
            if (std::regex_search(attribute.key(), unit)) {
                enter(attribute.key(), attribute.value(), numbers);
                enter(std::regex_replace(attribute.key(), unit, ""), attribute.value(), numbers);
            }
        }
        const NumbersByName ofUnits = numbers;
        for (const auto& attribute : attributes.items()) {
            if (ofUnits.count(attribute.key()) == 0) {
                enter(attribute.key(), attribute.value(), numbers);
            }
        }
        for (const json& variable : answerOf({"snapshot", request})) {
            const auto name = variable.at("name").get<std::string>();
            if (ofUnits.count(name) != 0 || !attributes.contains(name)) {
                enter(name, variable.at("value"), numbers);
                enter(name.substr(name.find('.') + 1), variable.at("value"), numbers);
            }
        }
        return numbers;
    }

  private:
    static void enter(const std::string& name, const json& value, NumbersByName& numbers) {
        if (const std::optional<double> number = numberOf(value)) {
            numbers[name].insert(*number);
        }
    }
};

class PageOfRequest : public RequestNumbers, public testing::WithParamInterface<std::string> {
  protected:
    /// What the page says of its own request.
    std::vector<std::string> answeredParagraphs() const {
        std::vector<std::string> paragraphs = paragraphsOf(page);
        paragraphs.erase(std::remove_if(paragraphs.begin(), paragraphs.end(), tellsOfChange),
                         paragraphs.end());
        return paragraphs;
    }

    static void expectWords(const std::string& paragraph, const NumbersByName& numbers) {
        static const std::regex quoted("`([A-Za-z0-9_.]+)`");
        std::set<double> ofNames;
        for (const std::smatch& name : matchesIn(paragraph, quoted)) {
            const auto found = numbers.find(name.str(1));
            if (found != numbers.end()) {
                ofNames.insert(found->second.begin(), found->second.end());
            }
        }
        for (const std::string& shown : wordsIn(paragraph)) {
            EXPECT_EQ(ofNames.count(valueOf(shown)), 1U) << shown << " in: " << paragraph;
        }
    }

    static void expectPairs(const std::string& paragraph, const NumbersByName& numbers) {
        static const std::regex pair("`([A-Za-z0-9_.]+)`(?: is)? ([0-9]+(?:[.][0-9]+)?)\\b");
        for (const std::smatch& shown : matchesIn(paragraph, pair)) {
            const auto found = numbers.find(shown.str(1));
            if (found != numbers.end()) {
                EXPECT_THAT(found->second, Contains(DoubleEq(std::stod(shown.str(2)))))
                    << shown.str() << " in: " << paragraph;
            }
        }
    }

    const std::string page = readFile(requestPagePath(GetParam()));
    const std::string request = requestPath(GetParam());
};

/// A word of eight digits is that of a register which its paragraph names. A number right behind a
/// name, as in "`TX_PROGCLK_SEL` is 2", is a value of that name.
TEST_P(PageOfRequest, ShowsNumbersThatTheRequestAnswers) {
    const NumbersByName numbers = numbersOf(request);
    for (const std::string& paragraph : answeredParagraphs()) {
        expectWords(paragraph, numbers);
        expectPairs(paragraph, numbers);
    }
}

/// A frequency as people are shown it.
double inSixDigits(double frequency) {
    std::ostringstream shown;
    shown << frequency;
    return std::stod(shown.str());
}

TEST_P(PageOfRequest, ShowsEveryOutputClock) {
    static const std::regex number("[0-9]+(?:[.][0-9]+)?");
    std::set<double> shown;
    for (const std::smatch& found : matchesIn(page, number)) {
        shown.insert(std::stod(found.str()));
    }
    const json clocks = answerOf({"outclk", request});
    for (const auto& clock : clocks.items()) {
        EXPECT_THAT(shown, Contains(DoubleEq(inSixDigits(clock.value().get<double>()))))
            << clock.key();
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, PageOfRequest, testing::ValuesIn(bundledRequests()), CaseName());

/// The numbers that stand anywhere in a JSON answer.
void collectNumbers(const json& answer, std::set<double>& numbers) {
    if (answer.is_structured()) {
        for (const json& part : answer) {
            collectNumbers(part, numbers);
        }
    } else if (const std::optional<double> number = numberOf(answer)) {
        numbers.insert(*number);
    }
}

TEST_F(RequestNumbers, OfPackPagesAreClocksThatPackAnswers) {
    static const std::regex clock("([0-9]+(?:[.][0-9]+)?)(?= (?:(?:or|and) [0-9.]+ )?[GM]Hz)");
    std::size_t compared = 0;
    for (const std::string& name : packRequests()) {
        std::set<double> answered;
        collectNumbers(
            json::parse(
                run({"pack", requestPath(name), "--why", "--ports", "--format", "json"}).output),
            answered);
        const std::string page = readFile(requestPagePath(name));
        for (const std::smatch& shown : matchesIn(page, clock)) {
            ++compared;
            EXPECT_THAT(answered, Contains(DoubleEq(std::stod(shown.str())))) << name;
        }
    }
    EXPECT_GE(compared, packRequests().size());
}

/// A change that a page tells under "To change it", and numbers that come of it and are not there
/// before.
struct PageChange {
    std::string name;
    std::string request;
    /// Of every lane and rate; without the word of the direction they are those of both.
    std::map<std::string, json> parameters;
    std::map<std::string, json> places;  ///< by JSON pointer
    std::map<std::string, double> numbers;
};

class ChangeOfPage : public RequestNumbers, public testing::WithParamInterface<PageChange> {
  protected:
    static json changedRequest() {
        json request = bundledRequest(GetParam().request);
        for (json& direction : request.at("userParams")) {
            for (json& lane : direction) {
                for (json& rate : lane) {
                    changeRate(rate);
                }
            }
        }
        for (const auto& [place, value] : GetParam().places) {
            request.at(json::json_pointer(place)) = value;
        }
        return request;
    }

  private:
    static void changeRate(json& rate) {
        for (const auto& [name, value] : GetParam().parameters) {
            for (const std::string& whole : {name, "TX_" + name, "RX_" + name}) {
                if (rate.contains(whole)) {
                    rate.at(whole) = value;
                }
            }
        }
    }
};

TEST_P(ChangeOfPage, GivesTheNumbersThatThePageTells) {
    const NumbersByName before = numbersOf(requestPath(GetParam().request));
    const NumbersByName after = numbersOf(directory.write("request.json", changedRequest().dump()));
    for (const auto& [name, number] : GetParam().numbers) {
        EXPECT_THAT(before.at(name), Not(Contains(DoubleEq(number)))) << name;
        EXPECT_THAT(after.at(name), Contains(DoubleEq(number))) << name;
    }
}

/// Another lane of a link as its master.
std::map<std::string, json> masterOf(const json& marks) {
    return {{"/quadUsage/TX_QUAD_CH/0/MSTRCLK", marks}, {"/quadUsage/RX_QUAD_CH/0/MSTRCLK", marks}};
}

/// The lane without a user as a second port like that of the first lane.
std::map<std::string, json> secondPort() {
    const json request = bundledRequest("sxb_partly_used");
    std::map<std::string, json> places;
    for (const std::string direction : {"0", "1"}) {
        const std::string lanes = "/userParams/" + direction;
        places[lanes + "/1"] = request.at(json::json_pointer(lanes + "/0"));
    }
    for (const std::string side : {"TX", "RX"}) {
        places["/quadUsage/" + side + "_QUAD_CH/0/" + side + "QUAD_0/1"] = "port4.0";
        places["/quadUsage/" + side + "_QUAD_CH/0/MSTRCLK/1"] = "1";
    }
    for (const std::string side : {"tx", "rx"}) {
        places["/laneUsage/0/" + side] = {0, 1};
        places["/laneUsage/0/" + side + "rate"] = {"A", "A"};
    }
    return places;
}

std::vector<PageChange> pageChanges() {
    const std::string clock = "REFCLK_FREQUENCY";
    return {
        {"GigabitAt3G", "sxb_1000base_x", {{"LINE_RATE", 3.125}}, {}, {{"A_CFG1", 0x4e4e4e4e}}},
        {"GigabitFrom125", "sxb_1000base_x", {{clock, 125}}, {}, {{"A_CFG1", 0x4e4e4e4e}}},
        {"BondedSkew",
         "sxb_1000base_x_bonded",
         {{"RX_CB_MAX_SKEW", 3}},
         {},
         {{"CH2_RX_ELASTIC_BUF_CFG0", 0x47200025}}},
        {"BondedMaster",
         "sxb_1000base_x_bonded",
         {},
         masterOf({"0", "0", "0", "1"}),
         {{"CH2_PIPE_CTRL_CFG9", 0x9898}, {"CH3_PIPE_CTRL_CFG9", 0}}},
        {"TenGigabitDividers",
         "sxb_10gbase_r",
         {{"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"}, {"RX_OUTCLK_SOURCE", "RXPROGDIVCLK"}},
         {},
         {{"MST_RESET_CFG", 0xffffff0f}, {"INT_TXOUTCLK_FREQ", 156.25}}},
        {"TenGigabitFrom322", "sxb_10gbase_r", {{clock, 322.265625}}, {}, {{"A_CFG1", 0x4e1e4e1e}}},
        {"CpriFrom122", "sxb_cpri", {{clock, 122.88}}, {}, {{"A_HS0_LCPLLFBDIV", 98}}},
        {"OnTheOtherPll",
         "sxb_does_not_pack",
         {},
         {{"/userParams/0/1/0/TX_PLL_TYPE", "RPLL"}, {"/userParams/1/1/0/RX_PLL_TYPE", "RPLL"}},
         {{"INT_RPLL_PLLCLKOUT", 4.9152}, {"INT_RPLL_FBDIV", 20}}},
        {"JesdDividers",
         "sxb_jesd204_receive",
         {{"RX_OUTCLK_SOURCE", "RXPROGDIVCLK"}},
         {},
         {{"INT_RXOUTCLK_FREQ", 307.2}}},
        {"JesdFrom153", "sxb_jesd204_receive", {{clock, 153.6}}, {}, {{"A_CFG1", 0x4e4e4e4e}}},
        {"OtherPllAt250",
         "sxb_other_pll_clock",
         {{"TXPROGDIV_FREQ_VAL", 250}},
         {},
         {{"INT_TXOUTCLK_FREQ", 250}}},
        {"OtherPllAt100",
         "sxb_other_pll_clock",
         {{"TXPROGDIV_FREQ_VAL", 100}},
         {},
         // 0.36 * 2^24 = 6039797.76
         {{"INT_RPLL_PLLCLKOUT", 4.8},
          {"INT_DOUBLER_EN", 1},
          {"INT_RPLL_FBDIV", 15},
          {"INT_RPLL_SDMDATA", 6039797}}},
        {"Otu2WithoutFraction",
         "sxb_otu2_fractional",
         {{clock, 167.331640625}},
         {},
         {{"A_CFG1", 0x4e3e4e3e}, {"A_CFG2", 0x30000000}}},
        {"SecondPort", "sxb_partly_used", {}, secondPort(), {{"MST_RESET_CFG", 0x7ad6b587}}},
        {"PcieMaster",
         "sxb_pcie_gen4_x2",
         {},
         masterOf({"0", "1", "0", "0"}),
         {{"CH0_PIPE_CTRL_CFG9", 0x9898}, {"CH1_PIPE_CTRL_CFG9", 0}}},
        {"PcieUserClock",
         "sxb_pcie_gen4_x4",
         {{"PCIE_USERCLK_FREQ", 250}},
         {},
         {{"BUFGTDIV_USERCLK", 1}, {"CH0_PIPE_CTRL_CFG5", 0x444600c1}}},
        {"SdiFrom148", "sxb_sdi_independent", {{clock, 148.5}}, {}, {{"A_CFG1", 0x4e4e4e4e}}},
        {"FrozenFrom322",
         "sxb_stable_10gbase_r",
         {{clock, 322.265625}},
         {},
         {{"INT_LCPLL_FBDIV", 32}}},
        {"FrozenFrom250", "sxb_stable_multi_rate", {{clock, 250}}, {}, {{"INT_RPLL_FBDIV", 20}}},
        {"XauiFrom156", "sxb_xaui", {{clock, 156.25}}, {}, {{"A_CFG1", 0x4e4e4e4e}}},
        {"XauiSkew",
         "sxb_xaui",
         {{"RX_CB_MAX_SKEW", 3}},
         {},
         {{"EB8B10B_CLK_COR_MIN_LAT", 14}, {"EB8B10B_CLK_COR_MAX_LAT", 17}}},
    };
}

INSTANTIATE_TEST_SUITE_P(Each, ChangeOfPage, testing::ValuesIn(pageChanges()), CaseName());

TEST(PageChanges, HaveEveryRegisterWordThatAPageTells) {
    std::map<std::string, std::set<double>> held;
    for (const PageChange& change : pageChanges()) {
        for (const auto& [name, number] : change.numbers) {
            held[change.request].insert(number);
        }
    }
    for (const std::string& request : bundledRequests()) {
        for (const std::string& paragraph : paragraphsOf(readFile(requestPagePath(request)))) {
            for (const std::string& told : wordsIn(paragraph)) {
                EXPECT_TRUE(!tellsOfChange(paragraph) || held[request].count(valueOf(told)) == 1)
                    << told << " of " << request;
            }
        }
    }
}

}  // namespace
}  // namespace lanecfg_test
