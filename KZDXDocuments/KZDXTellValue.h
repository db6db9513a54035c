#pragma once

#include <functional>
#include <string>
#include <string_view>

// What differs between two values: the kind, the words, and the values as they stand.
using KZDXTellValue =
    std::function<void(std::string_view kind, std::string what, std::string before, std::string after)>;
