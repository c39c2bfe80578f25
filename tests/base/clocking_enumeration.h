#pragma once

#include <boost/multiprecision/cpp_int.hpp>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

/// The clocking math as plain enumerations: every candidate is made, tested and put in a set. The
/// divider values and limits are written down here once more on purpose. `Number` is double, for a
/// comparison bit by bit, or Rational, which knows no rounding.
namespace clocking_enumeration {

using Rational = boost::multiprecision::number<
    boost::multiprecision::rational_adaptor<boost::multiprecision::cpp_int_backend<>>,
    boost::multiprecision::et_off>;

/// A decimal number as a fraction; correctly rounded where it must be.
template <class Number>
Number decimal(long numerator, long denominator) {
    return Number(numerator) / Number(denominator);
}

inline double wholePart(double value) {
    return std::floor(value);
}
/// Of a number that is not negative.
inline Rational wholePart(const Rational& value) {
    return Rational(numerator(value) / denominator(value));
}

template <class Number>
bool within(const Number& lowest, const Number& value, const Number& highest) {
    return lowest <= value && value <= highest;
}

template <class Number>
bool between(const Number& lower, const Number& value, const Number& upper) {
    return lower < value && value < upper;
}

inline std::vector<int> integers(int first, int last) {
    std::vector<int> result;
    for (int value = first; value <= last; ++value) {
        result.push_back(value);
    }
    return result;
}

inline const std::vector<int> preDividers{1, 2, 3, 4};
inline const std::vector<int> lineDividers{1, 2, 4, 8, 16};

template <class Number>
bool isLcpllVco(const Number& vco) {
    return within(Number(8), vco, decimal<Number>(16375, 1000));
}

template <class Number>
bool isRpllVco(const Number& vco) {
    return within(Number(4), vco, Number(8));
}

template <class Number>
bool isSxdVco(const Number& vco) {
    return within(decimal<Number>(98, 10), vco, decimal<Number>(145, 10));
}

template <class Number>
Number halvedAbove(const Number& threshold, const Number& lineRate) {
    return lineRate > threshold ? Number(decimal<Number>(1, 2) * lineRate) : lineRate;
}

template <class Number>
Number lcpllRate(const Number& lineRate) {
    return halvedAbove(decimal<Number>(16375, 1000), lineRate);
}

template <class Number>
Number sxdRate(const Number& lineRate) {
    return halvedAbove(decimal<Number>(145, 10), lineRate);
}

// Fractions

template <class Number>
Number feedbackFor(int dividers, const Number& rate, const Number& refclk) {
    return Number(dividers) * rate * Number(1000) / refclk;
}

template <class Number>
bool carriesFraction(const Number& feedback) {
    return within(Number(16), wholePart(feedback), Number(160));
}

template <class Number>
Number fractionWord(const Number& feedback) {
    return wholePart(Number(Number(16777216) * (feedback - wholePart(feedback))));
}

template <class Number>
Number wordOfList(const std::vector<Number>& words) {
    return std::count(words.begin(), words.end(), Number(0)) != 0 ? Number(0) : words.front();
}

template <class Number>
Number lcpllWord(const Number& lineRate, const Number& refclk) {
    const Number rate = lcpllRate(lineRate);
    std::vector<Number> words;
    for (const int preDivider : preDividers) {
        for (const int lineDivider : lineDividers) {
            const Number feedback = feedbackFor(preDivider * lineDivider, rate, refclk);
            if (isLcpllVco(Number(Number(lineDivider) * rate)) && carriesFraction(feedback)) {
                words.push_back(fractionWord(feedback));
            }
        }
    }
    return words.empty() ? Number(0) : wordOfList(words);
}

/// The two users of the SXD word differ in which pre-dividers and which words they take.
enum class SxdWordFor { referenceClock, enable };

template <class Number>
Number sxdWord(const Number& lineRate, const Number& refclk, SxdWordFor use) {
    const bool enable = use == SxdWordFor::enable;
    const Number rate = sxdRate(lineRate);
    std::vector<Number> words;
    Number latest(0);
    for (const int preDivider : preDividers) {
        const Number divided = refclk / Number(preDivider);
        const bool looked = !enable || between(decimal<Number>(5999999, 100000), divided,
                                               decimal<Number>(82000001, 100000));
        const Number feedback = feedbackFor(preDivider, rate, refclk);
        if (isSxdVco(rate) && looked && carriesFraction(feedback)) {
            latest = fractionWord(feedback);
            // The flag takes the first word always, the clock every word after the first.
            if (words.empty() == enable || wholePart(feedback) <= Number(80)) {
                words.push_back(latest);
            }
        }
    }
    return words.empty() ? latest : wordOfList(words);
}

template <class Number>
bool lcpllNeedsFraction(const Number& lineRate, const Number& refclk) {
    return lcpllWord(lineRate, refclk) != Number(0) && lineRate <= decimal<Number>(2578125, 100000);
}

template <class Number>
bool sxdNeedsFraction(const Number& lineRate, const Number& refclk) {
    return sxdWord(lineRate, refclk, SxdWordFor::enable) != Number(0) &&
           lineRate <= decimal<Number>(281, 10);
}

// Reference clocks

template <class Number>
std::set<Number> lcpllReferenceClocks(const Number& lineRate, const Number& refclk) {
    const Number rate = lcpllRate(lineRate);
    const Number word =
        lcpllNeedsFraction(lineRate, refclk) ? lcpllWord(lineRate, refclk) : Number(0);
    const Number fraction = word / Number(16777216);
    std::set<Number> clocks;
    for (const int preDivider : preDividers) {
        for (const int lineDivider : lineDividers) {
            if (!isLcpllVco(Number(Number(lineDivider) * rate))) {
                continue;
            }
            const Number product = Number(preDivider * lineDivider) * rate * Number(1000);
            for (const int feedback : integers(word == Number(0) ? 13 : 16, 160)) {
                const Number clock = product / (Number(feedback) + fraction);
                if (within(Number(60), clock, Number(820))) {
                    clocks.insert(clock);
                }
            }
        }
    }
    return clocks;
}

template <class Number>
std::set<Number> rpllReferenceClocks(const Number& lineRate) {
    std::vector<int> feedbackDividers = integers(5, 25);
    feedbackDividers.push_back(80);
    std::set<Number> clocks;
    for (const int preDivider : preDividers) {
        for (const int lineDivider : lineDividers) {
            const Number vco = Number(lineDivider) * lineRate * decimal<Number>(1, 2);
            if (!isRpllVco(vco)) {
                continue;
            }
            const Number product = Number(preDivider * lineDivider) * lineRate * Number(1000);
            for (const int feedback : feedbackDividers) {
                const Number clock = product / Number(2 * feedback);
                if (within(Number(60), clock, Number(820))) {
                    clocks.insert(clock);
                }
            }
        }
    }
    return clocks;
}

template <class Number>
std::set<Number> sxdReferenceClocks(const Number& lineRate, const Number& refclk) {
    const Number rate = sxdRate(lineRate);
    const Number word = lineRate > decimal<Number>(281, 10)
                            ? Number(0)
                            : sxdWord(lineRate, refclk, SxdWordFor::referenceClock);
    const Number fraction = word / Number(16777216);
    std::set<Number> clocks;
    for (const int preDivider : preDividers) {
        const Number product = Number(preDivider) * rate * Number(1000);
        for (const int feedback : integers(16, 160)) {
            const Number clock = product / (Number(feedback) + fraction);
            if (between(decimal<Number>(59999999, 1000000), clock,
                        decimal<Number>(820000001, 1000000))) {
                clocks.insert(clock);
            }
        }
    }
    return clocks;
}

template <class Number>
Number distanceOf(const Number& left, const Number& right) {
    return left < right ? Number(right - left) : Number(left - right);
}

/// The lower of two at the same distance; 0 out of an empty set.
template <class Number>
Number nearest(const std::set<Number>& clocks, const Number& wanted) {
    Number result(0);
    Number best(10000000);
    for (const Number& clock : clocks) {
        if (distanceOf(wanted, clock) < best) {
            best = distanceOf(wanted, clock);
            result = clock;
        }
    }
    return result;
}

// Output clocks

template <class Number>
std::vector<Number> firstStages() {
    std::vector<Number> result;
    for (const int tenths : {40, 50, 55, 80, 100, 160, 165, 200, 320, 330, 400}) {
        result.push_back(decimal<Number>(tenths, 10));
    }
    return result;
}

inline const std::vector<int> secondStages{1, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64, 96, 128};

template <class Number>
void offer(std::set<Number>& clocks, const Number& dividedClock, const Number& target) {
    const Number clock = Number(1000) * dividedClock;
    if (clock > Number(1000)) {
        return;
    }
    for (const int ratio : {1, 2, 4, 8}) {
        const Number reduced = Number(1000) * (dividedClock / Number(ratio));
        const Number smaller = std::min(reduced, target);
        if (distanceOf(reduced, target) / smaller < decimal<Number>(1, 10000)) {
            clocks.insert(clock);
        }
    }
}

template <class Number>
void walkDividers(std::set<Number>& clocks, const Number& input, bool buffered,
                  const Number& target) {
    for (const Number& first : firstStages<Number>()) {
        const Number stage = input / first;
        for (const int second : secondStages) {
            if (buffered) {
                offer(clocks, Number(stage / Number(second)), target);
            } else if (within(decimal<Number>(1, 2), stage, Number(2))) {
                offer(clocks, Number(decimal<Number>(1, 2) * stage / Number(second)), target);
            }
        }
    }
}

/// What the lists of all families but SXD depend on.
struct OutputClockCase {
    std::string pllType;
    int userDataWidth;
    std::string encoding;
    bool buffered;
};

template <class Number>
Number userClock(const Number& lineRate, const OutputClockCase& setting) {
    Number width(setting.userDataWidth);
    if (setting.encoding == "8B10B") {
        width = width * decimal<Number>(5, 4);
    } else if (setting.encoding == "64B66B_ASYNC") {
        width = width * decimal<Number>(33, 32);
    }
    return lineRate * Number(1000) / width;
}

template <class Number>
std::set<Number> linePllClocks(const Number& lineRate, const OutputClockCase& setting) {
    const bool lcpll = setting.pllType == "LCPLL";
    const bool halved = lcpll ? lineRate > decimal<Number>(16375, 1000) : setting.pllType == "RPLL";
    std::set<Number> clocks;
    for (const int lineDivider : lineDividers) {
        const Number whole = Number(lineDivider) * lineRate;
        const Number half = whole * decimal<Number>(1, 2);
        const Number vco = halved ? half : whole;
        if (lcpll ? isLcpllVco(vco) : isRpllVco(vco)) {
            walkDividers(clocks, half, setting.buffered, userClock(lineRate, setting));
        }
    }
    return clocks;
}

template <class Number>
std::set<Number> freeRpllClocks(const Number& lineRate, const Number& refclk,
                                const OutputClockCase& setting) {
    std::set<Number> clocks;
    for (const int preDivider : preDividers) {
        for (const int feedback : integers(5, 125)) {
            const Number vco = Number(feedback) * (refclk / Number(preDivider)) / Number(1000);
            if (isRpllVco(vco)) {
                walkDividers(clocks, vco, setting.buffered, userClock(lineRate, setting));
            }
        }
    }
    return clocks;
}

enum class Direction { transmit, receive };

template <class Number>
std::set<Number> sxdClocks(Direction direction, const Number& lineRate, bool pam4,
                           int intDataWidth) {
    const Number symbolRate = pam4 ? Number(decimal<Number>(1, 2) * lineRate) : lineRate;
    const Number whole = direction == Direction::transmit ? symbolRate : lineRate;
    const Number half = whole * decimal<Number>(1, 2);
    const Number vco = symbolRate > decimal<Number>(145, 10) ? half : whole;
    std::set<Number> clocks;
    if (isSxdVco(vco)) {
        const Number target = Number(1000) * lineRate / Number(intDataWidth);
        for (const int divider :
             pam4 ? std::vector<int>{20, 32, 40, 64} : std::vector<int>{10, 16, 20, 32}) {
            offer(clocks, Number(half / Number(divider)), target);
        }
    }
    return clocks;
}

}  // namespace clocking_enumeration
