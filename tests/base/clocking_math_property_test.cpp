#include "base/clocking_enumeration.h"
#include "reference_clock_search.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace clocking_enumeration;
using sable_lanecfg::rule_engine_utilities;

/// A decimal number, which the library sees rounded and the enumeration may see exactly.
struct Decimal {
    long numerator;
    long denominator;

    double rounded() const { return decimal<double>(numerator, denominator); }
    Rational exact() const { return decimal<Rational>(numerator, denominator); }
};

struct ClockRequest {
    Decimal lineRate;  // GHz
    Decimal refclk;    // MHz
};

std::ostream& operator<<(std::ostream& stream, const ClockRequest& request) {
    return stream << "line rate " << request.lineRate.rounded() << " GHz, reference clock "
                  << request.refclk.rounded() << " MHz";
}

/// The usual line rates, in units of 10 kb/s.
std::vector<Decimal> standardRates() {
    std::vector<Decimal> rates;
    for (const long units :
         {125000L, 250000L, 312500L, 500000L, 625000L, 800000L, 983040L, 1031250L, 1250000L,
          1637500L, 2578125L, 2805000L, 2810000L, 3275000L, 5312500L, 5625000L, 5800000L}) {
        rates.push_back({units, 100000});
    }
    return rates;
}

std::vector<Decimal> standardRefclks() {
    return {{100, 1}, {12288, 100}, {15625, 100}, {1611328125, 10000000}, {322265625, 1000000}};
}

/// Line rates of three decimals and reference clocks of two, as users enter them.
class RandomRequests {
  public:
    ClockRequest next() { return {{rate_(engine_), 1000}, {refclk_(engine_), 100}}; }

  private:
    std::mt19937 engine_{20240607};  // NOLINT(cert-msc51-cpp): the same sequence in every run
    std::uniform_int_distribution<long> rate_{500, 60000};
    std::uniform_int_distribution<long> refclk_{5000, 90000};
};

std::vector<ClockRequest> requests(int randomCount) {
    std::vector<ClockRequest> result;
    for (const Decimal& rate : standardRates()) {
        for (const Decimal& refclk : standardRefclks()) {
            result.push_back({rate, refclk});
        }
    }
    RandomRequests random;
    for (int count = 0; count < randomCount; ++count) {
        result.push_back(random.next());
    }
    return result;
}

/// What the library is asked, for each PLL, beside what the enumeration says.
struct Lcpll {
    static double library(double lineRate, double refclk) {
        return rule_engine_utilities::calculateActualRefclk(lineRate, refclk, "LCPLL");
    }
    static bool libraryNeedsFraction(double lineRate, double refclk) {
        return rule_engine_utilities::fracNEnable(lineRate, refclk, "LCPLL");
    }
    template <class Number>
    static std::set<Number> enumerated(const Number& lineRate, const Number& refclk) {
        return lcpllReferenceClocks(lineRate, refclk);
    }
    template <class Number>
    static bool needsFraction(const Number& lineRate, const Number& refclk) {
        return lcpllNeedsFraction(lineRate, refclk);
    }
};

struct Rpll {
    static double library(double lineRate, double refclk) {
        return rule_engine_utilities::calculateActualRefclk(lineRate, refclk, "RPLL");
    }
    static bool libraryNeedsFraction(double lineRate, double refclk) {
        return rule_engine_utilities::fracNEnable(lineRate, refclk, "RPLL");
    }
    template <class Number>
    static std::set<Number> enumerated(const Number& lineRate, const Number& /*refclk*/) {
        return rpllReferenceClocks(lineRate);
    }
    template <class Number>
    static bool needsFraction(const Number& /*lineRate*/, const Number& /*refclk*/) {
        return false;
    }
};

struct Sxd {
    static double library(double lineRate, double refclk) {
        return rule_engine_utilities::calculateActualRefclk_SXD(lineRate, refclk);
    }
    static bool libraryNeedsFraction(double lineRate, double refclk) {
        return rule_engine_utilities::fracNEnable_SXD(lineRate, refclk);
    }
    template <class Number>
    static std::set<Number> enumerated(const Number& lineRate, const Number& refclk) {
        return sxdReferenceClocks(lineRate, refclk);
    }
    template <class Number>
    static bool needsFraction(const Number& lineRate, const Number& refclk) {
        return sxdNeedsFraction(lineRate, refclk);
    }
};

