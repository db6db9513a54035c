#pragma once

#include <concepts>
#include <cstdint>

// The UIDs by which the elements of an MSPDI plan name each other, as the numbers that they are read as: a type for
// each kind, since a task and a resource may well bear the same number, and neither is to be looked up among the
// others. What is made of a UID's text, such as an id of the document, keeps the text: "012" is the number 12, and the
// id "t012".
enum class MSPCTaskUID : std::int64_t {};
enum class MSPCResourceUID : std::int64_t {};
enum class MSPCCalendarUID : std::int64_t {};

template <typename Type>
concept MSPCUID =
    std::same_as<Type, MSPCTaskUID> || std::same_as<Type, MSPCResourceUID> || std::same_as<Type, MSPCCalendarUID>;

[[nodiscard]] constexpr std::int64_t MSPCNumberOf(MSPCUID auto uid) noexcept {
    return static_cast<std::int64_t>(uid);
}
