#include "CountedWork.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <pugixml.hpp>

namespace {

CountedWork work;

void* counted(std::size_t size) {
    work.bytes += size;
    return std::malloc(size == 0 ? 1 : size);
}

// A look-up by name among siblings, as the tree's library does it but counted: to us it is one call, to the machine a
// walk.
template <typename Item, typename Next>
Item firstNamed(Item item, const char* name, Next next) {
    while (item && std::strcmp(item.name(), name) != 0) {
        ++work.steps;
        item = next(item);
    }
    return item;
}

const bool treeMemoryIsCounted = [] {
    pugi::set_memory_management_functions(counted, std::free);
    return true;
}();

}  // namespace

CountedWork countedWork() {
    return work;
}

// The compiler calls it at the start of every basic block of the importer.
extern "C" void __sanitizer_cov_trace_pc();
extern "C" void __sanitizer_cov_trace_pc() {
    ++work.steps;
}

void* operator new(std::size_t size) {
    if (void* const memory = counted(size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

// These stand in for the library's own: the program's definitions come first.
namespace pugi {

xml_node xml_node::child(const char_t* name) const {
    return firstNamed(first_child(), name, [](const xml_node& node) { return node.next_sibling(); });
}

xml_node xml_node::next_sibling(const char_t* name) const {
    return firstNamed(next_sibling(), name, [](const xml_node& node) { return node.next_sibling(); });
}

xml_attribute xml_node::attribute(const char_t* name) const {
    return firstNamed(first_attribute(), name, [](const xml_attribute& item) { return item.next_attribute(); });
}

}  // namespace pugi
