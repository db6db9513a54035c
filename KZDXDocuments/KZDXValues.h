#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "KZDXTellValue.h"
#include "MSPCXMLNode.h"

// Compares the values of two tasks, two resources or two scenarios: all child elements but those that other comparisons
// look at. An element that nobody knows is compared as it stands. Dates that differ in their offset alone, while the
// clock on the wall or the instant is the same, are only counted.
class KZDXValueComparison {
public:
    void compare(const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell);
    [[nodiscard]] std::size_t offsets() const { return _offsets; }

private:
    void compareChild(std::string_view name, const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell);
    void compareDates(std::string_view kind, std::string_view words, std::string_view verb, const std::string& before,
                      const std::string& after, const KZDXTellValue& tell);

    std::size_t _offsets = 0;
    std::string _before;  // room for texts
    std::string _after;
};
