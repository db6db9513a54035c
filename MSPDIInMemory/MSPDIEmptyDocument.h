#pragma once

#include <array>
#include <string_view>

// A file of the empty document that imports are made from.
struct MSPDIEmptyDocumentFile {
    std::string_view name;
    std::string_view content;
};

// The files of `share/kadenza2/Empty.kdzx` as they were when the program was built, so that it needs no template beside
// it.
[[nodiscard]] const std::array<MSPDIEmptyDocumentFile, 2>& MSPDIEmptyDocument();
