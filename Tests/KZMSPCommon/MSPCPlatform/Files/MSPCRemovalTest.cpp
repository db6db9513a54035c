#include "MSPCRemoval.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "MSPCFileDescriptor.h"
#include "ScopedTempFolder.h"

TEST(MSPCRemoval, nothingIsInTheWayOfRemovingWhatIsGone) {
    const ScopedTempFolder folder;
    const MSPCFileDescriptor open(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    EXPECT_TRUE(MSPCIsRemovable(open.number(), "missing"));
}

// Another run may be removing a document that it replaced while this one looks whether it may be replaced.
TEST(MSPCRemoval, nothingIsInTheWayOfRemovingWhatSomebodyElseRemoves) {
    const ScopedTempFolder folder;
    const MSPCFileDescriptor open(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        while (!isOver) {
            folder.addFile("document/one");
            folder.addFile("document/folder/two");
            std::filesystem::remove_all(folder / "document");
        }
    });
    int refused = 0;
    for (int look = 0; look < 20'000; ++look) {
        refused += MSPCIsRemovable(open.number(), "document") ? 0 : 1;
    }
    isOver = true;
    other.join();
    EXPECT_EQ(refused, 0);
}
