#include "MSPISplitTask.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCExtensions.h"

namespace {

bool setChildIfPresent(const MSPCXMLNode& element, std::string_view name, std::string_view text) {
    auto child = singleObjectForXQuery(element, name);
    child.setStringValue(text);
    return static_cast<bool>(child);
}

MSPCXMLNode addSplitMark(MSPCXMLNode task) {
    auto split = task.newElement("split");
    if (auto type = singleObjectForXQuery(task, "type")) {
        const auto mark = task.insertChildBefore(std::move(split), type);
        static_cast<void>(type.detach());
        return mark;
    }
    return task.insertChildAfter(std::move(split), singleObjectForXQuery(task, "title"));
}

void writeEnd(const MSPCXMLNode& task, std::string_view kdzxEnd) {
    if (!setChildIfPresent(task, "end-date", kdzxEnd)) {
        addChildElementWithNameStringValue(task, "end-date", kdzxEnd);
    }
    setChildIfPresent(task, "locked-end-date", kdzxEnd);
    setChildIfPresent(task, "end-constraint-date", kdzxEnd);
}

void writeEffort(MSPCXMLNode task, const MSPCXMLNode& splitMark, double effort) {
    const auto text = fmt::format("{:.2f}", effort);
    if (!setChildIfPresent(task, "effort", text)) {
        task.insertChildAfter(task.newElement("effort"), splitMark).setStringValue(text);
    }
}

}  // namespace

std::vector<MSPIPendingPiece> splitTaskIntoPieces(MSPCXMLNode task, std::vector<MSPCXMLNewElement> pieces,
                                                  const std::optional<std::string>& kdzxEnd, bool isReportingErrors) {
    if (pieces.size() < 2) {
        throw MSPCInternalInconsistency("Minimum number of task splits must be 2.");
    }
    const auto splitMark = addSplitMark(task);
    if (kdzxEnd) {
        writeEnd(task, *kdzxEnd);
    }
    std::vector<MSPIPendingPiece> pendingPieces;
    double effort = 0;
    for (auto& piece : pieces) {
        const auto reference = addChildElementWithName(task, "child-task");
        setAttributeWithNameStringValue(reference, "idref", piece.node().attribute("id").stringValue());
        Error error;
        const auto pieceEffort = floatValueForXQuery(piece.node(), "effort", &error);
        if (!error || !isReportingErrors) {
            effort += pieceEffort;
        }
        pendingPieces.push_back({std::move(piece), reference});
    }
    if (effort > 0) {
        writeEffort(task, splitMark, effort);
    }
    return pendingPieces;
}
