#include "MSPIProjectSettings.h"

#include <algorithm>
#include <limits>

#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPCTextScanner.h"

namespace {

void readInteger(const MSPCXMLNode& mspProject, std::string_view name, std::int64_t& setting) {
    Error error;
    const auto text = textForXQuery(mspProject, name, &error);
    if (text && !error) {
        setting = scanInteger64(text.textOrEmpty()).value_or(setting);
    }
}

std::int64_t saturatingProduct(std::int64_t a, std::int64_t b) {
    std::int64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::int64_t>::max() : product;
}

}  // namespace

MSPIProjectSettings MSPIProjectSettings::ofProject(const MSPCXMLNode& mspProject) {
    MSPIProjectSettings settings;
    readInteger(mspProject, "SaveVersion", settings.saveVersion);
    readInteger(mspProject, "MinutesPerDay", settings.minutesPerDay);
    readInteger(mspProject, "MinutesPerWeek", settings.minutesPerWeek);
    readInteger(mspProject, "DaysPerMonth", settings.daysPerMonth);
    readInteger(mspProject, "WeekStartDay", settings.weekStartDay);
    readInteger(mspProject, "DurationFormat", settings.durationFormat);
    return settings;
}

MSPICurrencySettings MSPICurrencySettings::ofProject(const MSPCXMLNode& mspProject, bool readsCurrencyCode,
                                                     MSPCLog& log) {
    MSPICurrencySettings settings;
    readInteger(mspProject, "CurrencyDigits", settings.digits);
    if (auto symbol = stringValueForXQuery(mspProject, "CurrencySymbol")) {
        settings.symbol = std::move(*symbol);
    }
    if (readsCurrencyCode) {
        const auto code = textForXQuery(mspProject, "CurrencyCode");
        if (code && code.textOrEmpty() != "USD") {
            log.log("WARNING: Igonring currency code from MSPDI: {}. Always assume USD.", code.textOrEmpty());
        }
    }
    readInteger(mspProject, "CurrencySymbolPosition", settings.symbolPosition);
    return settings;
}

std::string MSPICurrencySettings::sampleAmount() const {
    constexpr std::string_view decimals = "56789";
    std::string sample;
    if (symbolPosition == 0) {
        sample = symbol;
    } else if (symbolPosition == 2) {
        sample = " " + symbol;
    }
    sample += "1,234";
    if (digits > 0) {
        const auto count = std::min(digits, static_cast<std::int64_t>(decimals.size()));
        sample.append(".").append(decimals.substr(0, static_cast<std::size_t>(count)));
    }
    if (symbolPosition == 1) {
        sample += symbol;
    } else if (symbolPosition == 3) {
        sample += " " + symbol;
    }
    return sample;
}

MSPIWorkingTimeUnits MSPIWorkingTimeUnits::ofSettings(const MSPIProjectSettings& settings) {
    MSPIWorkingTimeUnits units;
    if (settings.minutesPerDay >= 0) {
        units.hoursPerDay = settings.minutesPerDay / 60;
    }
    if (settings.minutesPerWeek >= 0) {
        units.hoursPerWeek = settings.minutesPerWeek / 60;
    }
    if (settings.daysPerMonth >= 0) {
        units.hoursPerMonth = saturatingProduct(settings.daysPerMonth, units.hoursPerDay);
    }
    units.hoursPerYear = saturatingProduct(units.hoursPerMonth, 12);
    return units;
}
