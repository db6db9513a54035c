#include "MSPIIdentifiers.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "MSPCCharacters.h"
#include "MSPCException.h"
#include "MSPCRandomSource.h"

namespace {

constexpr std::string_view Alphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
constexpr int Attempts = 1000;
constexpr int CharactersAfterTheFirst = 10;

// A number that fills all of its eight bytes.
std::uint64_t drawEightBytes(MSPCRandomSource& randomSource) {
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        const auto number = randomSource.draw64Bits();
        if (number && (*number >> 56) != 0) {
            return *number;
        }
    }
    throw MSPCInternalInconsistency("MSPIUtilities VFXMLCreateID: Failed to generate random Big Number.");
}

bool isPunctuationOfIDs(char32_t character) {
    return std::u32string_view(U".-_:").find(character) != std::u32string_view::npos;
}

}  // namespace

std::string VFXMLCreateID(MSPCRandomSource& randomSource) {
    // The number's bytes, most significant first, are read as a number whose least significant byte comes first.
    auto value = __builtin_bswap64(drawEightBytes(randomSource));
    std::string identifier(1, Alphabet[value % 16]);
    value /= 16;
    for (int index = 0; index < CharactersAfterTheFirst; ++index) {
        identifier += Alphabet[value % 64];
        value /= 64;
    }
    if (value != 0) {
        throw MSPCInternalInconsistency("Should have consumed the whole value at this point");
    }
    return identifier;
}

bool VFXMLIsValidID(std::string_view text) {
    const auto characters = MSPCCharactersOf(text);
    if (!characters || characters->empty()) {
        return false;
    }
    const char32_t first = characters->front();
    return (first == U':' || first == U'_' || MSPCIsLetter(first)) &&
           std::all_of(characters->begin() + 1, characters->end(), [](char32_t character) {
               return MSPCIsLetterOrDigit(character) || isPunctuationOfIDs(character);
           });
}
