#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The SHA-256 digest of some bytes, in base64 (RFC 4648) with its padding.
[[nodiscard]] std::string MSPCSHA256InBase64(std::string_view bytes);

// Its first 128 bits: so many that no two texts that differ are ever met with the same ones.
[[nodiscard]] std::array<std::uint64_t, 2> MSPCShortSHA256(std::string_view bytes);

// The digest of bytes that come piece by piece.
class MSPCSHA256 {
public:
    MSPCSHA256();
    ~MSPCSHA256();
    MSPCSHA256(const MSPCSHA256&) = delete;
    MSPCSHA256& operator=(const MSPCSHA256&) = delete;

    void add(std::string_view bytes);
    // Of all that was added, in base64; nothing can be added after it.
    [[nodiscard]] std::string inBase64();

private:
    struct Context;
    std::unique_ptr<Context> _context;
};
