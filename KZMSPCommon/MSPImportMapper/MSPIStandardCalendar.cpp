#include "MSPIStandardCalendar.h"

#include "MSPCExtensions.h"

MSPCXMLNode MSPIStandardCalendar(const MSPCXMLNode& mspProject) {
    const auto byUID = singleObjectForXQuery(mspProject, "Calendars/Calendar[UID=1]");
    return byUID ? byUID : singleObjectForXQuery(mspProject, "Calendars/Calendar[Name='Standard']");
}
