#include "families/common/memory_image.h"

#include "families/common/firmware_lines.h"

namespace sable_lanecfg {

namespace {

const firmware::FirmwareLines& linesOf(MemoryImage image) {
    switch (image) {
        case MemoryImage::liveEarlySilicon:
            return firmware::live_early_silicon;
        case MemoryImage::sxc:
            return firmware::sxc;
        case MemoryImage::frozen:
            return firmware::frozen;
        case MemoryImage::live:
            break;
    }
    return firmware::live;
}

bool isKey(std::string_view line) {
    return line.front() == '@';
}

}  // namespace

std::map<std::string, std::string> memoryImageSections(MemoryImage image) {
    std::map<std::string, std::string> sections;
    std::string* text = nullptr;
    const firmware::FirmwareLines& lines = linesOf(image);
    for (const std::string_view* line = lines.first; line != lines.last; ++line) {
        if (isKey(*line)) {
            text = &sections[std::string(*line)];
        } else if (text != nullptr) {
            text->append(*line);
        }
    }
    return sections;
}

MemoryImage liveMemoryImage(const std::map<std::string, std::vector<std::string>>& settings) {
    const auto revisions = settings.find("siliconRev");
    const bool isEarly = revisions != settings.end() && !revisions->second.empty() &&
                         (revisions->second.front() == "es1" || revisions->second.front() == "ES1");
    return isEarly ? MemoryImage::liveEarlySilicon : MemoryImage::live;
}

}  // namespace sable_lanecfg
