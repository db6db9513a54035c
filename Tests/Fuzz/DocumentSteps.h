#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The steps that reading an XML document may take beyond what its bytes explain; none where nothing bounds them.
[[nodiscard]] std::optional<std::uint64_t> stepsBeyondBytes(const std::string& document);
