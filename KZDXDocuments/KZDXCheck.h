#pragma once

#include <optional>
#include <string>
#include <vector>

#include "KZDXFiles.h"
#include "KZDXFinding.h"

// What a look at a bundle found.
struct KZDXCheck {
    // Why nothing can be told: it is no bundle, or cannot be read. Everything below is empty then.
    std::optional<std::string> obstacle;
    // File by file, in the order of the lines; the table of contents comes first.
    std::vector<KZDXFinding> findings;

    [[nodiscard]] std::size_t count(KZDXSeverity severity) const;
    [[nodiscard]] bool isSound() const { return count(KZDXSeverity::Fault) == 0; }
};

// Looks at all files of a bundle by all rules. Raises nothing that the files are to blame for.
[[nodiscard]] KZDXCheck KZDXCheckBundle(KZDXFiles& files);
