#include "DocumentShapes.h"

#include <functional>

namespace {

using Piece = std::function<std::string(int number)>;

std::string each(int count, const Piece& piece) {
    std::string text;
    for (int number = 1; number <= count; ++number) {
        text += piece(number);
    }
    return text;
}

std::string scenarioOf(const std::string& resources, const std::string& group, const std::string& tasks) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<scenario xmlns=\"urn:kadenza:document:2\" id=\"aEmptyPlan0\"><start-date>2024-01-01T08:00:00Z</start-date>"
           "<granularity>hours</granularity><top-resource idref=\"r-1\"/>" +
           resources + "<top-task idref=\"t-1\"/><task id=\"t-1\"><type>group</type>" + group + "</task>" + tasks +
           "<critical-path root=\"-1\" enabled=\"no\" resources=\"no\" color=\"#c0392b\"/></scenario>\n";
}

const std::string noResources = "<resource id=\"r-1\"><type>Group</type></resource>";

std::string child(int number) {
    return "<child-task idref=\"t" + std::to_string(number) + "\"/>\n";
}

std::string task(int number, const std::string& content, const std::string& name = "",
                 const std::string& type = "task") {
    return "<task id=\"t" + std::to_string(number) + "\"><title>" +
           (name.empty() ? "Task " + std::to_string(number) : name) + "</title><type>" + type +
           "</type><effort>28800</effort>" + content + "</task>\n";
}

std::string flat(int n, const Piece& content) {
    return scenarioOf(noResources, each(n, child), each(n, [&](int number) { return task(number, content(number)); }));
}

std::string link(int number) {
    return "<prerequisite-task idref=\"t" + std::to_string(number) + "\" kind=\"FS\"/>";
}

std::string nothing(int /*number*/) {
    return {};
}

std::string day(int number) {
    const auto twoDigits = [](int value) { return (value < 10 ? "0" : "") + std::to_string(value); };
    return "2024-" + twoDigits(1 + number / 28 % 12) + "-" + twoDigits(1 + number % 28) + "T08:00:00Z";
}

std::string resources(int n, const Piece& content) {
    return "<resource id=\"r-1\"><type>Group</type>" +
           each(n, [](int number) { return "<child-resource idref=\"r" + std::to_string(number) + "\"/>"; }) +
           "</resource>" + each(n, [&](int number) {
               return "<resource id=\"r" + std::to_string(number) + "\"><name>R " + std::to_string(number) +
                      "</name><type>Staff</type><units-available>1.000000</units-available>" + content(number) +
                      "</resource>\n";
           });
}

std::string plain(int n) {
    return flat(n, nothing);
}

// One group within the other.
std::string nested(int n) {
    return scenarioOf(noResources, child(1), each(n, [n](int number) {
                          const bool isLast = number == n;
                          return task(number, isLast ? "" : child(number + 1), "", isLast ? "task" : "group");
                      }));
}

std::string oneName(int n) {
    return scenarioOf(noResources, each(n, child), each(n, [](int number) { return task(number, "", "Paint"); }));
}

// The same tasks under other numbers, so that they are matched by outline and name.
std::string renumbered(int n, const char* name) {
    const auto other = [n](int number) { return n + number; };
    return scenarioOf(noResources, each(n, [&](int number) { return child(other(number)); }), each(n, [&](int number) {
                          return task(other(number), "", name == nullptr ? "Task " + std::to_string(number) : name);
                      }));
}

std::string note(const std::string& line) {
    return "<p><run><lit>" + line + "</lit></run></p>";
}

