#pragma once

#include <ostream>
#include <span>
#include <string>

// Documents made to find what walks a list for each entry of another: the scenario of a document with n things of a
// kind, and the same scenario of later.
struct DocumentShape {
    const char* name;
    std::string (*scenario)(int n);
    std::string (*later)(int n);

    friend std::ostream& operator<<(std::ostream& stream, const DocumentShape& shape) { return stream << shape.name; }
};

[[nodiscard]] std::span<const DocumentShape> documentShapes();
