#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ExpectRaises.h"
#include "MSPITaskMapper.h"
#include "MappingFixture.h"

// What differs from a project scheduled from its start, without dates, saved by 2003.
struct TaskMappingOptions {
    bool fromStart = true;
    std::string projectStart = {};
    std::string projectFinish = {};
    std::int64_t saveVersion = 9;
    std::string restOfProject = {};
    std::string otherTasks = {};
    std::string zone = "Europe/Berlin";
};

// One task of a project and what its mapping leaves behind.
class TaskMapping {
public:
    using Options = TaskMappingOptions;

    explicit TaskMapping(std::string_view taskContent, const Options& options = {})
        : fixture("<Tasks><Task>" + std::string(taskContent) + "</Task>" + options.otherTasks + "</Tasks>" +
                      options.restOfProject,
                  options.zone),
          _fromStart(options.fromStart) {
        fixture.context.setMspSaveVersion(options.saveVersion);
        fixture.context.setMspStartDate(options.projectStart);
        fixture.context.setMspFinishDate(options.projectFinish);
    }
    TaskMapping(const TaskMapping&) = delete;
    TaskMapping& operator=(const TaskMapping&) = delete;
    ~TaskMapping() { fixture.log.ignoreLines(); }  // a test that is about the log takes its lines itself

    MSPITaskMapper mapper() { return {fixture.context, _fromStart, userDataTOCElements, maxId}; }
    // The first task of the project.
    MSPCXMLNode task() { return fixture.plan.root().firstChildElement("Tasks").firstChildElement("Task"); }

    std::string markup() { return markupOf(mapper().newTaskFromMSPTask(MSPCFields(task()))); }
    // What the target of a task with UID 7 holds.
    std::string content() {
        const std::string start = "<task id=\"t7\">";
        const std::string end = "</task>";
        const auto all = markup();
        if (!all.starts_with(start) || !all.ends_with(end)) {
            ADD_FAILURE() << all;
            return all;
        }
        return all.substr(start.size(), all.size() - start.size() - end.size());
    }

    MappingFixture fixture;
    MSPIUserDataTOCElements userDataTOCElements;
    std::int64_t maxId = 0;

private:
    bool _fromStart;
};
