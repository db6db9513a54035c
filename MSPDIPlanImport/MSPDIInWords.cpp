#include "MSPDIInWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "MSPCPath.h"
#include "MSPDIRefusal.h"

namespace {

struct Words {
    std::string_view beginning;  // of what the importer says
    std::string_view words;
};

constexpr std::array reasons = {
    Words{"MSPIMapper.map: Source XML DOM is not a valid MSPDI document.", "XML, but no plan of Microsoft Project"},
    Words{"MSPEXMLExporter.newXmlDocFromUrl:", "it cannot be read as XML, even after repair"},
    Words{"MSPIMPPImporter importFromMppURL:", "the template could not be copied"},
    Words{"MS Project 'Standard' Calendar not found.", "the plan has no base calendar named Standard"},
    Words{"MSPDI 'Standard' Calendar is not a base calendar.", "the plan's Standard calendar is no base calendar"},
    Words{"Invalid value of 'Type' in 'Resource'", "a resource is neither work nor material: a cost resource perhaps"},
    Words{"This does not seem like a MS Project root task.",
          "the task with the number 0 does not stand for the project; nearly always the plan has no tasks of its own"},
    Words{"Duplicate tasks with UID=0", "two tasks have the number 0, which is the project's own"},
    Words{"Parent task was not assigned a type.",
          "a summary task has interrupted work of its own: assign the people to the tasks below it"},
    Words{"Unexpected MSPDI Task Type", "a task is of an unknown type"},
    Words{"Unexpected outline level", "a task stands at an impossible level of the outline"},
    Words{"Unexpected order of time", "the parts of interrupted work are not in order"},
    Words{"Negative working time got", "interrupted work takes less than no time"},
    Words{"Failed to convert MSPDI duration", "a duration cannot be read"},
    Words{"Failed to make MSPCDateComponents from", "a date cannot be read"},
    Words{"Not a valid MSPDI date-time", "a date has a time zone"},
    Words{"Failed to get UID from", "a task or resource has no number"},
    Words{"Invalid format of MSPDI", "a task or resource has a number below 0"},
    Words{"MSPIXMLImporter.importMSPDIData: Source must be a MS Project XML",
          "neither .xml nor .mspxml; in Microsoft "
          "Project, save it as XML"},
    Words{"Too m", "the document would be out of all proportion to the plan"},
};

// What only a template can be to blame for.
constexpr std::array<std::string_view, 10> templateReasons = {
    "*** ERROR: Invalid root element of template",
    "Failed to find 'project' element in TOC",
    "Failed to find element preceeding TOC",
    "Failed to find insertion point for 'scenario'",
    "Failed to find preceeding element",
    "Failed to get 'project/",
    "Failed to get 'scenario/",
    "Failed to get 'window/",
    "Failed to get/create 'project/",
    "Failed to locate/make",
};

std::string_view wordsFor(const MSPDIRefusal& refusal) {
    const std::string_view reason = refusal.reason;
    if (reason.empty()) {
        return refusal.name.empty() ? "" : "interrupted work lies where there is no working time, on a weekend perhaps";
    }
    const auto* found =
        std::ranges::find_if(reasons, [reason](const Words& entry) { return reason.starts_with(entry.beginning); });
    return found == reasons.end() ? std::string_view() : found->words;
}

// The text between two others; empty where they are not there.
std::string_view between(std::string_view text, std::string_view before, std::string_view behind) {
    const auto start = text.find(before);
    if (start == std::string_view::npos) {
        return {};
    }
    const auto rest = text.substr(start + before.size());
    const auto end = rest.rfind(behind);
    return end == std::string_view::npos ? std::string_view() : rest.substr(0, end);
}

}  // namespace

bool MSPDIBlamesTemplate(const MSPDIRefusal& refusal) {
    return std::ranges::any_of(templateReasons, [&](auto beginning) { return refusal.reason.starts_with(beginning); });
}

std::string MSPDIReasonInWords(const MSPDIRefusal& refusal) {
    const auto words = MSPDIBlamesTemplate(refusal) ? "the template is incomplete" : wordsFor(refusal);
    if (words.empty()) {
        return refusal.sentence();
    }
    const bool hasMore = !refusal.reason.empty() || !refusal.subject.empty();
    return hasMore ? fmt::format("{} ({})", words, refusal.reason.empty() ? refusal.subject : refusal.sentence())
                   : std::string(words);
}

std::string MSPDIWarningInWords(std::string_view warning) {
    if (warning.starts_with("Igonring currency code")) {
        return fmt::format("the currency code {} is ignored", between(warning, "from MSPDI: ", ". Always"));
    }
    if (warning.starts_with("Repaired malformed XML")) {
        const auto place = warning.substr(std::min(warning.rfind("' at line ") + 2, warning.size()));
        return fmt::format("the file is damaged and was mended on reading, values may be missing ({})", place);
    }
    if (warning.starts_with("Replaced ")) {
        const auto count = between(warning, "Replaced ", " characters");
        return fmt::format("{} that XML cannot hold {} replaced in {}",
                           count == "1" ? "1 character" : fmt::format("{} characters", count),
                           count == "1" ? "was" : "were",
                           lastPathComponent(std::string(between(warning, "in '", "'."))));
    }
    if (warning.starts_with("Failed to remove all")) {
        return fmt::format("a part of the document that was replaced is left: {}",
                           between(warning, "replaced: '", "' is left"));
    }
    return std::string(warning);
}
