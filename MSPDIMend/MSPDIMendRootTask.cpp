#include <fmt/format.h>

#include <algorithm>

#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

namespace {

constexpr std::string_view rootTask = "root-task";
constexpr std::string_view duplicateRoot = "duplicate-root";

std::vector<MSPCXMLNode> rootsOf(const MSPDIPatient& patient) {
    auto tasks = patient.items("Tasks", "Task");
    std::erase_if(tasks,
                  [](const auto& task) { return MSPDIIntegerIn(task, "UID") != 0 || MSPDIIsTrueIn(task, "IsNull"); });
    return tasks;
}

std::int64_t levelOf(const MSPCXMLNode& task) {
    return MSPDIIntegerIn(task, "OutlineLevel").value_or(0);
}

bool isRoot(const MSPCXMLNode& task) {
    return MSPDIIsTrueIn(task, "Summary") && levelOf(task) == 0;
}

}  // namespace

// Where one of them is a project's root already, it stays the root.
void MSPDIMendDuplicateRoots(MSPDIPatient& patient) {
    auto roots = rootsOf(patient);
    if (roots.size() < 2 || !patient.allows(duplicateRoot)) {
        return;
    }
    auto kept = std::find_if(roots.begin(), roots.end(), isRoot);
    roots.erase(kept == roots.end() ? roots.begin() : kept);
    MSPDIFreeUIDs free(patient.items("Tasks", "Task"));
    for (const auto& task : roots) {
        const auto uid = free.next();
        patient.note(duplicateRoot, [&] { return fmt::format("{}: UID {}", MSPISubjectOf("Task", task), uid); });
        patient.setChild(task, "UID", uid, {});
        if (levelOf(task) < 1) {
            patient.setChild(task, "OutlineLevel", "1", MSPDITaskFieldsBefore("OutlineLevel"));
        }
    }
}

void MSPDIMendRootTask(MSPDIPatient& patient) {
    const auto roots = rootsOf(patient);
    if (roots.empty() || isRoot(roots.front()) || !patient.allows(rootTask)) {
        return;
    }
    const auto& root = roots.front();
    patient.note(rootTask, [&] { return MSPISubjectOf("Task", root); });
    if (levelOf(root) != 0) {
        patient.setChild(root, "OutlineLevel", "0", MSPDITaskFieldsBefore("OutlineLevel"));
        patient.hasMovedRoot = true;
    }
    if (!MSPDIIsTrueIn(root, "Summary")) {
        patient.setChild(root, "Summary", "1", MSPDITaskFieldsBefore("Summary"));
    }
}
