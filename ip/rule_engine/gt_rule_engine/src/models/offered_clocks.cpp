#include "models/offered_clocks.h"

#include "models/parameter_values.h"
#include "user_clock.h"

#include <iomanip>
#include <locale>
#include <sstream>

namespace sable_lanecfg::models {

std::string fixedText(double number, int decimals) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << std::setprecision(decimals) << number;
    return stream.str();
}

void offerClocks(updater& record, const std::string& parameter, const std::set<double>& clocks,
                 int decimals, const std::function<bool(double)>& chosen) {
    for (const double clock : clocks) {
        const std::string text = fixedText(clock, decimals);
        if (chosen(clock)) {
            setValue(record, parameter, text);
        }
        record.range.push_back(text);
    }
}

void offerOutputClocks(updater& record, const std::string& parameter,
                       const std::set<double>& clocks, int decimals, double userClock) {
    offerClocks(record, parameter, clocks, decimals,
                [userClock](double clock) { return clocking::agree(clock, userClock); });
}

}  // namespace sable_lanecfg::models
