#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCXMLNode.h"

class MSPDIPatient;

// What is lost of tasks, told in words by a custom field of theirs.
class MSPDITaskWords {
public:
    // Adds words for a task, and the elements that say the same, which leave the plan with it. The tasks come in their
    // order; "; " stands between the words of one.
    void add(const MSPCXMLNode& task, const std::string& words, const std::vector<MSPCXMLNode>& told);
    // Gives the tasks a field of that name with their words, and takes out what they tell of. Nothing is done where no
    // field is free.
    void moveIntoField(MSPDIPatient& patient, std::string_view step, std::string_view alias) const;

private:
    std::vector<std::pair<MSPCXMLNode, std::string>> _words;
    std::vector<MSPCXMLNode> _told;
};

// Tasks that arrive with their custom fields. Not to be asked for while steps to come change UIDs.
[[nodiscard]] const std::vector<MSPCXMLNode>& MSPDITasksWithFields(MSPDIPatient& patient);

// A time in words, from tenths of a minute: "8 h 30 min", "-0.5 min".
[[nodiscard]] std::string MSPDITenthsOfMinutesInWords(std::int64_t tenthsOfMinutes);
// Whether a format of durations and lags means elapsed time: nights and weekends count.
[[nodiscard]] bool MSPDIIsElapsedFormat(std::int64_t format);
