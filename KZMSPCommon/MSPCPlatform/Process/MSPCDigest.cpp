#include "MSPCDigest.h"

#include <openssl/evp.h>
#include <openssl/sha.h>

#include <array>

std::string MSPCSHA256InBase64(std::string_view bytes) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    constexpr std::size_t length = (SHA256_DIGEST_LENGTH + 2) / 3 * 4;
    std::array<unsigned char, length + 1> text{};
    EVP_EncodeBlock(text.data(), digest.data(), static_cast<int>(digest.size()));
    return {text.begin(), text.begin() + length};
}
