// What becomes of the project's own settings and of the definitions of its custom fields.
#include "MSPCPath.h"
#include "MSPCTextScanner.h"
#include "MSPDIArrival.h"
#include "MSPDIConditions.h"
#include "MSPDIValues.h"
#include "MSPIProjectSettings.h"

namespace {

MSPDIJudgement repeated() {
    return {MSPDIFate::Lost, "repeated-element"};
}

// The project's date that its tasks are scheduled from; the other one is computed.
MSPDIJudgement projectDate(const MSPDILeaf& leaf, bool isScheduledFrom) {
    if (!isScheduledFrom) {
        return MSPDIFate::Derived;
    }
    return leaf.isLastOfItsName() ? MSPDIArrival::ofDate(leaf.item.facts, leaf.text) : repeated();
}

const MSPDIDefinitionFacts& definitionOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.definitions[leaf.item.position];
}

bool counts(const MSPDIDefinitionFacts& definition) {
    return definition.isLast && definition.isUsed;
}

}  // namespace

MSPDIJudgement projectTitle(const MSPDILeaf& leaf) {
    return leaf.isLastOfItsName() ? MSPDIFate::Carried : repeated();
}

MSPDIJudgement projectName(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    if (leaf.item.facts.hasTitle) {
        const auto title = leaf.item.fields.text("Title");
        const bool saysTheSame =
            title.textOrEmpty() == leaf.text || title.textOrEmpty() == pathByDeletingExtension(leaf.text);
        return saysTheSame ? MSPDIJudgement(MSPDIFate::Default) : lostUnlessDefault(leaf);
    }
    // The extension of a file's name does not arrive, so that other names may give the same title.
    return pathExtension(leaf.text).empty() ? MSPDIFate::Carried : MSPDIFate::Shaping;
}

MSPDIJudgement projectStart(const MSPDILeaf& leaf) {
    return projectDate(leaf, leaf.item.facts.isScheduledFromStart);
}

MSPDIJudgement projectFinish(const MSPDILeaf& leaf) {
    return projectDate(leaf, !leaf.item.facts.isScheduledFromStart);
}

// Working time is written in whole hours.
MSPDIJudgement workingTimeUnit(const MSPDILeaf& leaf) {
    constexpr std::int64_t minutesPerHour = 60;
    if (!leaf.isOnlyOfItsName() || !scanInteger64(leaf.text)) {
        return MSPDIFate::Shaping;
    }
    const auto settings = MSPIProjectSettings::ofProject(leaf.item.node);
    const auto units = MSPIWorkingTimeUnits::ofSettings(settings);
    const bool isOfWeek = leaf.name() == "MinutesPerWeek";
    const auto minutes = isOfWeek ? settings.minutesPerWeek : settings.minutesPerDay;
    const auto hours = isOfWeek ? units.hoursPerWeek : units.hoursPerDay;
    const bool saysTheSame = minutes % minutesPerHour == 0 && hours == minutes / minutesPerHour;
    return saysTheSame ? MSPDIFate::Shaping : MSPDIJudgement(MSPDIFate::Changed, "whole-hours");
}

MSPDIJudgement workFormat(const MSPDILeaf& leaf) {
    if (!leaf.isOnlyOfItsName()) {
        return MSPDIFate::Shaping;
    }
    switch (scanInteger64(leaf.text).value_or(0)) {
        case 2:  // hours
            return MSPDIFate::Carried;
        case 3:  // days
            return MSPDIFate::Shaping;
        case 4:  // weeks and months become days
        case 5:
            return {MSPDIFate::Changed, "work-format"};
        default:
            return lostUnlessDefault(leaf);
    }
}

MSPDIJudgement currencyDigits(const MSPDILeaf& leaf) {
    const auto digits = scanInteger64(leaf.text);
    constexpr std::int64_t most = 4;  // from five on all look the same
    return leaf.isOnlyOfItsName() && digits && *digits >= 0 && *digits <= most ? MSPDIFate::Carried
                                                                               : MSPDIFate::Shaping;
}

MSPDIJudgement currencySymbol(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    const auto position = MSPDISingleInteger(leaf.item.fields, "CurrencySymbolPosition").value_or(0);
    return position >= 0 && position <= 3 ? MSPDIJudgement(MSPDIFate::Carried) : lostUnlessDefault(leaf);
}

MSPDIJudgement currencyPosition(const MSPDILeaf& leaf) {
    const auto position = MSPDISingleInteger(leaf.item.fields, "CurrencySymbolPosition").value_or(-1);
    const auto symbol = leaf.item.fields.text("CurrencySymbol");
    const bool isSeen = !symbol || !symbol.textOrEmpty().empty();
    return isSeen && position >= 0 && position <= 3 ? MSPDIFate::Carried : MSPDIFate::Shaping;
}

MSPDIJudgement projectCalendar(const MSPDILeaf& leaf) {
    const auto uid = scanInteger64(leaf.text);
    const bool isTaken = !uid || *uid < 0 || MSPCCalendarUID{*uid} == leaf.item.facts.projectCalendarUID;
    return isTaken ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, "project-calendar");
}

MSPDIJudgement fieldID(const MSPDILeaf& leaf) {
    return counts(definitionOf(leaf)) || !leaf.isOnlyOfItsName() ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement fieldAlias(const MSPDILeaf& leaf) {
    const auto& definition = definitionOf(leaf);
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    if (counts(definition)) {
        return definition.isShown ? MSPDIFate::Carried : MSPDIFate::Shaping;
    }
    return lostUnlessDefault(leaf);
}

MSPDIJudgement fieldName(const MSPDILeaf& leaf) {
    const bool hasAlias = static_cast<bool>(leaf.item.fields.singleObject("Alias"));
    if (hasAlias || !counts(definitionOf(leaf))) {
        return MSPDIFate::Derived;  // from the number of the field
    }
    return fieldAlias(leaf);
}

MSPDIJudgement fieldType(const MSPDILeaf& leaf) {
    return counts(definitionOf(leaf)) && leaf.item.facts.isSavedBy2007OrLater() ? MSPDIFate::Shaping
                                                                                : MSPDIFate::Derived;
}