bool agrees(double value, const Rational& exact) {
    return distanceOf(Rational(value), exact) <= exact * decimal<Rational>(1, 1000000000000);
}

/// Rounding may turn a tie around, so a clock as near as the nearest one counts too.
bool isNearest(double value, const std::set<Rational>& clocks, const Rational& wanted) {
    const Rational best = nearest(clocks, wanted);
    return agrees(value, best) ||
           (std::any_of(clocks.begin(), clocks.end(),
                        [value](const Rational& clock) { return agrees(value, clock); }) &&
            distanceOf(distanceOf(Rational(value), wanted), distanceOf(best, wanted)) <=
                wanted * decimal<Rational>(1, 1000000000000));
}

template <class Pll>
class ReferenceClocks : public testing::Test {};

using Plls = testing::Types<Lcpll, Rpll, Sxd>;
TYPED_TEST_SUITE(ReferenceClocks, Plls);

TYPED_TEST(ReferenceClocks, areThoseOfTheEnumerationToTheLastBit) {
    for (const ClockRequest& request : requests(1500)) {
        const double lineRate = request.lineRate.rounded();
        const double refclk = request.refclk.rounded();
        EXPECT_EQ(TypeParam::library(lineRate, refclk),
                  nearest(TypeParam::enumerated(lineRate, refclk), refclk))
            << request;
        EXPECT_EQ(TypeParam::libraryNeedsFraction(lineRate, refclk),
                  TypeParam::needsFraction(lineRate, refclk))
            << request;
    }
}

TYPED_TEST(ReferenceClocks, areTheNearestOfAllInExactArithmetic) {
    for (const ClockRequest& request : requests(25)) {
        const std::set<Rational> clocks =
            TypeParam::enumerated(request.lineRate.exact(), request.refclk.exact());
        const double actual =
            TypeParam::library(request.lineRate.rounded(), request.refclk.rounded());
        EXPECT_TRUE(isNearest(actual, clocks, request.refclk.exact())) << request << ", " << actual;
        EXPECT_EQ(
            TypeParam::libraryNeedsFraction(request.lineRate.rounded(), request.refclk.rounded()),
            TypeParam::needsFraction(request.lineRate.exact(), request.refclk.exact()))
            << request;
    }
}

// The way back: from an offered clock to the dividers.

bool isWhole(double value, double tolerance) {
    return std::fabs(value - std::round(value)) <= tolerance;
}

/// True for a feedback divider that is whole or, if it may have a fraction, has 24 binary places.
bool isFeedbackDivider(double feedback, bool fractional) {
    const double scaled = fractional ? feedback * 16777216.0 : feedback;
    return isWhole(scaled, 1e-12 * scaled);
}

/// True when some dividers take the clock to the line rate within the VCO range.
bool lcpllReaches(double lineRate, double clock, bool fractional) {
    const double rate = lcpllRate(lineRate);
    for (const int preDivider : preDividers) {
        for (const int lineDivider : lineDividers) {
            const double feedback = feedbackFor(preDivider * lineDivider, rate, clock);
            if (isLcpllVco(lineDivider * rate) && within(13.0, feedback, 161.0) &&
                isFeedbackDivider(feedback, fractional)) {
                return true;
            }
        }
    }
    return false;
}

bool rpllReaches(double lineRate, double clock) {
    for (const int preDivider : preDividers) {
        for (const int lineDivider : lineDividers) {
            const double feedback = feedbackFor(preDivider * lineDivider, lineRate, clock) / 2.0;
            if (isRpllVco(lineDivider * lineRate * 0.5) && isFeedbackDivider(feedback, false) &&
                (within(4.5, feedback, 25.5) || within(79.5, feedback, 80.5))) {
                return true;
            }
        }
    }
    return false;
}

