#include "MSPCRegex.h"

#include <fmt/format.h>
#include <regex.h>

#include <algorithm>
#include <climits>
#include <utility>

#include "MSPCException.h"

class MSPCRegex::Compiled {
public:
    explicit Compiled(const std::string& pattern) {
        if (const int code = regcomp(&_expression, pattern.c_str(), REG_EXTENDED); code != 0) {
            throw MSPCInternalInconsistency(
                fmt::format("Failed to compile reqular expression '{}': {}", pattern, messageFor(code)));
        }
    }
    ~Compiled() { regfree(&_expression); }
    Compiled(const Compiled&) = delete;
    Compiled& operator=(const Compiled&) = delete;

    [[nodiscard]] const regex_t& expression() const { return _expression; }

private:
    [[nodiscard]] std::string messageFor(int code) const {
        std::string message(regerror(code, &_expression, nullptr, 0), '\0');
        regerror(code, &_expression, message.data(), message.size());
        message.pop_back();  // the NUL character that the library counts in
        return message;
    }

    regex_t _expression{};
};

MSPCRegex::MSPCRegex(const std::string& pattern) : _compiled(std::make_shared<const Compiled>(pattern)) {
}

std::optional<MSPCRegex::Groups> MSPCRegex::firstMatch(std::string_view text, std::size_t groupCount) const {
    // The library counts with int and wants a NUL character behind the text.
    const std::string terminated(text.substr(0, std::min({text.find('\0'), text.size(), std::size_t{INT_MAX}})));
    std::vector<regmatch_t> matches(std::max<std::size_t>(groupCount, 1));
    if (regexec(&_compiled->expression(), terminated.c_str(), groupCount, matches.data(), 0) != 0) {
        return std::nullopt;
    }
    Groups groups;
    groups.reserve(groupCount);
    for (std::size_t index = 0; index < groupCount; ++index) {
        const auto [start, end] = matches[index];
        groups.push_back(start < 0 ? std::nullopt
                                   : std::optional(text.substr(static_cast<std::size_t>(start),
                                                               static_cast<std::size_t>(end - start))));
    }
    return groups;
}

std::size_t MSPCRegex::subexpressionCount() const {
    return _compiled->expression().re_nsub;
}
