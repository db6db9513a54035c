#include "KZDXFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "InMemoryFileSystem.h"
#include "ScopedTempFolder.h"

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

TEST(KZDXFiles, ofAFolderAreNoLinks) {
    InMemoryFileSystem machine;
    machine.addFile("/etc/secret", "<secret/>");
    machine.addFile("/home/me/Plan.kdzx/a.xml", "<a/>");
    machine.addLink("/home/me/Plan.kdzx/b.xml", "/etc/secret");
    machine.addLink("/home/me/Plan.kdzx/c.xml", "/home/me/Plan.kdzx/a.xml");
    machine.addLink("/home/me/Link.kdzx", "/home/me/Plan.kdzx");
    const auto files = KZDXFilesInFolder(machine, "/home/me/Link.kdzx");
    std::string failure;
    EXPECT_EQ(files->read("a.xml", failure), "<a/>") << "the folder itself may be reached through one";
    EXPECT_EQ(files->beginning("a.xml", 2), "<a");
    for (const auto* const name : {"b.xml", "c.xml"}) {
        EXPECT_EQ(files->read(name, failure), std::nullopt);
        EXPECT_EQ(failure, "a link, which is not followed");
        EXPECT_EQ(files->beginning(name, 100), "");
    }
    for (const auto& call : machine.calls()) {
        EXPECT_EQ(call.find("secret"), std::string::npos) << call;
    }
}

TEST(KZDXFiles, onTheDiskAreNoLinksEither) {
    const ScopedTempFolder folder;
    folder.addFile("secret", "<secret/>");
    folder.addFile("Plan.kdzx/a.xml", "<a/>");
    ASSERT_EQ(::symlink("../secret", (folder / "Plan.kdzx/b.xml").c_str()), 0);
    const MSPCDiskFileSystem disk;
    const auto files = KZDXFilesInFolder(disk, folder / "Plan.kdzx");
    std::string failure;
    EXPECT_EQ(files->names(failure), (Names{"a.xml", "b.xml"}));
    EXPECT_EQ(files->read("a.xml", failure), "<a/>");
    EXPECT_EQ(files->beginning("a.xml", 2), "<a");
    EXPECT_EQ(files->read("b.xml", failure), std::nullopt);
    EXPECT_EQ(failure, "a link, which is not followed");
    EXPECT_EQ(files->beginning("b.xml", 100), "");
}

TEST(KZDXFiles, inMemoryAreReadOnce) {
    const auto files = KZDXFilesInMemory({{"a.xml", "<a/>"}});
    std::string failure;
    EXPECT_EQ(files->names(failure), Names{"a.xml"});
    EXPECT_EQ(files->read("a.xml", failure), "<a/>");
    EXPECT_EQ(files->read("a.xml", failure), std::nullopt);
    EXPECT_EQ(failure, "No such file or directory");
}