/// Without a test of the VCO, which SXD doesn't make here; but there is no fraction outside its
/// range.
bool sxdReaches(double lineRate, double clock) {
    const double rate = sxdRate(lineRate);
    return std::any_of(preDividers.begin(), preDividers.end(), [&](int preDivider) {
        const double feedback = feedbackFor(preDivider, rate, clock);
        return within(15.5, feedback, 161.0) && isFeedbackDivider(feedback, isSxdVco(rate));
    });
}

TEST(OfferedReferenceClock, reachesTheLineRateThroughTheLcpll) {
    for (const ClockRequest& request : requests(3000)) {
        const double lineRate = request.lineRate.rounded();
        const double refclk = request.refclk.rounded();
        const double clock = Lcpll::library(lineRate, refclk);
        EXPECT_TRUE(clock == 0.0 ||
                    lcpllReaches(lineRate, clock, Lcpll::libraryNeedsFraction(lineRate, refclk)))
            << request << ", " << clock;
    }
}

TEST(OfferedReferenceClock, reachesTheLineRateThroughTheRpll) {
    for (const ClockRequest& request : requests(3000)) {
        const double lineRate = request.lineRate.rounded();
        const double clock = Rpll::library(lineRate, request.refclk.rounded());
        EXPECT_TRUE(clock == 0.0 || rpllReaches(lineRate, clock)) << request << ", " << clock;
    }
}

TEST(OfferedReferenceClock, reachesTheLineRateThroughTheSxdPll) {
    for (const ClockRequest& request : requests(3000)) {
        const double lineRate = request.lineRate.rounded();
        const double clock = Sxd::library(lineRate, request.refclk.rounded());
        EXPECT_TRUE(clock == 0.0 || sxdReaches(lineRate, clock)) << request << ", " << clock;
    }
}

TEST(OfferedReferenceClock, isThereExactlyWhenTheRateHasAVco) {
    for (const ClockRequest& request : requests(3000)) {
        const double lineRate = request.lineRate.rounded();
        const double refclk = request.refclk.rounded();
        const auto reachable = [](double rate, const auto& isVco) {
            return std::any_of(lineDividers.begin(), lineDividers.end(),
                               [&](int divider) { return isVco(divider * rate); });
        };
        EXPECT_EQ(Lcpll::library(lineRate, refclk) != 0.0,
                  reachable(lcpllRate(lineRate), isLcpllVco<double>))
            << request;
        EXPECT_EQ(Rpll::library(lineRate, refclk) != 0.0,
                  reachable(0.5 * lineRate, isRpllVco<double>))
            << request;
    }
}

TEST(OfferedReferenceClock, isOfferedAgainWhenItIsWanted) {
    for (const ClockRequest& request : requests(3000)) {
        const double lineRate = request.lineRate.rounded();
        const double clock = Rpll::library(lineRate, request.refclk.rounded());
        EXPECT_EQ(Rpll::library(lineRate, clock), clock) << request;
    }
}

// Larger domains

template <class Pll>
struct MorePreDividers : Pll {
    static constexpr auto preDividers = sable_lanecfg::clocking::consecutive<1, 9>();
};

template <class Pll>
struct MoreLineDividers : Pll {
    static constexpr auto lineDividers = sable_lanecfg::clocking::consecutive<1, 32>();
};

template <class Pll>
struct WiderVco : Pll {
    static constexpr auto searchedVco = sable_lanecfg::clocking::closedInterval(
        Pll::searchedVco.lower / 2, Pll::searchedVco.upper * 2);
};

template <class Pll>
struct WiderReferenceClock : Pll {
    static constexpr auto referenceClock = sable_lanecfg::clocking::openInterval(
        Pll::referenceClock.lower / 2, Pll::referenceClock.upper * 2);
};

template <class Pll>
class LargerDomain : public testing::Test {
  protected:
    static constexpr auto feedbackDividers_ = sable_lanecfg::clocking::fractionalFeedbackDividers;
    static constexpr auto moreFeedbackDividers_ = sable_lanecfg::clocking::consecutive<5, 200>();

    template <class Domain, class FeedbackDividers>
    static double distance(const ClockRequest& request, const FeedbackDividers& feedbackDividers,
                           double fraction) {
        const double wanted = request.refclk.rounded();
        const double clock = sable_lanecfg::clocking::nearestReferenceClock<Domain>(
            request.lineRate.rounded(), feedbackDividers, fraction, wanted);
        return clock == 0.0 ? std::numeric_limits<double>::infinity() : std::fabs(wanted - clock);
    }

