#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KZDXBundle.h"
#include "KZDXPageTasks.h"

// A scenario that is open, with its file.
struct KZDXPageOpenScenario {
    std::string name;
    std::unique_ptr<KZDXXMLFile> file;
    std::unique_ptr<KZDXPageScenario> content;
};

// A document with all of its scenarios.
struct KZDXPageDocument {
    std::unique_ptr<KZDXContents> contents;
    KZDXPageOpenScenario actual;
    std::vector<KZDXPageOpenScenario> baselines;  // those that could be read, in the order of the table of contents
    std::vector<std::string> notes;               // which could not, and why: "left out: ..."

    // None where the files are no bundle, or its actual scenario cannot be read, with the reason.
    [[nodiscard]] static std::optional<KZDXPageDocument> open(KZDXFiles& files, std::string& failure);
};
