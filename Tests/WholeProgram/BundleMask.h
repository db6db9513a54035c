#pragma once

#include <filesystem>
#include <map>
#include <string>

// What stands for each random id of a bundle's scenarios: every scenario is named after its file.
using ScenarioMasks = std::map<std::string, std::string>;

[[nodiscard]] ScenarioMasks scenarioMasks(const std::filesystem::path& bundle);
// A document with the ids of its bundle and the date of its making masked, so that those of two runs are equal.
[[nodiscard]] std::string maskedDocument(std::string text, const ScenarioMasks& masks);

void replaceAll(std::string& text, const std::string& piece, const std::string& replacement);
