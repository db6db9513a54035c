#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

// A number for each of many paths. Of a path the memory holds only a digest, so that an entry takes 24 bytes however
// long the path is.
class MSPDIPathIndex {
public:
    // The number of a path, which may be changed; a null pointer where it has none. It stays until the next `set`.
    [[nodiscard]] std::uint64_t* find(std::string_view path);
    // Gives a path its number, or another one.
    void set(std::string_view path, std::uint64_t number);
    [[nodiscard]] std::size_t size() const { return _sorted.size() + _recent.size(); }

private:
    using Digest = std::array<std::uint64_t, 2>;
    struct Entry {
        Digest digest;
        std::uint64_t number;
    };

    [[nodiscard]] std::uint64_t* find(const Digest& digest);
    void sortIn();

    std::vector<Entry> _sorted;               // by digest
    std::map<Digest, std::uint64_t> _recent;  // the last ones, until they are worth sorting in
};
