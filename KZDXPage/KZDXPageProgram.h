#pragma once

#include <string_view>

// The page's own program and its styles, as they were bundled when this program was built.
[[nodiscard]] std::string_view KZDXPageScript();
[[nodiscard]] std::string_view KZDXPageStyle();
// The licences of the libraries that the script contains.
[[nodiscard]] std::string_view KZDXPageLicences();