    /// Compares the distances over many requests; a larger domain that never helped at all would
    /// be none.
    template <class Domain, class FeedbackDividers>
    static void expectNeverWorse(const FeedbackDividers& larger) {
        int better = 0;
        for (const ClockRequest& request : requests(300)) {
            for (const double fraction : {0.0, 0.4375}) {
                const double before = distance<Pll>(request, feedbackDividers_, fraction);
                const double after = distance<Domain>(request, larger, fraction);
                EXPECT_LE(after, before) << request;
                better += after < before ? 1 : 0;
            }
        }
        EXPECT_GT(better, 0);
    }
};

using Domains = testing::Types<sable_lanecfg::clocking::lcpll, sable_lanecfg::clocking::rpll,
                               sable_lanecfg::clocking::sxdPll>;
TYPED_TEST_SUITE(LargerDomain, Domains);

TYPED_TEST(LargerDomain, ofPreDividersNeverMakesItWorse) {
    this->template expectNeverWorse<MorePreDividers<TypeParam>>(this->feedbackDividers_);
}

TYPED_TEST(LargerDomain, ofLineDividersNeverMakesItWorse) {
    this->template expectNeverWorse<MoreLineDividers<TypeParam>>(this->feedbackDividers_);
}

TYPED_TEST(LargerDomain, ofFeedbackDividersNeverMakesItWorse) {
    this->template expectNeverWorse<TypeParam>(this->moreFeedbackDividers_);
}

TYPED_TEST(LargerDomain, ofReferenceClocksNeverMakesItWorse) {
    this->template expectNeverWorse<WiderReferenceClock<TypeParam>>(this->feedbackDividers_);
}

template <class Pll>
class LargerVcoRange : public LargerDomain<Pll> {};

/// SXD is not among them: its search takes every VCO clock as it is.
using LimitedVcos = testing::Types<sable_lanecfg::clocking::lcpll, sable_lanecfg::clocking::rpll>;
TYPED_TEST_SUITE(LargerVcoRange, LimitedVcos);

TYPED_TEST(LargerVcoRange, neverMakesItWorse) {
    this->template expectNeverWorse<WiderVco<TypeParam>>(this->feedbackDividers_);
}

// Output clocks

std::vector<OutputClockCase> outputClockCases() {
    std::vector<OutputClockCase> cases;
    for (const std::string pllType : {"LCPLL", "RPLL"}) {
        for (const bool buffered : {true, false}) {
            cases.push_back({pllType, 32, "RAW", buffered});
            cases.push_back({pllType, 16, "8B10B", buffered});
            cases.push_back({pllType, 64, "64B66B_ASYNC", buffered});
        }
    }
    return cases;
}

std::set<double> libraryReceiveClocks(double lineRate, const OutputClockCase& setting) {
    return rule_engine_utilities::findRXOUTCLKlist(lineRate, setting.pllType,
                                                   static_cast<float>(setting.userDataWidth),
                                                   setting.encoding, setting.buffered ? "1" : "0");
}

std::set<double> libraryTransmitClocks(double lineRate, double refclk, const std::string& rxPllType,
                                       const std::string& source, const OutputClockCase& setting) {
    return rule_engine_utilities::findTXOUTCLKlist(
        lineRate, refclk, setting.pllType, rxPllType, source,
        static_cast<float>(setting.userDataWidth), setting.encoding, setting.buffered ? "1" : "0");
}

std::set<double> librarySxdClocks(Direction direction, double lineRate, bool pam4, int width) {
    return direction == Direction::transmit
               ? rule_engine_utilities::findTXOUTCLKlist_SXD(lineRate, pam4 ? 0 : 1, width)
               : rule_engine_utilities::findRXOUTCLKlist_SXD(lineRate, pam4 ? 0 : 1, width);
}

