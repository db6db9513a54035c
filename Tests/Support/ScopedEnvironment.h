#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

// Sets an environment variable, or removes it, until the end of the test.
class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const char* value) : _name(std::move(name)) {
        if (const char* before = std::getenv(_name.c_str())) {
            _before = before;
        }
        set(value);
    }
    ~ScopedEnvironment() { set(_before ? _before->c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void set(const char* value) const {
        if (value) {
            ::setenv(_name.c_str(), value, 1);
        } else {
            ::unsetenv(_name.c_str());
        }
    }

    std::string _name;
    std::optional<std::string> _before;
};
