#include "MSPCInstantText.h"

#include <fmt/format.h>

#include "MSPCGregorianCalendar.h"

std::string displayText(MSPCInstant instant) {
    static const MSPCGregorianCalendar utc(MSPCTimeZone::fixed(0));
    const auto fields = utc.fieldsOf(instant);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} +0000", fields.year, fields.month, fields.day, fields.hour,
                       fields.minute, fields.second);
}
