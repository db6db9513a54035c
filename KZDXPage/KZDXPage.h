#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "KZDXFiles.h"
#include "KZDXPageSubject.h"

// A page that shows a document, in one HTML file.
struct KZDXPage {
    std::string html;
    std::size_t tasks = 0;
    std::size_t resources = 0;
    std::size_t baselines = 0;
    std::vector<std::string> notes;  // which scenarios are left out, and why
};

// Makes the page of a document. It loads nothing and says so to the browser; every text of the document is data in it.
// None where the files are no bundle, or its actual scenario cannot be read, with the reason.
[[nodiscard]] std::optional<KZDXPage> KZDXPageOf(KZDXFiles& files, const KZDXPageSubject& subject,
                                                 std::string& failure);
