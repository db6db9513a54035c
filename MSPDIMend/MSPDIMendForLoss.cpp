#include "MSPDIMendForLoss.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "MSPDIValues.h"

namespace {

constexpr std::pair<std::string_view, std::string_view> savedBy[] = {
    {"unreachable-task", "outline"},
    {"deadline", "deadline-to-field"},
    {"link-lag", "lag-to-field"},
    {"assignment-units", "units-to-field"},
    {"hyperlink", "hyperlink-to-field"},
    {"wbs", "wbs-to-field"},
    {"contact", "contact-to-field"},
    {"manual-task", "manual-to-field"},
    {"inactive-task", "active-to-field"},
    {"task-calendar", "calendar-to-field"},
    {"actual-dates", "actual-to-field"},
    {"physical-progress", "physical-to-field"},
    {"estimated", "estimated-to-field"},
    {"recurring-task", "recurring-to-field"},
    {"subproject", "subproject-to-field"},
    {"commitment", "commitment-to-field"},
    {"manual-text", "entered-to-field"},
    {"leveling-delay", "leveling-to-field"},
    {"overtime", "overtime-to-field"},
    {"cost-accrual", "accrual-to-field"},
    {"leveling-settings", "leveling-settings-to-field"},
    {"task-details", "details-to-field"},
    {"assignment-notes", "assignment-notes-to-field"},
    {"work-contour", "contour-to-field"},
    {"assignment-delay", "assignment-delay-to-field"},
    {"project-calendar", "project-calendar"},
    {"resource-week", "resource-weeks"},
    {"exception-2003", "exceptions-2003"},
    {"recurring-exception", "recurring-exceptions"},
    {"work-weeks", "work-weeks"},
    {"unregistered-field", "field-keys"},
    {"unregistered-resource-field", "field-keys"}};

}  // namespace

const MSPDIMendStep* MSPDIMendStepForLoss(std::string_view kind) {
    const auto* found =
        std::find_if(std::begin(savedBy), std::end(savedBy), [&](const auto& entry) { return entry.first == kind; });
    return found == std::end(savedBy) ? nullptr : MSPDIMendStepNamed(found->second);
}

const MSPDIMendStep* MSPDIMendStepForLoss(const MSPDILoss& loss) {
    const auto* step = MSPDIMendStepForLoss(loss.kind);
    if (step == nullptr) {
        return nullptr;
    }
    const auto isPercentage = [](const MSPDIPlace& place) { return MSPDIIsOneOf(place.unit, "19|20|51|52"); };
    const bool isTold = loss.where.size() == loss.count;  // each of them
    const bool isInVain =
        (step->name.ends_with("-to-field") && loss.countInTasks == 0) ||
        (loss.kind == "link-lag" && isTold && std::all_of(loss.where.begin(), loss.where.end(), isPercentage)) ||
        (loss.kind == "project-calendar" && isTold && loss.where[0].targetName.empty());
    return isInVain ? nullptr : step;
}
