// A host in small: it loads the library, lets it register, and edits parameters through its models.
#include <lanecfg/host/ToolDRCModel.h>
#include <lanecfg/host/ToolHybridController.h>
#include <lanecfg/host/ToolParamMgr.h>

#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

constexpr const char* entryName = "Hostx_rule_engine_Init";

/// An edit of parameters, and the parameter that the user looks at. All their names stand without
/// the prefix that the host puts before them.
struct Edit {
    std::string ipIdentifier;
    std::string parameter;
    std::map<std::string, std::string> values;
};

const std::vector<Edit> edits{
    {"corvane:ip:sable_gt_subcore_ip:99.9",
     "TX_REFCLK_FREQUENCY",
     {{"TX_PLL_TYPE", "RPLL"},
      {"TX_LINE_RATE", "10"},
      {"TX_QPLL_FRACN_NUMERATOR", "0"},
      {"TX_REFCLK_FREQUENCY", ""}}},
    {"corvane:ip:sable_gt_subcore_ip:99.9",
     "TXPROGDIV_FREQ_VAL",
     {{"TXPROGDIV_FREQ_ENABLE", "false"}, {"TXPROGDIV_FREQ_VAL", "500.000"}}},
    {"corvane:ip:gt_subcore_ip:1.0",
     "TX_QPLL_FRACN_NUMERATOR",
     {{"TX_PLL_TYPE", "lcpll"}, {"TX_LINE_RATE", "16.375"}, {"TX_QPLL_FRACN_NUMERATOR", "13"}}},
    {"corvane:ip:gt_subcore_ip:1.0",
     "TX_QPLL_FRACN_NUMERATOR",
     {{"TX_PLL_TYPE", "lcpll"}, {"TX_LINE_RATE", "16.376"}, {"TX_QPLL_FRACN_NUMERATOR", "13"}}},
    {"corvane:ip:gt_subcore_ip:1.0",
     "TX_ACTUAL_REFCLK_FREQUENCY",
     {{"TX_PLL_TYPE", "LCPLL"},
      {"TX_LINE_RATE", "10.3125"},
      {"TX_REFCLK_FREQUENCY", "156.25"},
      {"TX_ACTUAL_REFCLK_FREQUENCY", ""}}},
    {"corvane:ip:gt_subcore_ip:1.0",
     "TXPROGDIV_FREQ_ENABLE",
     {{"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"}, {"TXPROGDIV_FREQ_ENABLE", "false"}}},
    {"corvane:ip:sxd_lane_cfg_brightspan:1.0",
     "FRACN_NUMERATOR",
     {{"TX_LINE_RATE", "56"}, {"TX_PAM_SEL", "PAM4"}, {"FRACN_NUMERATOR", "13"}}},
    {"corvane:ip:sxd_lane_cfg_brightspan:1.0",
     "FRACN_NUMERATOR",
     {{"TX_LINE_RATE", "56"}, {"TX_PAM_SEL", "NRZ"}, {"FRACN_NUMERATOR", "13"}}},
    {"corvane:ip:sxd_lane_cfg_brightspan:1.0", "NO_SUCH_PARAMETER", {{"TX_LINE_RATE", "56"}}},
};

/// Makes the model of an IP as the library has registered it, and deletes it so.
class Model {
  public:
    explicit Model(const std::string& ipIdentifier)
        : ipIdentifier_(ipIdentifier), model_(ToolHybridController::createDRCModel(ipIdentifier)) {
        if (model_ == nullptr) {
            throw std::runtime_error("no model for " + ipIdentifier);
        }
    }
    ~Model() {
        const bool isDeleted = ToolHybridController::deleteDRCModel(ipIdentifier_, &model_);
        std::cout << (isDeleted && model_ == nullptr ? "  deleted\n" : "  NOT DELETED\n");
    }
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    ToolDRCModel& operator*() const { return *model_; }
    ToolDRCModel* operator->() const { return model_; }

  private:
    std::string ipIdentifier_;
    ToolDRCModel* model_;
};

std::string className(const ToolDRCModel& model) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(model).name(), nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : typeid(model).name();
}

void loadLibrary(const char* file) {
    if (dlsym(RTLD_DEFAULT, entryName) != nullptr) {
        throw std::runtime_error("the library is in the process before it is loaded");
    }
    void* const library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    const auto entry = reinterpret_cast<int (*)()>(dlsym(library, entryName));
    if (entry == nullptr) {
        throw std::runtime_error(dlerror());
    }
    std::cout << entryName << " gives " << entry() << '\n';
}

void showParameters() {
    std::cout << "\nTool parameters\n";
    for (const auto& [name, parameter] : ToolParamMgr::getParamMgr().getBoolParams()) {
        std::cout << "  " << name << ", " << (parameter.defaultValue ? "true" : "false")
                  << " by default: " << parameter.description << '\n';
    }
}

void showModels() {
    for (const std::string& ipIdentifier : ToolHybridController::getIPIdentifiers()) {
        std::cout << '\n' << ipIdentifier << '\n';
        const Model model(ipIdentifier);
        std::cout << "  " << className(*model) << " for " << model->getName() << '\n';
        for (const std::string& procedure : model->getUpdateProcNames()) {
            std::cout << "  " << procedure << '\n';
        }
    }
}

void showValue(const char* when, const std::string& name, const std::string& value) {
    std::cout << "  " << when << ' ' << name << " = \"" << value << "\"\n";
}

void perform(const Edit& edit) {
    const std::string prefix = "PARAM_VALUE.";
    std::cout << '\n' << edit.ipIdentifier << ": " << edit.parameter << '\n';
    std::map<std::string, std::string> values;
    for (const auto& [name, value] : edit.values) {
        values[prefix + name] = value;
        showValue("given", name, value);
    }
    const Model model(edit.ipIdentifier);
    bool isEditable = true;  // what the host takes for granted until it is told otherwise
    std::vector<std::string> offered;
    model->evalUpdateProc("update_" + prefix + edit.parameter, values, isEditable, offered);
    for (const auto& [name, value] : edit.values) {
        if (values.at(prefix + name) != value) {
            showValue("now", name, values.at(prefix + name));
        }
    }
    std::cout << "  editable: " << (isEditable ? "yes" : "no") << '\n';
    for (const std::string& text : offered) {
        std::cout << "  offered " << text << '\n';
    }
}

}  // namespace

int main(int, char** arguments) {
    try {
        loadLibrary(arguments[1]);
        showParameters();
        showModels();
        for (const Edit& edit : edits) {
            perform(edit);
        }
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
