#include "MSPDIElementsMended.h"

#include <gtest/gtest.h>

#include "MSPIElementsRead.h"

namespace {

// Whether all that one selection names is kept by another, and nothing deferred.
void expectKept(const MSPCXMLSelection& wanted, const MSPCXMLSelection& kept, const std::string& path) {
    EXPECT_FALSE(kept.defersChildren()) << path;
    EXPECT_TRUE(kept.isWhole() || !wanted.isWhole()) << path;
    for (const auto& name : wanted.isWhole() || kept.isWhole() ? std::vector<std::string>() : wanted.childNames()) {
        const auto* child = kept.child(name);
        ASSERT_NE(child, nullptr) << path << "/" << name;
        expectKept(*wanted.child(name), *child, path + "/" + name);
    }
}

}  // namespace

// A trial of the mappers is worth nothing where it misses what an import reads.
TEST(MSPDIElementsMendedTest, holdsAllThatAnImportReads) {
    expectKept(MSPIElementsRead(), MSPDIElementsMended(), "");
    expectKept(MSPDIElementsMended(), MSPDIElementsImproved(), "");
    EXPECT_EQ(MSPDIElementsMended().child("Project")->child("Tasks")->child("Task")->child("Critical"), nullptr);
}
