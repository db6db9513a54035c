#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MSPIProjectMapper.h"
#include "MappingFixture.h"

// A calendar that a project cannot do without.
inline constexpr std::string_view standardCalendarXML =
    "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>";

// The mapping of one project to a scenario, and ways to look at the result.
class ScenarioMapping {
public:
    // `projectContent` is what the project holds besides its standard calendar.
    explicit ScenarioMapping(std::string_view projectContent, std::int64_t saveVersion = 9,
                             std::string_view calendars = standardCalendarXML,
                             std::string_view templateXML = "<scenario/>")
        : fixture(std::string(projectContent).append(calendars)),
          templateDocument(documentFromXML(templateXML, MSPCXMLContent::Everything)),
          mapper(fixture.context, taskMaxId, resourceMaxId, userDataTOCElements) {
        fixture.context.setMspSaveVersion(saveVersion);
        fixture.context.setImportedProjectName("Imported");
        fixture.context.setKdzxTemplateRoot(templateDocument.root());
    }
    ScenarioMapping(const ScenarioMapping&) = delete;
    ScenarioMapping& operator=(const ScenarioMapping&) = delete;
    ~ScenarioMapping() { fixture.log.ignoreLines(); }  // a test that is about the log takes its lines itself

    // Maps the project; gives the new scenario.
    MSPCXMLNode map() {
        _scenario = mapper.newScenarioFromMSPProject(fixture.plan.root());
        return _scenario.node();
    }

    // The scenario's markup.
    std::string markup() { return markupOf(fixture.plan.root().newCopyOf(map())); }

    // Who belongs to whom, the group task with its children and each task with its own, in document order:
    // "t-1(t1) t1(t2 t3) t2 t3".
    std::string tree() {
        std::vector<std::string> tasks;
        for (const auto& task : nodesForXQuery(map(), "task")) {
            const auto children = references(task, "child-task");
            tasks.push_back(idOf(task) + (children.empty() ? "" : fmt::format("({})", fmt::join(children, " "))));
        }
        return fmt::format("{}", fmt::join(tasks, " "));
    }
    // The tasks with their resources: "t1[r1 r2] t2". A bare assignment is a "-".
    std::string assignments() {
        std::vector<std::string> tasks;
        for (const auto& task : nodesForXQuery(map(), "task[@id!='t-1']")) {
            const auto resources = references(task, "assignment");
            tasks.push_back(idOf(task) + (resources.empty() ? "" : fmt::format("[{}]", fmt::join(resources, " "))));
        }
        return fmt::format("{}", fmt::join(tasks, " "));
    }

    MappingFixture fixture;
    MSPCXMLDocument templateDocument;
    std::int64_t taskMaxId = 0;
    std::int64_t resourceMaxId = 0;
    MSPIUserDataTOCElements userDataTOCElements;
    MSPIProjectMapper mapper;

private:
    static std::string idOf(const MSPCXMLNode& task) { return task.attribute("id").stringValue(); }
    static std::vector<std::string> references(const MSPCXMLNode& task, std::string_view name) {
        std::vector<std::string> result;
        for (const auto& child : nodesForXQuery(task, name)) {
            const auto reference = child.attribute("idref");
            result.push_back(reference ? reference.stringValue() : "-");
        }
        return result;
    }

    MSPCXMLNewElement _scenario;
};

// An MSPDI task.
inline std::string mspTask(int uid, int outlineLevel, std::string_view more = "") {
    return fmt::format("<Task><UID>{}</UID><OutlineLevel>{}</OutlineLevel>{}</Task>", uid, outlineLevel, more);
}
inline std::string mspTasks(std::string_view tasks) {
    return fmt::format("<StartDate>2012-03-05T08:00:00</StartDate><Tasks>{}</Tasks>", tasks);
}
