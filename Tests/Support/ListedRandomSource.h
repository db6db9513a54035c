#pragma once

#include <deque>
#include <initializer_list>

#include "MSPCRandomSource.h"

// Gives the listed numbers one after another, then fails.
class ListedRandomSource final : public MSPCRandomSource {
public:
    ListedRandomSource(std::initializer_list<std::uint64_t> numbers) : _numbers(numbers) {}

    [[nodiscard]] std::optional<std::uint64_t> draw64Bits() override {
        if (_numbers.empty()) {
            return std::nullopt;
        }
        const auto number = _numbers.front();
        _numbers.pop_front();
        return number;
    }

private:
    std::deque<std::uint64_t> _numbers;
};
