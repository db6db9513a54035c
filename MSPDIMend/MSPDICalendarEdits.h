#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCWeekday.h"
#include "MSPCXMLNode.h"

class MSPDIPatient;

// Looking at, and adding to, calendars of a plan that is mended.

// The calendars that arrive: the project's, and those that resources have. What is put into others only adds to what
// is lost.
[[nodiscard]] std::vector<MSPCXMLNode> MSPDIMappedCalendars(const MSPDIPatient& patient);

// The first day of an exception in either form; empty where it names none.
[[nodiscard]] std::string MSPDIFirstDayOf(const MSPCXMLNode& exception);
// The texts of its `DayWorking` and `WorkingTimes`, which say what is worked on its days.
[[nodiscard]] std::string MSPDIWorkOf(const MSPDIPatient& patient, const MSPCXMLNode& dayOrException);
// Whether any working time in an element lasts until midnight: that arrives as one that ends at 0 o'clock.
[[nodiscard]] bool MSPDIHasTimeUntilMidnight(const MSPCXMLNode& element);

// The working times of a day in the week of who says nothing else, from and to as MSPDI writes a time of day; none on a
// day off.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> MSPDIUsualTimesOn(MSPCWeekday weekday);

// Puts a day of the week into a calendar.
void MSPDIAddWeekDay(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view markup);
// Puts an exception over one range of days into it.
void MSPDIAddException(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view timePeriod,
                       std::string_view work);