/// Every clock of one set has its counterpart in the other. Equal clocks that come by different
/// dividers may differ in the last place, so their numbers may differ.
testing::AssertionResult agree(const std::set<double>& clocks, const std::set<Rational>& exact) {
    for (const double clock : clocks) {
        if (std::none_of(exact.begin(), exact.end(),
                         [clock](const Rational& other) { return agrees(clock, other); })) {
            return testing::AssertionFailure() << clock << " MHz is too many";
        }
    }
    for (const Rational& clock : exact) {
        if (std::none_of(clocks.begin(), clocks.end(),
                         [&clock](double other) { return agrees(other, clock); })) {
            return testing::AssertionFailure() << clock.convert_to<double>() << " MHz is missing";
        }
    }
    return testing::AssertionSuccess();
}

TEST(OutputClocks, areThoseOfTheEnumerationToTheLastBit) {
    for (const OutputClockCase& setting : outputClockCases()) {
        for (const ClockRequest& request : requests(200)) {
            const double lineRate = request.lineRate.rounded();
            const std::set<double> expected = linePllClocks(lineRate, setting);
            EXPECT_EQ(libraryReceiveClocks(lineRate, setting), expected) << request;
            EXPECT_EQ(libraryTransmitClocks(lineRate, request.refclk.rounded(), "LCPLL",
                                            setting.pllType, setting),
                      expected)
                << request;
        }
    }
}

TEST(OutputClocks, areComplete) {
    for (const OutputClockCase& setting : outputClockCases()) {
        for (const Decimal& lineRate : standardRates()) {
            EXPECT_TRUE(agree(libraryReceiveClocks(lineRate.rounded(), setting),
                              linePllClocks(lineRate.exact(), setting)))
                << lineRate.rounded() << " GHz";
        }
    }
}

TEST(OutputClocks, ofAFreeRpllAreThoseOfTheEnumeration) {
    for (const bool buffered : {true, false}) {
        const OutputClockCase setting{"LCPLL", 32, "RAW", buffered};
        for (const ClockRequest& request : requests(5)) {
            const double lineRate = request.lineRate.rounded();
            const double refclk = request.refclk.rounded();
            const std::set<double> clocks =
                libraryTransmitClocks(lineRate, refclk, "LCPLL", "RPLL", setting);
            EXPECT_EQ(clocks, freeRpllClocks(lineRate, refclk, setting)) << request;
        }
    }
}

TEST(OutputClocks, ofAFreeRpllAreComplete) {
    const OutputClockCase setting{"LCPLL", 32, "8B10B", false};
    for (const Decimal& refclk : {Decimal{100, 1}, Decimal{15625, 100}}) {
        const ClockRequest request{{103125, 10000}, refclk};
        EXPECT_TRUE(agree(libraryTransmitClocks(request.lineRate.rounded(), refclk.rounded(),
                                                "LCPLL", "RPLL", setting),
                          freeRpllClocks(request.lineRate.exact(), refclk.exact(), setting)))
            << request;
    }
}

TEST(OutputClocks, ofSxdAreThoseOfTheEnumeration) {
    for (const ClockRequest& request : requests(500)) {
        for (const Direction direction : {Direction::transmit, Direction::receive}) {
            for (const bool pam4 : {false, true}) {
                const std::set<double> clocks =
                    librarySxdClocks(direction, request.lineRate.rounded(), pam4, 80);
                EXPECT_EQ(clocks, sxdClocks(direction, request.lineRate.rounded(), pam4, 80))
                    << request;
                EXPECT_TRUE(agree(clocks, sxdClocks(direction, request.lineRate.exact(), pam4, 80)))
                    << request;
            }
        }
    }
}

TEST(OutputClocks, stayBelowTheCeilingAndGoWithTheUserClock) {
    for (const OutputClockCase& setting : outputClockCases()) {
        for (const ClockRequest& request : requests(100)) {
            const double lineRate = request.lineRate.rounded();
            const double target = userClock(lineRate, setting);
            for (const double clock : libraryReceiveClocks(lineRate, setting)) {
                EXPECT_LE(clock, 1000.0) << request;
                const double ratio = std::round(std::log2(clock / target));
                EXPECT_TRUE(within(0.0, ratio, 3.0)) << request;
                EXPECT_NEAR(clock / std::exp2(ratio), target, 1.001e-4 * target) << request;
            }
        }
    }
}

}  // namespace