const DocumentShape shapes[] = {
    {"StartsMoved",
     [](int n) { return flat(n, [](int number) { return "<start-date>" + day(number) + "</start-date>"; }); },
     [](int n) { return flat(n, [](int number) { return "<start-date>" + day(number + 1) + "</start-date>"; }); }},
    {"ChainOfLinks", plain,
     [](int n) { return flat(n, [](int number) { return number > 1 ? link(number - 1) : ""; }); }},
    {"AllLinksToOne", plain, [](int n) { return flat(n, [](int number) { return number > 1 ? link(1) : ""; }); }},
    {"AllLinksOfOne", plain,
     [](int n) {
         return flat(n, [n](int number) { return number > 1 ? "" : each(n - 1, [](int at) { return link(at + 1); }); });
     }},
    {"CircleOfLinks", plain, [](int n) { return flat(n, [n](int number) { return link(number % n + 1); }); }},
    {"Nested", nested, plain},
    {"MovedIntoGroups", plain, nested},
    {"Reversed", plain,
     [](int n) {
         return scenarioOf(noResources, each(n, [n](int number) { return child(n + 1 - number); }),
                           each(n, [](int number) { return task(number, ""); }));
     }},
    {"Gone", plain, [](int n) { return plain(n / 4); }},
    {"New", [](int n) { return plain(n / 4); }, plain},
    {"OneName", oneName, [](int n) { return renumbered(n, "Paint"); }},
    {"Renumbered", plain, [](int n) { return renumbered(n, nullptr); }},
    {"OneId", plain,
     [](int n) {
         return scenarioOf(noResources, each(n, child), each(n, [](int /*number*/) { return task(7, ""); }));
     }},
    {"NoSuchId", plain, [](int n) { return flat(n, [n](int number) { return link(n + number); }); }},
    {"ChildrenTwice", oneName,
     [](int n) {
         return scenarioOf(noResources, each(n, child) + each(n, child),
                           each(n, [](int number) { return task(number, ""); }));
     }},
    {"Unreachable", plain,
     [](int n) { return scenarioOf(noResources, "", each(n, [](int number) { return task(number, ""); })); }},
    {"AssignmentsOfOne", [](int n) { return scenarioOf(resources(n, nothing), child(1), task(1, "")); },
     [](int n) {
         return scenarioOf(
             resources(n, nothing), child(1),
             task(1, each(n, [](int number) { return "<assignment idref=\"r" + std::to_string(number) + "\"/>"; })));
     }},
    {"RatesOfResources", [](int n) { return scenarioOf(resources(n, nothing), "", ""); },
     [](int n) {
         return scenarioOf(resources(n, [](int /*number*/) { return "<cost-per-hour>5</cost-per-hour>"; }), "", "");
     }},
    {"LinesOfANote",
     [](int n) {
         return scenarioOf(
             noResources, child(1),
             task(1, "<note><text>" + each(n, [](int /*number*/) { return note("a"); }) + "</text></note>"));
     },
     [](int n) {
         return scenarioOf(noResources, child(1), task(1, "<note><text>" + each(n, [](int number) {
                                                              return note(std::to_string(number));
                                                          }) + "</text></note>"));
     }},
    {"FieldsOfATask",
     [](int n) {
         return scenarioOf(noResources, child(1), task(1, "<user-data>" + each(n, [](int number) {
                                                              return "<key>k" + std::to_string(number) +
                                                                     "</key><string>a</string>";
                                                          }) + "</user-data>"));
     },
     [](int n) {
         return scenarioOf(noResources, child(1), task(1, "<user-data>" + each(n, [n](int number) {
                                                              return "<key>k" + std::to_string(n - number) +
                                                                     "</key><string>b</string>";
                                                          }) + "</user-data>"));
     }},
    {"DaysOff", [](int /*n*/) { return scenarioOf(resources(1, nothing), "", ""); },
     [](int n) {
         return scenarioOf(
             resources(1,
                       [n](int /*number*/) {
                           return "<schedule><calendar name=\"Time Off\" editable=\"yes\" overtime=\"no\">" +
                                  each(n,
                                       [](int number) {
                                           return "<event start=\"" + day(number) + "\" end=\"" + day(number) + "\"/>";
                                       }) +
                                  "</calendar></schedule>";
                       }),
             "", "");
     }},
    {"TimesOfADay", [](int /*n*/) { return scenarioOf(resources(1, nothing), "", ""); },
     [](int n) {
         return scenarioOf(resources(1,
                                     [n](int /*number*/) {
                                         return "<schedule><schedule-day day-of-week=\"monday\">" +
                                                each(n,
                                                     [](int number) {
                                                         return "<time-span start-time=\"" + std::to_string(number) +
                                                                "\" end-time=\"" + std::to_string(number + 1) + "\"/>";
                                                     }) +
                                                "</schedule-day></schedule>";
                                     }),
                           "", "");
     }},
    {"OneDayManyTimes", [](int /*n*/) { return scenarioOf(resources(1, nothing), "", ""); },
     [](int n) {
         return scenarioOf(resources(1,
                                     [n](int /*number*/) {
                                         return "<schedule>" +
                                                each(n,
                                                     [](int /*number*/) {
                                                         return std::string(
                                                             "<schedule-day day-of-week=\"monday\"><time-span "
                                                             "start-time=\"0\" end-time=\"3600\"/></schedule-day>");
                                                     }) +
                                                "</schedule>";
                                     }),
                           "", "");
     }},
    {"TasksThatEndBeforeTheyStart", plain,
     [](int n) {
         const auto times =
             each(n, [](int /*number*/) { return std::string("<time-span start-time=\"0\" end-time=\"3600\"/>"); });
         return scenarioOf(
             "<resource id=\"r-1\"><type>Group</type><schedule><schedule-day day-of-week=\"monday\">" + times +
                 "</schedule-day></schedule></resource>",
             each(n, child), each(n, [](int number) {
                 return task(number,
                             "<start-date>2024-01-01T12:00:00Z</start-date><end-date>2024-01-01T08:00:00Z</end-date>");
             }));
     }},
    {"UnknownElements", plain,
     [](int n) {
         return scenarioOf(noResources, "", each(n, [](int number) { return "<e" + std::to_string(number) + "/>"; }));
     }},
};

}  // namespace

std::span<const DocumentShape> documentShapes() {
    return shapes;
}
