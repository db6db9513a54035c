#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "MSPIMapper.h"
#include "MappingFixture.h"

inline constexpr std::string_view templateScenarioMarkup =
    "<scenario xmlns=\"urn:kadenza:document:2\" id=\"template\"><critical-path slack=\"0\"/></scenario>";
inline constexpr std::string_view emptyTOC =
    "<toc xmlns=\"urn:kadenza:document:2\"><!-- kept --><window><editing-scenario>template</editing-scenario></window>"
    "<project><next-task-id>1</next-task-id><next-resource-id>1</next-resource-id>"
    "<scenario id=\"template\" name=\"Actual\" filename=\"Actual.xml\"/><date-display/><duration-format/>"
    "<effort-format/><named-styles/></project></toc>";

inline constexpr std::string_view standardCalendar =
    "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>";
// What every project needs, and starts in 2012's winter.
inline constexpr std::string_view frame =
    "<ScheduleFromStart>1</ScheduleFromStart><StartDate>2012-01-09T08:00:00</StartDate>";

inline std::string framed(const std::string& content) {
    return std::string(frame) + std::string(standardCalendar) + content;
}

inline std::string task(int uid, const std::string& more = "") {
    return "<Task><UID>" + std::to_string(uid) + "</UID><OutlineLevel>1</OutlineLevel>" + more + "</Task>";
}
inline std::string tasks(const std::string& content) {
    return "<Tasks>" + content + "</Tasks>";
}
inline std::string baseline(int number, const std::string& more = "") {
    return "<Baseline><Number>" + std::to_string(number) + "</Number>" + more + "</Baseline>";
}

// An import of one plan: its documents, and one mapper after another. The n-th scenario gets the n-th of the ids
// "baaaaaaaaaa", "caaaaaaaaaa", "daaaaaaaaaa".
class ProjectImport : public MappingServices {
public:
    explicit ProjectImport(const std::string& projectContent, std::string_view tocMarkup = emptyTOC)
        : ProjectImport(planFromXML(projectContent), tocMarkup) {}
    ProjectImport(MSPCXMLDocument&& source, std::string_view tocMarkup)
        : ProjectImport(MSPCXMLLoaded{std::move(source), {}, {}}, tocMarkup) {}
    ProjectImport(MSPCXMLLoaded&& source, std::string_view tocMarkup)
        : plan(std::move(source)),
          toc(documentFromXML(tocMarkup, MSPCXMLContent::Everything)),
          scenarioTemplate(documentFromXML(templateScenarioMarkup)) {
        randomSource = ListedRandomSource{0x0100000000000000, 0x0200000000000000, 0x0300000000000000};
        info.mspdiProjectName = "Plan";
    }

    // The markup of the scenario; "(none)" where there is none.
    std::string mapActual() {
        info.mspdiBaselineNumber.reset();
        info.kdzxScenarioName = "Actual";
        return map();
    }
    std::string mapBaseline(int number) {
        info.mspdiBaselineNumber = number;
        info.kdzxScenarioName = number == 0 ? "Baseline" : "Baseline" + std::to_string(number);
        return map();
    }
    std::string map() {
        MSPIMapper mapper(plan, scenarioTemplate, toc, info, services);
        mapper.map();
        projectName = mapper.mspProjectName();
        return mapper.kdzxXmlDoc() ? markupOf(*mapper.kdzxXmlDoc()) : "(none)";
    }
    // The markup of the one element of a path below the table of contents' root.
    std::string inTOC(const std::string& path) {
        const auto nodes = toc.root().nodesForXPath(path);
        return nodes && nodes->size() == 1 ? markupOf(toc.root().newCopyOf(nodes->front())) : "(not one)";
    }

    MSPIPlan plan;
    MSPCXMLDocument toc;
    MSPCXMLDocument scenarioTemplate;
    MSPIImportInfo info;
    std::string projectName;
};

// The schedule of a base calendar that names no week days.
inline std::string standardWeek() {
    std::string week;
    for (const std::string day : {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"}) {
        const bool isWorking = day != "sunday" && day != "saturday";
        week += "<schedule-day day-of-week=\"" + day + "\"" +
                (isWorking ? "><time-span start-time=\"28800\" end-time=\"43200\"/>"
                             "<time-span start-time=\"46800\" end-time=\"61200\"/></schedule-day>"
                           : "/>");
    }
    return "<schedule>" + week + "</schedule>";
}

// Two tasks, one with a custom field, an assigned resource and a baseline 1.
inline constexpr std::string_view smallPlan =
    "<SaveVersion>12</SaveVersion><Title>House</Title><WorkFormat>2</WorkFormat>"
    "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName><CFType>0</CFType>"
    "<Alias>Region</Alias></ExtendedAttribute></ExtendedAttributes>"
    "<Tasks><Task><UID>7</UID><Name>Dig</Name><OutlineLevel>1</OutlineLevel><Start>2012-01-09T08:00:00</Start>"
    "<Finish>2012-01-09T17:00:00</Finish><Duration>PT8H0M0S</Duration><Work>PT4H0M0S</Work>"
    "<ExtendedAttribute><FieldID>1</FieldID><Value>North</Value></ExtendedAttribute>"
    "<Baseline><Number>1</Number><Start>2012-01-10T08:00:00</Start><Finish>2012-01-11T17:00:00</Finish>"
    "<Duration>PT16H0M0S</Duration><Work>PT12H0M0S</Work><Cost>5</Cost></Baseline></Task>"
    "<Task><UID>9</UID><Name>Build</Name><OutlineLevel>1</OutlineLevel></Task></Tasks>"
    "<Resources><Resource><UID>3</UID><Name>Anna</Name><Type>1</Type></Resource></Resources>"
    "<Assignments><Assignment><UID>1</UID><TaskUID>7</TaskUID><ResourceUID>3</ResourceUID></Assignment></Assignments>";
