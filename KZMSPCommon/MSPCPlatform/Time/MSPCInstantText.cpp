#include "MSPCInstantText.h"

#include <fmt/format.h>

#include <cstdlib>

std::string displayText(MSPCInstant instant) {
    return displayText(instant, MSPCGregorianCalendar::utc());
}

std::string displayText(MSPCInstant instant, const MSPCGregorianCalendar& gregorian) {
    const auto fields = gregorian.fieldsOf(instant);
    const auto offset = gregorian.timeZone().secondsFromGMT(instant);
    const auto minutes = std::abs(offset) / 60;
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} {}{:02}{:02}", fields.year, fields.month, fields.day,
                       fields.hour, fields.minute, fields.second, offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
}
