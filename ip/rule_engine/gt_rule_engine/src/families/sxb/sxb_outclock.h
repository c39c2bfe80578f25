#pragma once

#include "families/common/rule_declaration.h"

#include <string>

namespace sable_lanecfg {

// What the outclock reports of both directions are made of.

/// Where the output clock comes from, as PIPE_CTRL_CFG7 holds it.
enum outclockControl : unsigned int {
    outclockOfCodingLayer = 1,
    outclockOfAnalogueLayer = 2,
    outclockOfReference = 3,
    outclockOfHalfReference = 4,
    outclockOfProgrammableDivider = 5,
    outclockOfTransmitter = 6  ///< of receivers only
};

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

/// Words a second, in MHz for a line rate in Gb/s; infinite for a word without bits.
double wordFrequency(double lineRate, unsigned int bits);

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

}  // namespace sable_lanecfg
