#include "MSPDICheckReport.h"

#include <fmt/format.h>

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPDIJSON.h"

namespace {

using JSON = nlohmann::ordered_json;

constexpr std::size_t mostOfOneRule = 20;

std::string_view nameOf(KZDXSeverity severity) {
    return severity == KZDXSeverity::Fault ? "fault" : "note";
}

// "1 fault", "2 notes"
std::string counted(std::size_t count, std::string_view thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

void writeFinding(const std::string& document, const KZDXFinding& finding, MSPDIRun& run) {
    auto place = fmt::format("{}/{}", MSPCShownText(document), MSPCShownText(finding.file));
    if (finding.line > 0) {
        place += fmt::format(":{}", finding.line);
    }
    run.out << place << ": " << run.emphasized(nameOf(finding.severity)) << ": ";
    if (!finding.element.empty()) {
        run.out << MSPCShownText(finding.element).view();
        if (!finding.name.empty()) {
            run.out << fmt::format(" (\"{}\")", MSPCShownText(finding.name));
        }
        run.out << ": ";
    }
    run.out << MSPCShownText(finding.text).view() << " [" << finding.rule << "]\n";
}

void writeVerdict(const MSPDICheckedDocument& document, std::ostream& out) {
    const auto faults = document.check.count(KZDXSeverity::Fault);
    const auto notes = document.check.count(KZDXSeverity::Note);
    out << MSPCShownText(document.document).view() << ": "
        << (faults == 0 ? std::string("sound") : "not sound, " + counted(faults, "fault"))
        << (notes == 0 ? std::string() : ", " + counted(notes, "note")) << '\n';
}

JSON jsonOf(const KZDXFinding& finding) {
    return {{"rule", finding.rule},       {"severity", nameOf(finding.severity)},
            {"file", finding.file},       {"line", finding.line > 0 ? JSON(finding.line) : JSON(nullptr)},
            {"element", finding.element}, {"name", finding.name},
            {"what", finding.text}};
}

JSON jsonOf(const MSPDICheckedDocument& document) {
    const auto& obstacle = document.check.obstacle;
    auto findings = JSON::array();
    for (const auto& finding : document.check.findings) {
        findings.push_back(jsonOf(finding));
    }
    return {{"document", document.document},
            {"obstacle", obstacle ? JSON(*obstacle) : JSON(nullptr)},
            {"sound", obstacle ? JSON(nullptr) : JSON(document.check.isSound())},
            {"faults", document.check.count(KZDXSeverity::Fault)},
            {"notes", document.check.count(KZDXSeverity::Note)},
            {"findings", std::move(findings)}};
}

}  // namespace

void MSPDIWriteChecks(const std::vector<MSPDICheckedDocument>& documents, MSPDIRun& run) {
    for (const auto& document : documents) {
        if (document.check.obstacle) {
            continue;  // told as what could not be looked at
        }
        std::map<std::string_view, std::size_t> counts;
        for (const auto& finding : document.check.findings) {
            if (++counts[finding.rule] <= mostOfOneRule) {
                writeFinding(document.document, finding, run);
            }
        }
        for (const auto& [rule, count] : counts) {
            if (count > mostOfOneRule) {
                run.out << fmt::format("{}: ... and {} more [{}] (--json tells all)\n",
                                       MSPCShownText(document.document), count - mostOfOneRule, rule);
            }
        }
        writeVerdict(document, run.out);
    }
}

void MSPDIWriteChecksAsJSON(const std::vector<MSPDICheckedDocument>& documents, std::ostream& out) {
    auto told = JSON::array();
    for (const auto& document : documents) {
        told.push_back(jsonOf(document));
    }
    MSPDIWriteJSON(JSON{{"documents", std::move(told)}}, out);
}
