#include "MSPDIDiffReport.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPDIJSON.h"

namespace {

using JSON = nlohmann::ordered_json;

// What a difference of the whole document, or of all tasks, is about.
std::string_view titleOf(std::string_view subject) {
    return subject == "resource" ? "Resources" : subject == "task" ? "Tasks" : "Project";
}

JSON jsonOf(const KZDXDifference& difference) {
    return {{"kind", difference.kind},  {"subject", difference.subject}, {"id", difference.id},
            {"name", difference.name},  {"what", difference.what},       {"before", difference.before},
            {"after", difference.after}};
}

}  // namespace

void MSPDIWriteDifferences(const MSPDIDiffSubject& subject, const KZDXDifferences& differences, MSPDIRun& run) {
    for (const auto& difference : differences) {
        const MSPCShownText name(difference.name.empty() ? titleOf(difference.subject) : difference.name);
        run.out << run.emphasized(name.view()) << ": " << MSPCShownText(difference.what).view() << '\n';
    }
    if (!differences.empty()) {
        run.out << fmt::format("{} -> {}: {} difference{}\n", MSPCShownText(subject.old), MSPCShownText(subject.now),
                               differences.size(), differences.size() == 1 ? "" : "s");
    }
}

void MSPDIWriteDifferencesAsJSON(const MSPDIDiffSubject& subject, const KZDXDifferences& differences,
                                 std::ostream& out) {
    auto told = JSON::array();
    for (const auto& difference : differences) {
        told.push_back(jsonOf(difference));
    }
    const JSON json = {
        {"old", subject.old}, {"new", subject.now}, {"scenario", subject.scenario}, {"differences", std::move(told)}};
    MSPDIWriteJSON(json, out);
}
