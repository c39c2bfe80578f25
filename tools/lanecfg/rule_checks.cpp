#include "rule_checks.h"

#include "errors.h"
#include "idle_run.h"
#include "message_capture.h"
#include "standard_output_guard.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace sable_lanecfg::tool {
namespace {

/// What the rules gave a field over all passes.
struct FieldValues {
    bool areUnsigned = true;
    unsigned largest = 0;
};

/// Fields by name, registers by name, as the rules write them.
struct RuleOutputs {
    std::map<std::string, FieldValues> fields;
    std::set<std::string> registers;
    std::set<std::string> others;  ///< what has no fields: whole words, ports and intermediates
};

std::string registerOf(const std::string& field) {
    return field.substr(0, field.find('.'));
}

void addField(const std::string& name, const ruleValue& value, RuleOutputs& outputs) {
    FieldValues& seen = outputs.fields[name];
    if (const auto* const number = boost::get<unsigned>(&value)) {
        seen.largest = std::max(seen.largest, *number);
    } else {
        seen.areUnsigned = false;
    }
    outputs.registers.insert(registerOf(name));
}

RuleOutputs outputsOf(const gt_rule_engine& engine) {
    RuleOutputs outputs;
    for (const std::vector<variableMap>& passes : engine.blockVarMap) {
        for (const variableMap& snapshot : passes) {
            for (const auto& [name, variable] : snapshot) {
                if (!variable.ruleNumber) {
                    continue;
                }
                if (name.find('.') != std::string::npos) {
                    addField(name, variable.value, outputs);
                } else {
                    outputs.others.insert(name);
                }
            }
        }
    }
    return outputs;
}

unsigned largestOfWidth(int width) {
    return width >= 32 ? ~0U : (1U << static_cast<unsigned>(std::max(width, 0))) - 1U;
}

/// Whether the fields of a register take every bit of its word.
bool isFull(const std::map<std::string, std::vector<int>>& placed) {
    constexpr int wordBits = 32;
    std::bitset<wordBits> taken;
    for (const auto& field : placed) {
        const std::vector<int>& place = field.second;
        const std::int64_t offset = place.empty() ? 0 : place[0];
        const std::int64_t width = place.size() > 1 ? place[1] : 0;
        for (int bit = 0; bit < wordBits; ++bit) {
            if (bit >= offset && bit < offset + width) {
                taken.set(static_cast<std::size_t>(bit));
            }
        }
    }
    return taken.all();
}

/// A value that does not fit is a slip as long as the field can be widened, and without remedy in
/// a full word.
void checkWidth(const std::string& name, unsigned value, int width,
                const std::map<std::string, std::vector<int>>& placed, FindingList& findings) {
    if (value <= largestOfWidth(width)) {
        return;
    }
    const std::string misfit = "The rules write " + std::to_string(value) +
                               ", which does not fit the field's " + std::to_string(width) +
                               " bits";
    if (isFull(placed)) {
        findings.note(name, misfit + "; its low bits enter the register, which is full.");
    } else {
        findings.error(name, misfit + "; widen the field, its register has free bits.");
    }
}

void checkField(const std::string& name, const FieldValues& values,
                const std::map<std::string, std::vector<int>>& placed, FindingList& findings) {
    const auto bits = placed.find(name);
    if (bits == placed.end()) {
        findings.error(name,
                       "A rule writes this field, which the register does not have; add it "
                       "with its bit offset and width.");
        return;
    }
    if (!values.areUnsigned) {
        findings.error(name,
                       "A rule gives this field a value that is no unsigned number, so the "
                       "register can't be composed.");
    }
    const int width = bits->second.size() > 1 ? bits->second[1] : 0;
    checkWidth(name, values.largest, width, placed, findings);
}

void checkWrittenFields(const RuleOutputs& outputs,
                        const std::map<std::string, attributeInfo>& registers,
                        FindingList& findings) {
    for (const auto& [name, values] : outputs.fields) {
        const auto holder = registers.find(registerOf(name));
        if (holder != registers.end()) {
            checkField(name, values, holder->second.fields, findings);
        }
    }
}

void checkPlacedFields(const std::string& name, const attributeInfo& record,
                       const RuleOutputs& outputs, FindingList& findings) {
    for (const auto& placed : record.fields) {
        if (outputs.fields.count(placed.first) == 0) {
            findings.error(placed.first, "No rule writes this field, so composing " + name +
                                             " fails; remove the field, or use the database that "
                                             "belongs to these rules.");
        }
    }
}

/// `rulesName` tells whose rules, since a database may serve those of several selectors.
void compare(const RuleOutputs& outputs, const std::map<std::string, attributeInfo>& registers,
             const std::string& rulesName, FindingList& findings) {
    for (const std::string& name : outputs.registers) {
        if (registers.count(name) == 0) {
            findings.error(name,
                           "The rules compose this register, which the database does not "
                           "have; add it with block type, offset and fields.");
        }
    }
    for (const auto& [name, record] : registers) {
        if (outputs.registers.count(name) == 0 && outputs.others.count(name) == 0) {
            findings.note(name, "No rule of " + rulesName + " writes this register.");
        } else {
            checkPlacedFields(name, record, outputs, findings);
        }
    }
    checkWrittenFields(outputs, registers, findings);
}

bool hasError(const std::vector<Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.level == FindingLevel::error; });
}

std::size_t compareWithRules(const Database& database, const RuleSet& rules,
                             std::vector<Finding>& findings) {
    FindingList whole("", findings);
    const gt_db_load loaded = loadIdle(database);
    // Composing nothing, the rules reveal what they write whatever the database has.
    const IdleInstance bare = buildIdle(rules, loaded, {});
    if (bare.engine == nullptr) {
        whole.note("", "The " + rules.selector + " rules of " + rules.family +
                           " are not part of this build, so nothing was compared with them.");
        return 0;
    }
    const RuleOutputs outputs = outputsOf(*bare.engine);
    FindingList registers("registers.json", findings);
    compare(outputs, loaded.m_fields, nameOf(rules), registers);
    if (!hasError(findings)) {
        const IdleInstance complete = buildIdle(rules, loaded, loaded.m_fields);
        const StandardOutputGuard guard;
        complete.attributes();
    }
    return outputs.fields.size() + outputs.registers.size();
}

}  // namespace

std::size_t checkRules(const Database& database, const RuleSet& rules,
                       std::vector<Finding>& findings) {
    FindingList whole("", findings);
    std::size_t outputs = 0;
    const MessageCapture captured;
    try {
        outputs = compareWithRules(database, rules, findings);
    } catch (...) {
        whole.error("", "The rules can't run on this database: " + currentExceptionText());
    }
    for (const ToolMsgRecord& record : captured.records()) {
        if (record.severity == ToolMsgSeverity::error) {
            whole.error("", record.text());
        }
    }
    return outputs;
}

}  // namespace sable_lanecfg::tool
