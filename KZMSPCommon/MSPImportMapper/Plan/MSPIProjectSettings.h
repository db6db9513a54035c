#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "MSPCXMLNode.h"

class MSPCLog;

// The project-wide settings of an MSPDI `Project`. A setting that is missing, given twice or no number keeps its
// default: settings never end an import.
struct MSPIProjectSettings {
    std::int64_t saveVersion = 9;
    std::int64_t minutesPerDay = -1;  // negative: not given
    std::int64_t minutesPerWeek = -1;
    std::int64_t daysPerMonth = -1;
    std::int64_t weekStartDay = -1;
    std::int64_t durationFormat = -1;

    [[nodiscard]] static MSPIProjectSettings ofProject(const MSPCXMLNode& mspProject);
};

// How amounts of money are shown.
struct MSPICurrencySettings {
    std::int64_t digits = 2;
    std::string symbol = "$";
    std::int64_t symbolPosition = 0;  // 0 before, 1 after, 2 before with a blank, 3 after with a blank

    // The settings of a project. With `readsCurrencyCode` (files of 2007 and later) a code other than USD gives the log
    // line "WARNING: Igonring currency code from MSPDI: <code>. Always assume USD.".
    [[nodiscard]] static MSPICurrencySettings ofProject(const MSPCXMLNode& mspProject, bool readsCurrencyCode,
                                                        MSPCLog& log);

    // A sample amount, "$1,234.56" by default; at most five decimals.
    // Deliberate: position 2 puts the blank in front of the symbol, " $1,234.56".
    [[nodiscard]] std::string sampleAmount() const;
};

// Whole hours of working time, truncated.
struct MSPIWorkingTimeUnits {
    std::int64_t hoursPerDay = 8;
    std::int64_t hoursPerWeek = 40;
    std::int64_t hoursPerMonth = 160;
    std::int64_t hoursPerYear = 1920;

    // What is not given (negative) keeps its default. Products beyond 64 bits become the largest number.
    [[nodiscard]] static MSPIWorkingTimeUnits ofSettings(const MSPIProjectSettings& settings);
};
