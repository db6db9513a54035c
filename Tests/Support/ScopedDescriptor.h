#pragma once

#include <unistd.h>

// Puts another open file in the place of a descriptor (standard error, say) until the end of the test; -1 closes it.
class ScopedDescriptor {
public:
    ScopedDescriptor(int descriptor, int replacement) : _descriptor(descriptor), _saved(::dup(descriptor)) {
        if (replacement < 0) {
            ::close(descriptor);
        } else {
            ::dup2(replacement, descriptor);
        }
    }
    ~ScopedDescriptor() {
        ::dup2(_saved, _descriptor);
        ::close(_saved);
    }
    ScopedDescriptor(const ScopedDescriptor&) = delete;
    ScopedDescriptor& operator=(const ScopedDescriptor&) = delete;

private:
    int _descriptor;
    int _saved;
};
