#include "cli/bundled_tables.h"

#include "support/rate_table_headers.h"

namespace lanecfg_test {
namespace {

std::uint32_t burstHeaderOf(const WriteGroup& group) {
    std::vector<std::uint32_t> distances;
    for (const ChangingRegister& written : group) {
        distances.push_back(written.address - group.front().address);
    }
    return burstHeader(group.front().address, distances);
}

std::uint32_t headerOf(const WriteGroup& group) {
    const ChangingRegister& first = group.front();
    const ChangingRegister& last = group.back();
    if (group.size() > 2) {
        return burstHeaderOf(group);
    }
    const std::uint32_t addresses =
        group.size() == 2 ? pairHeader(first.address, last.address) : loneHeader(first.address);
    return addresses | (first.mask != 0 ? firstMasked : 0) | (last.mask != 0 ? secondMasked : 0);
}

}  // namespace

std::vector<std::uint32_t> bodyOf(const std::vector<WriteGroup>& groups, std::size_t rates) {
    std::vector<std::uint32_t> words;
    for (std::size_t rate = 0; rate < rates; ++rate) {
        for (const WriteGroup& group : groups) {
            words.push_back(headerOf(group));
            for (const ChangingRegister& written : group) {
                if (written.mask != 0) {
                    words.push_back(written.mask);
                }
                words.push_back(written.values.at(rate));
            }
        }
    }
    return words;
}

std::vector<std::uint32_t> joined(std::vector<std::uint32_t> words,
                                  const std::vector<std::uint32_t>& body) {
    words.insert(words.end(), body.begin(), body.end());
    return words;
}

std::vector<std::uint32_t> oneGroup(std::uint32_t rateWords) {
    const std::uint32_t owner = 0x00100000 | (rateWords << 10) | 10;
    const std::uint32_t follower = 0x00100000 | (10 + rateWords);
    return {0x1e00001f, 0x1e00001f,  // all duplex, all with master 0, group 1111
            owner,      owner,      follower, follower, follower, follower, follower, follower};
}

}  // namespace lanecfg_test
