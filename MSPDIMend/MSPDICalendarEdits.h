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

// The calendars that arrive: the project's, and those that resources have, by the only number that each names. What is
// put into others only adds to what is lost.
[[nodiscard]] std::vector<MSPCXMLNode> MSPDIMappedCalendars(const MSPDIPatient& patient);

// The first day of an exception in either form; empty where it names none.
[[nodiscard]] std::string MSPDIFirstDayOf(const MSPCXMLNode& exception);
// The texts of its `DayWorking` and `WorkingTimes`, which say what is worked on its days.
[[nodiscard]] std::string MSPDIWorkOf(const MSPDIPatient& patient, const MSPCXMLNode& dayOrException);
// Whether the working times and the periods in an element arrive as they are. Those until midnight or beyond do not,
// nor what cannot be read or is said twice: copies of it would only add to what is lost.
[[nodiscard]] bool MSPDIArrivesAsItIs(const MSPCXMLNode& element);

// The working times of a day in the week of who says nothing else, from and to as MSPDI writes a time of day; none on a
// day off.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> MSPDIUsualTimesOn(MSPCWeekday weekday);

// Puts a day of the week into a calendar.
void MSPDIAddWeekDay(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view markup);
// Puts an exception over one range of days into it.
void MSPDIAddException(MSPDIPatient& patient, const MSPCXMLNode& calendar, std::string_view timePeriod,
                       std::string_view work);
