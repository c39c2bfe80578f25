#pragma once

#include <exception>
#include <map>
#include <string>

namespace sable_lanecfg {

/// Messages of an operation by number.
using packingMessages = std::map<int, std::string>;

inline constexpr const char* packingFaultFormat = "Exception caught %s at %s of file %s.";
/// Of the innermost step, which puts a candidate into its record.
inline constexpr const char* packingRecordFaultFormat = "debug8 caught %s at %s of file %s.";

/// Enters a text under the number after the last one; the first is 1.
void addPackingMessage(packingMessages& messages, const std::string& text);

/// Enters several texts in their order.
void addPackingMessages(packingMessages& messages, const packingMessages& added);

/// Tells the user of a fault, with the source line at which it was caught and the source file by
/// which users know the operation.
void showFault(const char* format, const std::exception& fault, int line, const char* sourceFile);

/// The same for an operation of the packing.
void showPackingFault(const char* format, const std::exception& fault, int line);

/// Tells of a fault in the way that the caller of the operation wants.
void reportPackingFault(const char* format, const std::exception& fault, int line, bool logErrors,
                        packingMessages& messages);

/// Does a part of the work of an operation whose faults end here.
template <class Work>
void catchPackingFaults(int line, bool logErrors, packingMessages& messages, const Work& work) {
    try {
        work();
    } catch (const std::exception& fault) {
        reportPackingFault(packingFaultFormat, fault, line, logErrors, messages);
    }
}

}  // namespace sable_lanecfg
