#include "MSPDIRefusal.h"

#include <algorithm>

namespace {

// "<name>\n<reason>\n<subject>": values in it have no line ends.
MSPDIRefusal refusalOf(std::string_view text) {
    const auto nameEnd = std::min(text.find('\n'), text.size());
    const auto rest = text.substr(std::min(nameEnd + 1, text.size()));
    const auto reasonEnd = std::min(rest.rfind('\n'), rest.size());
    return {std::string(text.substr(0, nameEnd)), std::string(rest.substr(0, reasonEnd)),
            std::string(rest.substr(std::min(reasonEnd + 1, rest.size())))};
}

}  // namespace

std::string MSPDIRefusal::sentence() const {
    auto text = reason.empty() ? std::string("The importer gives no reason.") : reason;
    std::replace(text.begin(), text.end(), '\n', ' ');
    if (subject.empty()) {
        return text;
    }
    const bool hasStop = text.ends_with('.');
    text.resize(text.size() - (hasStop ? 1 : 0));
    return text + " (" + subject + ")" + (hasStop ? "." : "");
}

void MSPDIVerdictLog::write(std::string_view message) {
    constexpr std::string_view failure = "Exception: ";
    constexpr std::string_view warning = "WARNING: ";
    if (message.starts_with(warning)) {
        _warnings.emplace_back(message.substr(warning.size()));
    } else if (message.starts_with(failure)) {
        _refusal = refusalOf(message.substr(failure.size()));
    }
    handOn(_next, message);
}
