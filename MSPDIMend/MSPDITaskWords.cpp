#include "MSPDITaskWords.h"

#include <fmt/format.h>

#include "MSPDICustomFieldPlace.h"
#include "MSPDIItemValues.h"
#include "MSPDIPatient.h"
#include "MSPISubject.h"

void MSPDITaskWords::add(const MSPCXMLNode& task, const std::string& words, const std::vector<MSPCXMLNode>& told) {
    if (!_words.empty() && _words.back().first == task) {
        _words.back().second += "; " + words;
    } else {
        _words.emplace_back(task, words);
    }
    _told.insert(_told.end(), told.begin(), told.end());
}

void MSPDITaskWords::moveIntoField(MSPDIPatient& patient, std::string_view step, std::string_view alias) const {
    std::vector<MSPCXMLNode> tasks;
    for (const auto& [task, text] : _words) {
        tasks.push_back(task);
    }
    const auto fieldID = tasks.empty() ? std::nullopt : MSPDITaskFieldWithAlias(patient, alias, tasks);
    if (!fieldID) {
        return;
    }
    for (const auto& [task, text] : _words) {
        patient.note(
            step, [&, &of = task, &words = text] { return fmt::format("{}: {}", MSPISubjectOf("Task", of), words); });
        MSPDIAddFieldValue(patient, task, *fieldID, text);
    }
    for (const auto& element : _told) {
        patient.remove(element);
    }
}

const std::vector<MSPCXMLNode>& MSPDITasksWithFields(MSPDIPatient& patient) {
    auto& tasks = patient.tasksWithFields;
    if (!tasks) {
        tasks = MSPDITasksOf(patient);
        std::erase_if(*tasks, [](const auto& task) { return MSPDIIntegerIn(task, "UID").value_or(0) == 0; });
    }
    return *tasks;
}

// "2 d 4 h" would depend on what a day is; hours and minutes do not.
std::string MSPDITenthsOfMinutesInWords(std::int64_t tenthsOfMinutes) {
    const bool isLead = tenthsOfMinutes < 0;
    // The smallest number has no opposite of its own.
    const auto tenths =
        isLead ? 0 - static_cast<std::uint64_t>(tenthsOfMinutes) : static_cast<std::uint64_t>(tenthsOfMinutes);
    const auto hours = tenths / 600;
    const auto rest = tenths % 600;
    const auto inHours = hours == 0 && rest != 0 ? std::string() : fmt::format("{} h", hours);
    const auto part = rest % 10 == 0 ? std::string() : fmt::format(".{}", rest % 10);
    const auto inMinutes = rest == 0 ? std::string() : fmt::format("{}{} min", rest / 10, part);
    const auto* between = inHours.empty() || inMinutes.empty() ? "" : " ";
    return (isLead ? "-" : "") + inHours + between + inMinutes;
}

bool MSPDIIsElapsedFormat(std::int64_t format) {
    // Minutes, hours, days, weeks and months are the even ones; from 32 on the same ones are estimated.
    const auto unit = format >= 35 ? format - 32 : format;
    return unit >= 4 && unit <= 12 && unit % 2 == 0;
}
