#pragma once

#include <filesystem>
#include <string>

// What a strict parser has to say against a document: empty for well-formed XML in UTF-8.
[[nodiscard]] std::string strictXMLComplaint(const std::filesystem::path& file);
