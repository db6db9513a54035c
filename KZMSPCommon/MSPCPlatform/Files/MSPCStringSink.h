#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "MSPCFileSystem.h"

// Collects bytes in a text.
class MSPCStringSink final : public MSPCByteSink {
public:
    void write(std::string_view bytes) override { _bytes += bytes; }
    [[nodiscard]] std::string take() { return std::exchange(_bytes, {}); }

private:
    std::string _bytes;
};
