#include "rate_table_groups.h"

#include "rate_table_bits.h"

#include <algorithm>

namespace sable_lanecfg::tool {
namespace {

constexpr unsigned burstPlaces = 16;
constexpr std::size_t smallestBurst = 3;

/// The words of one rate, read from front to back.
class RateReader {
  public:
    RateReader(const std::vector<std::uint32_t>& words, std::size_t begin, std::size_t end)
        : words_(words), position_(begin), end_(end) {}

    std::size_t position() const { return position_; }
    bool isAtEnd() const { return position_ == end_; }

    std::uint32_t next(std::size_t groupStart) {
        if (isAtEnd()) {
            throwTableFault(groupStart,
                            "this group runs over the end of its rate, which is before word " +
                                std::to_string(end_));
        }
        return words_[position_++];
    }

  private:
    const std::vector<std::uint32_t>& words_;
    std::size_t position_;
    std::size_t end_;
};

WriteGroup decodeBurst(RateReader& reader, std::uint32_t header, std::size_t start) {
    const unsigned address = bitsOf(header, 31, 22);
    const unsigned writeMask = bitsOf(header, 21, 6);
    const unsigned span = bitsOf(header, 5, 2);
    if ((writeMask & 1U) == 0 || writeMask >> span != 1U) {
        throwTableFault(start,
                        "the write mask of this burst does not reach from its first to its "
                        "last register");
    }
    WriteGroup group{start, true, std::nullopt, {}};
    for (unsigned distance = 0; distance < burstPlaces; ++distance) {
        if ((writeMask >> distance & 1U) != 0) {
            group.writes.push_back(
                {(address + distance) % rateTableAddresses, std::nullopt, reader.next(start)});
        }
    }
    if (group.writes.size() < smallestBurst) {
        throwTableFault(start, "this burst has fewer than three registers");
    }
    return group;
}

RegisterWrite decodeWrite(RateReader& reader, std::size_t start, unsigned address, bool hasMask) {
    RegisterWrite write{address, std::nullopt, 0};
    if (hasMask) {
        write.mask = reader.next(start);
    }
    write.value = reader.next(start);
    return write;
}

WriteGroup decodePair(RateReader& reader, std::uint32_t header, std::size_t start) {
    if (bitsOf(header, 31, 28) != 0) {
        throwTableFault(start, "reserved bits of this group are set");
    }
    const unsigned lane = bitsOf(header, 27, 26);
    const bool isSingleLane = bitsOf(header, 25, 25) == 1;
    const bool secondMasked = bitsOf(header, 24, 24) == 1;
    const bool firstMasked = bitsOf(header, 23, 23) == 1;
    const unsigned secondAddress = bitsOf(header, 22, 13);
    const unsigned firstAddress = bitsOf(header, 12, 3);
    const bool hasSecond = bitsOf(header, 2, 2) == 1;
    if (!isSingleLane && lane != 0) {
        throwTableFault(start, "this group selects a lane, but not the writing of a single one");
    }
    if (!hasSecond && (secondAddress != firstAddress || secondMasked != firstMasked)) {
        throwTableFault(start, "this group has one register, but tells of a second one");
    }
    WriteGroup group{start, false, std::nullopt, {}};
    if (isSingleLane) {
        group.lane = lane;
    }
    group.writes.push_back(decodeWrite(reader, start, firstAddress, firstMasked));
    if (hasSecond) {
        group.writes.push_back(decodeWrite(reader, start, secondAddress, secondMasked));
    }
    return group;
}

WriteGroup decodeGroup(RateReader& reader) {
    const std::size_t start = reader.position();
    const std::uint32_t header = reader.next(start);
    if (bitsOf(header, 0, 0) != 0) {
        throwTableFault(start, "this group is said to be in ROM, which no table uses");
    }
    return bitsOf(header, 1, 1) == 1 ? decodeBurst(reader, header, start)
                                     : decodePair(reader, header, start);
}

bool isSameWrite(const RegisterWrite& first, const RegisterWrite& second) {
    return first.address == second.address && first.mask == second.mask;
}

bool isSameGroup(const WriteGroup& first, const WriteGroup& second) {
    return first.isBurst == second.isBurst && first.lane == second.lane &&
           std::equal(first.writes.begin(), first.writes.end(), second.writes.begin(),
                      second.writes.end(), isSameWrite);
}

}  // namespace

RateWrites decodeRateWrites(const std::vector<std::uint32_t>& words, std::size_t begin,
                            std::size_t end) {
    RateWrites groups;
    RateReader reader(words, begin, end);
    while (!reader.isAtEnd()) {
        groups.push_back(decodeGroup(reader));
    }
    return groups;
}

bool haveSameLayout(const RateWrites& first, const RateWrites& second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), isSameGroup);
}

}  // namespace sable_lanecfg::tool
