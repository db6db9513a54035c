#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The paths of plans in an order, of any number: of each only what differs from the one before takes memory, a few
// dozen bytes where plans lie together.
class MSPDIPlanPaths {
public:
    void add(std::string_view path);
    [[nodiscard]] std::size_t size() const { return _size; }
    [[nodiscard]] bool empty() const { return _size == 0; }

    // Goes through the paths from the first on. They outlive it, and nothing is added meanwhile.
    class Walk {
    public:
        explicit Walk(const MSPDIPlanPaths& paths) : _rest(paths._coded) {}
        // The next path, which stays until the one after it; a null pointer behind the last one.
        [[nodiscard]] const std::string* next();

    private:
        std::string_view _rest;
        std::string _path;
    };

private:
    // Of each path how many bytes at its front are those of the one before, how many others follow, and these.
    std::string _coded;
    std::string _last;
    std::size_t _size = 0;
};
