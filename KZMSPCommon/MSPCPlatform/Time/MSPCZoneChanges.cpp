#include "MSPCZoneChanges.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "MSPCFilesIn.h"
#include "MSPCZoneRule.h"

namespace {

using Seconds = std::vector<std::int64_t>;

// A block of a TZif file begins with this much, six counts at its end.
constexpr std::size_t HeaderSize = 44;
constexpr std::size_t CountsBegin = 20;
constexpr std::size_t VersionAt = 4;

std::int64_t numberAt(std::string_view bytes, std::size_t at, std::size_t width) {
    std::uint64_t number = (static_cast<unsigned char>(bytes[at]) & 0x80U) != 0 ? ~std::uint64_t{0} : 0;
    for (const char byte : bytes.substr(at, width)) {
        number = number << 8U | static_cast<unsigned char>(byte);
    }
    return static_cast<std::int64_t>(number);
}

// One of the blocks of a TZif file, whose seconds have four or eight bytes.
class Block {
public:
    // None when the bytes hold no whole block.
    static std::optional<Block> at(std::string_view bytes, std::size_t width) {
        if (bytes.size() < HeaderSize || !bytes.starts_with("TZif")) {
            return std::nullopt;
        }
        std::array<std::size_t, 6> counts{};
        for (std::size_t index = 0; index < counts.size(); ++index) {
            counts.at(index) = static_cast<std::uint32_t>(numberAt(bytes, CountsBegin + index * 4, 4));
        }
        const auto [utcMarks, standardMarks, leaps, times, types, letters] = counts;
        const auto size =
            HeaderSize + times * (width + 1) + types * 6 + letters + leaps * (width + 4) + standardMarks + utcMarks;
        return size <= bytes.size() ? std::optional(Block(bytes.substr(0, size), times, width)) : std::nullopt;
    }

    [[nodiscard]] std::size_t size() const { return _bytes.size(); }
    [[nodiscard]] Seconds times() const {
        Seconds times;
        for (std::size_t index = 0; index < _timeCount; ++index) {
            times.push_back(numberAt(_bytes, HeaderSize + index * _width, _width));
        }
        return times;
    }

private:
    Block(std::string_view bytes, std::size_t timeCount, std::size_t width)
        : _bytes(bytes), _timeCount(timeCount), _width(width) {}

    std::string_view _bytes;
    std::size_t _timeCount;
    std::size_t _width;
};

// What a zone's file tells of its changes.
struct Changes {
    Seconds listed;
    std::string rule;  // for the time after those; empty when nothing changes then
};

std::optional<Changes> changesOfFile(std::string_view bytes) {
    const auto first = Block::at(bytes, 4);
    if (!first) {
        return std::nullopt;
    }
    if (bytes[VersionAt] == '\0') {
        return Changes{first->times(), ""};
    }
    bytes.remove_prefix(first->size());
    const auto second = Block::at(bytes, 8);
    if (!second) {
        return std::nullopt;
    }
    bytes.remove_prefix(second->size());
    if (bytes.size() < 2 || bytes.front() != '\n' || bytes.back() != '\n') {
        return std::nullopt;
    }
    return Changes{second->times(), std::string(bytes.substr(1, bytes.size() - 2))};
}

std::optional<Changes> changesOf(const std::string& setting) {
    if (!setting.starts_with(':')) {
        return Changes{{}, setting};
    }
    const auto bytes = MSPCReadFileIn(AT_FDCWD, setting.substr(1), nullptr);
    return bytes ? changesOfFile(*bytes) : std::nullopt;
}

}  // namespace

std::optional<Seconds> MSPCZoneChangesBetween(const std::string& setting, std::int64_t from, std::int64_t before) {
    auto changes = changesOf(setting);
    if (!changes) {
        return std::nullopt;
    }
    auto& seconds = changes->listed;
    if (!changes->rule.empty()) {
        const auto rule = MSPCZoneRule::parsed(changes->rule);
        if (!rule) {
            return std::nullopt;
        }
        rule->addChangesBetween(from, before, seconds);
    }
    std::erase_if(seconds, [&](std::int64_t second) { return second < from || second >= before; });
    std::ranges::sort(seconds);
    seconds.erase(std::unique(seconds.begin(), seconds.end()), seconds.end());
    return std::move(seconds);
}
