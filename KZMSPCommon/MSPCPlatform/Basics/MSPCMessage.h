#pragma once

#include <fmt/format.h>

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

// A text as people may see it: what could begin a line of its own, drive a terminal or turn the order of what is read
// around stands in it as an escape.
//   line feed, carriage return, tab                                  \n \r \t
//   the other control characters of ASCII, bytes that are no UTF-8   \x1b
//   U+0080 to U+009F, the controls of bidirectional text (U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069),
//   the separators of lines and paragraphs (U+2028, U+2029)          \u202e
// All else stays as it is. So does a backslash: paths and names with one read as they are written, and who sees "\n"
// cannot tell whether it was a line feed.
class MSPCShownText {
public:
    // The text is borrowed.
    explicit MSPCShownText(std::string_view text);
    [[nodiscard]] std::string_view view() const { return _escaped ? std::string_view(*_escaped) : _text; }

private:
    std::string_view _text;
    std::optional<std::string> _escaped;  // none where there is nothing to escape
};

template <>
struct fmt::formatter<MSPCShownText> : fmt::formatter<std::string_view> {
    template <typename Context>
    auto format(const MSPCShownText& text, Context& context) const {
        return fmt::formatter<std::string_view>::format(text.view(), context);
    }
};

class MSPCMessage;

namespace MSPCMessageValue {

template <typename Value>
concept Text = std::convertible_to<const Value&, std::string_view>;

// What stands for a value in a message.
template <typename Value>
[[nodiscard]] auto shown(const Value& value) {
    if constexpr (std::is_same_v<Value, MSPCMessage>) {
        return std::string_view(value.text());  // its own values were escaped when it was made
    } else if constexpr (Text<Value>) {
        return MSPCShownText(value);
    } else {
        static_assert(std::is_arithmetic_v<Value> && !std::is_same_v<Value, char>, "texts, numbers and messages only");
        return value;
    }
}

template <typename Value>
using Shown = decltype(shown(std::declval<const Value&>()));

}  // namespace MSPCMessageValue

// What the program says: a text of its own, of one line or several, with values in it. A message is made of a text that
// the compiler knows, and every value is escaped on its way into it; so nothing that comes from a plan, a path or the
// environment can look like a line of the program's own.
class MSPCMessage {
public:
    // `text` is a text of {fmt}; the values are texts, numbers and other messages, which stay as they are.
    template <typename... Values>
    explicit MSPCMessage(fmt::format_string<MSPCMessageValue::Shown<Values>...> text, const Values&... values)
        : _text(fmt::format(text, MSPCMessageValue::shown(values)...)) {}

    [[nodiscard]] const std::string& text() const noexcept { return _text; }

private:
    std::string _text;
};
