#pragma once

#include <string>
#include <string_view>

#include "KZDXDateTime.h"

// Values of documents in words for people.

// "Mon 4 May 08:00", with seconds where there are any, and with the year where that is wanted: "Mon 4 May 2026 08:00".
[[nodiscard]] std::string KZDXShownDate(const KZDXDateTime& date, bool withYear = false);
// The day alone, always with the year: "Mon 4 May 2026".
[[nodiscard]] std::string KZDXShownDay(const KZDXDateTime& date);
// A length of time, without its sign: "3 days", "1 day 2 hours 30 minutes", "0 minutes".
[[nodiscard]] std::string KZDXShownTime(double seconds);
// Work, in hours: "16 hours", "1 hour 30 minutes", "0 hours".
[[nodiscard]] std::string KZDXShownWork(double seconds);
// "50%" of "0.50"; the text itself where it is no number.
[[nodiscard]] std::string KZDXShownPercentage(std::string_view fraction);
// A text between quotation marks, its beginning where it is long. A backslash is doubled, so that it cannot be taken
// for that of an escape.
[[nodiscard]] std::string KZDXQuoted(std::string_view text);
// "\"old\" -> \"new\"". Of long texts the part where they differ, with "..." for what is left out.
[[nodiscard]] std::string KZDXQuotedChange(std::string_view before, std::string_view after);
// The beginning of a text, in whole characters, and "..." where there is more.
[[nodiscard]] std::string KZDXShortened(std::string_view text);
// The name of a task or resource with its id: "Paint (t12)".
[[nodiscard]] std::string KZDXNamed(std::string_view name, std::string_view id);
