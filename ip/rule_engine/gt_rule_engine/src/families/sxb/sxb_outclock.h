#pragma once

#include "families/common/lane_side.h"
#include "families/common/outclock_control.h"
#include "families/common/rule_declaration.h"

#include <optional>
#include <string>

namespace sable_lanecfg {

// What the outclock reports of both directions are made of.

/// The same variable of both PLLs.
template <class T>
struct pllPair {
    rule_input<T> lcpll;
    rule_input<T> rpll;

    const T& of(bool ofLcpll) const { return ofLcpll ? lcpll() : rpll(); }
};

/// GHz.
pllPair<double> readPllClocks(rule_declaration& rule);
/// MHz.
pllPair<double> readReferenceFrequencies(rule_declaration& rule);
pllPair<unsigned int> readReferenceSelectors(rule_declaration& rule);

/// "LCPLL" or "RPLL" and behind it the name of the selected reference clock, if the selector
/// stands for one.
std::string referenceSource(bool ofLcpll, const pllPair<unsigned int>& selectors);

/// What a report gives where there is no clock (MHz).
constexpr double frequencyOfNoClock = 1.0;

/// Words a second, in MHz for a line rate in Gb/s; infinite for a word without bits.
double wordFrequency(double lineRate, unsigned int bits);

/// What decides which PLL clocks the transmitter's programmable divider.
struct transmitDividerSelects {
    rule_input<unsigned int> programmableClock;
    rule_input<unsigned int> pllClock;
    rule_input<unsigned int> bypassesInterpolator;
    rule_input<unsigned int> oscillatorSource;

    /// The phase interpolator's clock is the RPLL, whatever serves the line.
    bool takesRpll() const { return programmableClock() == 2; }
    bool dividesLcpll() const;
};

/// The way from a PLL through the programmable divider and the delay aligner.
struct programmablePath {
    double pllClock;             ///< GHz
    double divider;              ///< of the programmable divider
    bool bypassesAligner;        ///< else the aligner halves the clock
    unsigned int outputDivider;  ///< behind the aligner

    /// GHz; not finite when a divider is 0.
    double clock() const;
    /// Output clocks in one word, in steps of the output divider; 0 when there is no such number.
    unsigned int clocksPerWord(double lineRate, unsigned int bits) const;
};

/// What a report of an output clock writes beside the clocks of a word.
enum class outclockContent {
    clockAndReference,  ///< the clock, and frequency and port of the reference behind it
    clock
};

/// The output clock (MHz). What a `Clock` gives for the test signal is its direction's own matter.
template <class Clock>
double outclockFrequency(const Clock& clock) {
    switch (clock.control()) {
        case outclockOfCodingLayer:
        case outclockOfAnalogueLayer:
            return wordFrequency(clock.lineRate(), clock.bits());
        case outclockOfReference:
            return clock.selectedReference();
        case outclockOfHalfReference:
            return clock.selectedReference() / 2.0;
        case outclockOfProgrammableDivider:
            return clock.path().clock() * 1000.0;
        case outclockOfTestSignal:
            return clock.testSignal();
        default:
            return frequencyOfNoClock;
    }
}

/// Output clocks in one word, 0 where the clock isn't the programmable divider's.
template <class Clock>
unsigned int outclocksPerWord(const Clock& clock) {
    return clock.control() == outclockOfProgrammableDivider
               ? clock.path().clocksPerWord(clock.lineRate(), clock.bits())
               : 0;
}

/// The report of one direction. A `Clock` declares the rule's inputs and gives, when it is asked,
///
///     control()             the code of the source, an `outclockControl`
///     lineRate(), bits()    Gb/s; of an internal word
///     selectedReference()   MHz
///     path()                through the programmable divider, a `programmablePath`
///     testSignal()          MHz
///     referenceFrequency(), source()   MHz and port of the reference that is reported
template <class Clock>
ruleDeclarer outclockReport(const laneSide& side, outclockContent content) {
    return [side, content](rule_declaration& rule) {
        const Clock clock(rule);
        const auto frequency = rule.writes<double>(side.within("INT_", "OUTCLK_FREQ"));
        const auto clocksPerWord = rule.writes(side.parameter("PHALIGN_CFG0.DAPI_BUFG_DIV"));
        std::optional<rule_output<double>> referenceFrequency;
        std::optional<rule_output<std::string>> source;
        if (content == outclockContent::clockAndReference) {
            referenceFrequency = rule.writes<double>(side.within("INT_", "OUTCLK_REFCLK_FREQ"));
            source = rule.writes<std::string>(side.within("INT_", "OUTCLK_REFCLK_SOURCE"));
        }
        rule.body([=] {
            frequency.set(outclockFrequency(clock));
            clocksPerWord.set(outclocksPerWord(clock));
            if (referenceFrequency && source) {
                referenceFrequency->set(clock.referenceFrequency());
                source->set(clock.source());
            }
        });
    };
}

ruleDeclarer transmitOutclockReport(outclockContent content);
ruleDeclarer receiveOutclockReport(outclockContent content);

}  // namespace sable_lanecfg
