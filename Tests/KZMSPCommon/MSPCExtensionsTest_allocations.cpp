#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "MSPCExtensions.h"
#include "XMLText.h"

// Counts what the whole test program takes from the free store through `new`.
namespace {
std::size_t allocations = 0;
}

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
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

namespace {

TEST(MSPCExtensionsAllocations, numbersAtPlainPathsAreReadWithoutAny) {
    const auto document = xmlDocument(
        "<Project><Task><UID>12</UID><Work>1.5</Work><Summary>1</Summary></Task></Project>", MSPCXMLContent::DataOnly);
    const auto project = document.root();
    Error error;
    const auto before = allocations;
    const auto number = intValueForXQuery(project, "Task/UID", &error);
    const auto work = floatValueForXQuery(project.firstChild(), "Work", &error);
    const auto isSummary = boolValueForXQuery(project.firstChild(), "Summary", &error);
    const auto missing = intValueForXQuery(project.firstChild(), "Missing", &error);
    const auto match = singleObjectForXQuery(project, "Task");
    const auto taken = allocations - before;
    EXPECT_EQ(taken, 0U);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(work, 1.5);
    EXPECT_TRUE(isSummary);
    EXPECT_EQ(missing, 0);
    EXPECT_EQ(match.name(), "Task");
}

TEST(MSPCExtensionsAllocations, areCounted) {
    const auto before = allocations;
    const std::string text(1000, 'x');
    EXPECT_GT(allocations, before) << text.size();
}

}  // namespace
