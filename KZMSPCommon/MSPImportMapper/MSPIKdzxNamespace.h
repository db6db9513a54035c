#pragma once

#include <string_view>

// The namespace of the elements of a Kadenza 2 document.
inline constexpr std::string_view MSPIKdzxNamespace = "urn:kadenza:document:2";
