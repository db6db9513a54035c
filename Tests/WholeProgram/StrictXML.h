#pragma once

#include <filesystem>
#include <string>
#include <vector>

// What a strict parser has to say against a document: empty for well-formed XML in UTF-8.
[[nodiscard]] std::string strictXMLComplaint(const std::filesystem::path& file);

// The texts of all elements of that name, in document order, as a strict parser reads them; fails the test when the
// file is not well-formed.
[[nodiscard]] std::vector<std::string> strictXMLTexts(const std::filesystem::path& file,
                                                      const std::string& elementName);
