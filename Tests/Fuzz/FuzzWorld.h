#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "MSPCLog.h"
#include "MSPCRandomSource.h"
#include "MSPCServices.h"
#include "MapUserDefaults.h"
#include "Property.h"

inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
    return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(bytes), size);
}

// Takes small numbers and pieces from the front of an input; what is asked for beyond its end is 0 or empty.
class InputReader {
public:
    explicit InputReader(std::string_view input) : _rest(input) {}

    std::uint8_t byte() {
        const auto piece = bytes(1);
        return piece.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(piece.front());
    }
    // The text up to the next occurrence of a character, which is skipped; all the rest where there is none.
    std::string_view upTo(char separator) {
        const auto end = _rest.find(separator);
        const auto piece = _rest.substr(0, end);
        _rest.remove_prefix(end == std::string_view::npos ? _rest.size() : end + 1);
        return piece;
    }
    std::string_view bytes(std::size_t count) {
        const auto piece = _rest.substr(0, count);
        _rest.remove_prefix(piece.size());
        return piece;
    }
    [[nodiscard]] std::string_view rest() const { return _rest; }

private:
    std::string_view _rest;
};

// Counts up, so that every run of one input does the same.
class CountingRandomSource final : public MSPCRandomSource {
public:
    [[nodiscard]] std::optional<std::uint64_t> draw64Bits() override { return 0x9E3779B97F4A7C15U * ++_count; }

private:
    std::uint64_t _count = 0;
};

class SilentLog final : public MSPCLog {
public:
    [[nodiscard]] std::size_t characters() const noexcept { return _characters; }

protected:
    void write(std::string_view message) override { _characters += message.size(); }

private:
    std::size_t _characters = 0;
};

// The outside world of one run: Europe/Berlin at noon of 2012-01-10, a disk in memory.
class FuzzWorld {
public:
    FuzzWorld() : services{clock, berlin(), log, userDefaults, fileSystem, randomSource} {}

    FixedClock clock{MSPCInstant{1326193200}};
    SilentLog log;
    MapUserDefaults userDefaults;
    InMemoryFileSystem fileSystem;
    CountingRandomSource randomSource;
    MSPCServices services;

private:
    static MSPCTimeZone berlin() {
        static const auto zone = MSPCTimeZone::named("Europe/Berlin");
        return *zone;
    }
};
