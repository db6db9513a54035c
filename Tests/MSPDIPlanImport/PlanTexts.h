#pragma once

#include <string>

// Plans for tests of whole imports.

inline const std::string standardCalendar =
    "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>";

// A plan with that content and, unless another list of calendars is given, the calendar that every plan needs.
inline std::string planWith(const std::string& content, const std::string& calendars = standardCalendar) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate>)" +
           calendars + content + "</Project>";
}

inline std::string taskNamed(const std::string& name, const std::string& uid, const std::string& more = {}) {
    return "<Task><UID>" + uid + "</UID><Name>" + name + "</Name><OutlineLevel>1</OutlineLevel>" + more + "</Task>";
}

// A task whose type no plan has, which the importer refuses.
inline std::string refusedPlan() {
    return planWith("<Tasks>" + taskNamed("Paint", "1", "<Type>9</Type>") + "</Tasks>");
}
