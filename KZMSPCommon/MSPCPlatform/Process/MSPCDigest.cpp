#include "MSPCDigest.h"

#include <openssl/evp.h>
#include <openssl/sha.h>

#include <cstring>
#include <new>

namespace {

using Digest = std::array<unsigned char, SHA256_DIGEST_LENGTH>;

// Looked up once: that takes longer than the digest of a path.
const EVP_MD* sha256() {
    static const std::unique_ptr<EVP_MD, decltype(&EVP_MD_free)> found{EVP_MD_fetch(nullptr, "SHA256", nullptr),
                                                                       &EVP_MD_free};
    return found ? found.get() : EVP_sha256();
}

Digest digestOf(std::string_view bytes) {
    Digest digest{};
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
    return digest;
}

std::string inBase64(const Digest& digest) {
    constexpr std::size_t length = (SHA256_DIGEST_LENGTH + 2) / 3 * 4;
    std::array<unsigned char, length + 1> text{};
    EVP_EncodeBlock(text.data(), digest.data(), static_cast<int>(digest.size()));
    return {text.begin(), text.begin() + length};
}

}  // namespace

std::string MSPCSHA256InBase64(std::string_view bytes) {
    return inBase64(digestOf(bytes));
}

std::array<std::uint64_t, 2> MSPCShortSHA256(std::string_view bytes) {
    const auto digest = digestOf(bytes);
    std::array<std::uint64_t, 2> numbers{};
    std::memcpy(numbers.data(), digest.data(), sizeof numbers);
    return numbers;
}

struct MSPCSHA256::Context {
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> state{EVP_MD_CTX_new(), &EVP_MD_CTX_free};
};

MSPCSHA256::MSPCSHA256() : _context(std::make_unique<Context>()) {
    if (!_context->state || EVP_DigestInit_ex(_context->state.get(), sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
}

MSPCSHA256::~MSPCSHA256() = default;

void MSPCSHA256::add(std::string_view bytes) {
    EVP_DigestUpdate(_context->state.get(), bytes.data(), bytes.size());
}

std::string MSPCSHA256::inBase64() {
    Digest digest{};
    EVP_DigestFinal_ex(_context->state.get(), digest.data(), nullptr);
    return ::inBase64(digest);
}
