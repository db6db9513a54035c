#include <benchmark/benchmark.h>

#include <string>

#include "FuzzWorld.h"
#include "MSPCExtensions.h"
#include "MSPCFields.h"
#include "MSPCNodeValues.h"
#include "MSPCURL.h"
#include "MSPCXMLLoader.h"
#include "MSPIElementsRead.h"
#include "PlanGenerator.h"

// Reading a task of a plan: one node, one field by a query, and the fields that every task is asked for.

namespace {

// A generated plan of one task, as the loader keeps it.
MSPCXMLDocument smallPlan() {
    std::string plan;
    generatePlan({.tasks = 1}, [&plan](std::string_view piece) { plan += piece; });
    FuzzWorld world;
    world.fileSystem.addFile("/Plan.xml", std::move(plan));
    return newXmlDocFromUrlSelection(MSPCURL::fileURL("/Plan.xml", false), MSPIElementsRead(), world.fileSystem,
                                     world.log)
        .document;
}

MSPCXMLNode lastTaskOf(const MSPCXMLDocument& plan) {
    return singleObjectForXQuery(plan.root(), "Tasks").lastChild();
}

void nextSiblings(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto first = lastTaskOf(plan).firstChild();
    std::int64_t visited = 0;
    for (auto _ : state) {
        for (auto child = first; child; child = child.nextSibling()) {
            benchmark::DoNotOptimize(child);
            ++visited;
        }
    }
    state.SetItemsProcessed(visited);
}
BENCHMARK(nextSiblings);

void firstChildElement(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto task = lastTaskOf(plan);
    for (auto _ : state) {
        benchmark::DoNotOptimize(task.firstChildElement("Summary"));
    }
}
BENCHMARK(firstChildElement);

void stringValueWithoutCopy(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto name = lastTaskOf(plan).firstChildElement("Name");
    std::string buffer;
    for (auto _ : state) {
        benchmark::DoNotOptimize(name.stringValue(buffer));
    }
}
BENCHMARK(stringValueWithoutCopy);

void intValueOfNode(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto uid = lastTaskOf(plan).firstChildElement("UID");
    for (auto _ : state) {
        benchmark::DoNotOptimize(intValueOf(uid));
    }
}
BENCHMARK(intValueOfNode);

void intValueByQuery(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto task = lastTaskOf(plan);
    for (auto _ : state) {
        benchmark::DoNotOptimize(intValueForXQuery(task, "OutlineLevel"));
    }
}
BENCHMARK(intValueByQuery);

void queryWithCondition(benchmark::State& state) {
    const auto plan = smallPlan();
    for (auto _ : state) {
        benchmark::DoNotOptimize(nodesForXQuery(plan.root(), "Calendars/Calendar[UID=1]"));
    }
}
BENCHMARK(queryWithCondition);

void fieldsOfTask(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto task = lastTaskOf(plan);
    for (auto _ : state) {
        benchmark::DoNotOptimize(MSPCFields(task));
    }
}
BENCHMARK(fieldsOfTask);

void tenFieldsOfTask(benchmark::State& state) {
    const auto plan = smallPlan();
    const auto task = lastTaskOf(plan);
    for (auto _ : state) {
        const MSPCFields fields(task);
        for (const auto* const name :
             {"UID", "Name", "Start", "Finish", "Duration", "Work", "Priority", "Type", "Summary", "OutlineLevel"}) {
            benchmark::DoNotOptimize(fields.text(name));
        }
    }
}
BENCHMARK(tenFieldsOfTask);

}  // namespace
