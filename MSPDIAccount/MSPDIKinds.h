#pragma once

#include <cstddef>
#include <span>
#include <string_view>

// A kind of loss, for a person.
struct MSPDIKind {
    std::string_view name;  // "link-lag"
    std::string_view what;  // "the lag of links"
    // The elements that it is told once for, however many of their leaves are lost: "Rate|Resource", the innermost one
    // of them around the leaf. Empty for a loss that is one leaf.
    std::string_view owners{};
};

// All kinds, the most important ones first.
[[nodiscard]] std::span<const MSPDIKind> MSPDIKinds();
// Whether it is a loss of the plan, and not only of the file that it stands in: who saved it when, how it is shown.
[[nodiscard]] bool MSPDIMatters(std::string_view kind);
// The place of a kind among them; their number for a name that is none.
[[nodiscard]] std::size_t MSPDIKindIndex(std::string_view name);
