#pragma once

#include <map>
#include <random>
#include <string>

// A bundle after an accident: the bytes of one of its files are changed, cut, repeated or gone, or elements and
// attributes of it are removed, repeated, renamed or moved, so that it stays XML.
[[nodiscard]] std::map<std::string, std::string> damagedBundle(std::map<std::string, std::string> files,
                                                               std::mt19937& random);
