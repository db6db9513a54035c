#include "MSPCRandomSource.h"

#include <openssl/bn.h>

#include <array>
#include <memory>

std::optional<std::uint64_t> MSPCCryptoRandomSource::draw64Bits() {
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> number(BN_new(), &BN_free);
    std::array<unsigned char, sizeof(std::uint64_t)> bytes{};
    if (!number || BN_rand(number.get(), 64, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) != 1 ||
        BN_bn2binpad(number.get(), bytes.data(), static_cast<int>(bytes.size())) < 0) {
        return std::nullopt;
    }
    std::uint64_t result = 0;
    for (const auto byte : bytes) {
        result = result << 8U | byte;
    }
    return result;
}
