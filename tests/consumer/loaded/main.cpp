#include <dlfcn.h>
#include <iostream>
#include <string>
#include <vector>

int main(int, char** arguments) {
    void* library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    // lane_cfg_ip_mgr::getLogContent()
    using Operation = std::vector<std::string> (*)();
    const auto getLogContent = reinterpret_cast<Operation>(
        dlsym(library, "_ZN13sable_lanecfg15lane_cfg_ip_mgr13getLogContentB5cxx11Ev"));
    if (getLogContent == nullptr) {
        std::cerr << dlerror() << '\n';
        return 1;
    }
    const std::size_t lines = getLogContent().size();
    std::cout << lines << " log lines\n";
    return lines == 0 && dlclose(library) == 0 ? 0 : 1;
}
