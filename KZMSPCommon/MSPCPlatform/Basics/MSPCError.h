#pragma once

#include <string>
#include <string_view>

// A soft miss, filled in by an operation whose caller passed a pointer to one. Code 0 means "no error"; operations
// never clear an error they were given, so a caller that tests one clears it first.
struct Error {
    std::string_view domain;  // one of the constants below
    int code = 0;
    std::string description;  // empty when the code says it all

    [[nodiscard]] explicit operator bool() const noexcept { return code != 0; }
    void clear() { *this = Error{}; }
};

inline constexpr std::string_view MSPCGeneralErrorDomain = "org.kadenza.KZMSPFilter.GeneralErrorDomain";
inline constexpr std::string_view MSPCXQueryErrorDomain = "org.kadenza.KZMSPFilter.XQueryErrorDomain";

// Codes of the XQuery error domain.
inline constexpr int MSPCXQueryNoMatch = 1;           // nothing matched, or the query itself failed
inline constexpr int MSPCXQueryMoreThanOneMatch = 2;  // several nodes matched; the last one was used

// Codes of the general error domain.
inline constexpr int MSPCNotPortedXQuery = 100;
