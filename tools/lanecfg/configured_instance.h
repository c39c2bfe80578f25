#pragma once

#include "console.h"
#include "request_inputs.h"

#include <lanecfg/gt_rule_engine.h>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// A request that the library has run, and its answers. The library keeps one instance of a
/// selector at a time, so one of these has to end before the next begins; answers are copies.
///
/// Making the rate table clears the log and adjusts snapshots. A subcommand with several answers
/// asks in this order: attributes, output clocks, memory image, fabric memory, table size; and
/// for the log after the memory image. An ELF update makes the rate table too.
class ConfiguredInstance {
  public:
    /// Runs the request, and warns of what makes its registers useless. Throws RequestError when no
    /// instance comes of it.
    ConfiguredInstance(const Request& request, const Database& database, Console& console);
    ~ConfiguredInstance();
    ConfiguredInstance(const ConfiguredInstance&) = delete;
    ConfiguredInstance& operator=(const ConfiguredInstance&) = delete;

    /// Register words by prefixed name.
    textMap attributes();
    /// Output clocks (MHz) by name.
    textMap outputClocks();
    /// Memory image, section text by load address.
    textMap memoryImage();
    /// Puts the rate table into a firmware ELF with the script of the work directory, both absolute
    /// paths. False when the update failed.
    bool updateElf(const std::string& elfFile, const std::string& workDir);
    /// Rate table as binary digits, 32 a word without separators.
    std::string rateTable();
    /// Log lines since the last rate table.
    static std::vector<std::string> log();

    /// Ends the progress, and tells when errors were reported while the request ran and the answers
    /// were made. To be called behind the last answer; a failure names the request itself.
    void finish() const;

    /// The engine with its snapshots.
    const gt_rule_engine& engine() const { return *engine_; }

  private:
    template <class Query>
    auto ask(const char* what, const Query& query);
    std::string reasonOfFailure() const;

    const Request& request_;
    const Database& database_;
    Console& console_;
    int errorsBefore_;
    gt_rule_engine* engine_ = nullptr;
};

/// Reads the request, finds its database, and gives both to `ConfiguredInstance`.
struct RequestRun {
    RequestRun(const RequestOptions& options, const OutputOptions& output, Console& console);

    RequestInputs inputs;
    ConfiguredInstance instance;
};

}  // namespace sable_lanecfg::tool
