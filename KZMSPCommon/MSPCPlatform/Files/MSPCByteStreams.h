#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

// Bytes on their way, piece by piece.

// Takes the bytes of a file as they are made.
class MSPCByteWriter {
public:
    virtual ~MSPCByteWriter() = default;
    virtual void write(std::string_view bytes) = 0;
};

// Gives the bytes of an open file piece by piece.
class MSPCByteSource {
public:
    virtual ~MSPCByteSource() = default;
    // Reads up to `capacity` bytes and gives their number, 0 at the end; none when reading fails.
    [[nodiscard]] virtual std::optional<std::size_t> read(char* buffer, std::size_t capacity) = 0;
    // The size of the file in bytes, as far as it is known.
    [[nodiscard]] virtual std::size_t expectedSize() const = 0;
};

// Collects bytes in a text.
class MSPCStringWriter final : public MSPCByteWriter {
public:
    void write(std::string_view bytes) override { _bytes += bytes; }
    [[nodiscard]] std::string take() { return std::exchange(_bytes, {}); }

private:
    std::string _bytes;
};

// Gives content that is there as a whole.
class MSPCContentSource final : public MSPCByteSource {
public:
    explicit MSPCContentSource(std::string content) : _content(std::move(content)) {}

    [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t capacity) override;
    [[nodiscard]] std::size_t expectedSize() const override { return _content.size(); }

private:
    std::string _content;
    std::size_t _at = 0;
};
