#include "KZDXFiles.h"

#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"

namespace {

using Names = std::vector<std::string>;

}  // namespace

TEST(KZDXFiles, areThoseOfAFolder) {
    InMemoryFileSystem machine;
    machine.addFile("/home/me/Plan.kdzx/b.xml", "<b/>");
    machine.addFile("/home/me/Plan.kdzx/a.xml", "<a/>");
    machine.addFile("/home/me/Plan.kdzx/sub/c.xml");
    const auto files = KZDXFilesInFolder(machine, "/home/me/Plan.kdzx");
    std::string failure;
    EXPECT_EQ(files->names(failure), (Names{"a.xml", "b.xml", "sub"}));
    EXPECT_EQ(files->read("b.xml", failure), "<b/>");
    EXPECT_EQ(files->read("d.xml", failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
    EXPECT_EQ(KZDXFilesInFolder(machine, "/home/me/None")->names(failure), std::nullopt);
}

TEST(KZDXFiles, inMemoryAreReadOnce) {
    const auto files = KZDXFilesInMemory({{"a.xml", "<a/>"}});
    std::string failure;
    EXPECT_EQ(files->names(failure), Names{"a.xml"});
    EXPECT_EQ(files->read("a.xml", failure), "<a/>");
    EXPECT_EQ(files->read("a.xml", failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
}
