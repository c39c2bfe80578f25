#include "support/temporary_directory.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace lanecfg_test {

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lanecfg-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::file(const std::string& name) const {
    return (path_ / name).string();
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& content) const {
    const std::string target = file(name);
    std::ofstream stream(target, std::ios::binary);
    stream << content;
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + target);
    }
    return target;
}

std::string readFile(const std::filesystem::path& path) {
    const std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

}  // namespace lanecfg_test
