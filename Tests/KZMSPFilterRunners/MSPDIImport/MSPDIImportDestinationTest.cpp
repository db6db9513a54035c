#include "MSPDIImportDestination.h"

#include <gtest/gtest.h>

#include "ExpectRaises.h"
#include "InMemoryFileSystem.h"

TEST(MSPDIOutputFolder, isTheInputFilesOwnUnlessGiven) {
    InMemoryFileSystem files;
    files.addFile("/in/Plan.xml");
    files.addFolder("/out");
    EXPECT_EQ(MSPDIOutputFolder("/in/Plan.xml", std::nullopt, files), "/in");
    EXPECT_EQ(MSPDIOutputFolder("/Plan.xml", std::nullopt, files), "/");
    EXPECT_EQ(MSPDIOutputFolder("/in/Plan.xml", "/out/", files), "/out");
    EXPECT_EQ(MSPDIOutputFolder("/in/Plan.xml", "~", files), "/home/me");
    EXPECT_EQ(MSPDIOutputFolder("/in/Plan.xml", ".", files), "/home/me");
}

TEST(MSPDIOutputFolder, mustExist) {
    InMemoryFileSystem files;
    files.addFile("/out/file");
    EXPECT_RAISES(MSPDIOutputFolder("/in/Plan.xml", "/none", files), FileNotFoundException,
                  "Output directoty not found: /none");
    EXPECT_RAISES(MSPDIOutputFolder("/in/Plan.xml", "/out/file", files), FileNotFoundException,
                  "Output directoty not found: /out/file");
    EXPECT_RAISES(MSPDIOutputFolder("/in/Plan.xml", "", files), FileNotFoundException, "Output directoty not found: ");
}

TEST(MSPDIOutputFolder, cannotBeTheInputsWhenThatHasGone) {
    const InMemoryFileSystem files;
    EXPECT_RAISES(MSPDIOutputFolder("/gone/Plan.xml", std::nullopt, files), MSPCInternalInconsistency,
                  "*** ERROR: Failed to get directory from input path: /gone/Plan.xml");
}

TEST(MSPDIBundlePath, takesTheInputsName) {
    struct Case {
        const char* input;
        const char* bundle;
        const char* withExtension;
    };
    const Case table[] = {
        {"/in/Plan.xml", "/out/Plan.kdzx", "/out/Plan.xml.kdzx"},
        {"/in/Plan.XML", "/out/Plan.kdzx", "/out/Plan.xml.kdzx"},
        {"/in/Plan.MSPXML", "/out/Plan.kdzx", "/out/Plan.mspxml.kdzx"},
        {"/in/Plan.final.xml", "/out/Plan.final.kdzx", "/out/Plan.final.xml.kdzx"},
        {"/in/a b.xml", "/out/a b.kdzx", "/out/a b.xml.kdzx"},
    };
    for (const auto& [input, bundle, withExtension] : table) {
        EXPECT_EQ(MSPDIBundlePath("/out", input, false), bundle);
        EXPECT_EQ(MSPDIBundlePath("/out", input, true), withExtension);
    }
    EXPECT_EQ(MSPDIBundlePath("/", "/Plan.xml", false), "/Plan.kdzx");
}

TEST(MSPDIWouldBeRemoved, coversTheDestinationAndWhatLiesInIt) {
    InMemoryFileSystem files;
    files.addFolder("/out/Plan.kdzx/inner/T.kdzx");
    files.addFolder("/out/Plan.kdzx-2");
    EXPECT_TRUE(MSPDIWouldBeRemoved("/out/Plan.kdzx", "/out/Plan.kdzx", files));
    EXPECT_TRUE(MSPDIWouldBeRemoved("/out/Plan.kdzx/inner/T.kdzx", "/out/Plan.kdzx", files));
    EXPECT_FALSE(MSPDIWouldBeRemoved("/out/Plan.kdzx-2", "/out/Plan.kdzx", files));
    EXPECT_FALSE(MSPDIWouldBeRemoved("/out", "/out/Plan.kdzx", files));
}

TEST(MSPDIWouldBeRemoved, seesThroughLinks) {
    InMemoryFileSystem files;
    files.addFolder("/out/Plan.kdzx/inner/T.kdzx");
    files.addFolder("/real/R.kdzx");
    files.addLink("/in/L.kdzx", "/out/Plan.kdzx");
    files.addLink("/in/deep", "/out/Plan.kdzx/inner");
    files.addLink("/out/Plan.kdzx/R.kdzx", "/real/R.kdzx");
    files.addLink("/out/Link.kdzx", "/real/R.kdzx");
    EXPECT_TRUE(MSPDIWouldBeRemoved("/in/L.kdzx", "/out/Plan.kdzx", files)) << "a link to the destination";
    EXPECT_TRUE(MSPDIWouldBeRemoved("/in/deep/T.kdzx", "/out/Plan.kdzx", files)) << "a link into the destination";
    EXPECT_TRUE(MSPDIWouldBeRemoved("/out/Plan.kdzx/R.kdzx", "/out/Plan.kdzx", files)) << "a link in the destination";
    EXPECT_TRUE(MSPDIWouldBeRemoved("/real/R.kdzx", "/out/Link.kdzx", files)) << "a destination that is a link";
    EXPECT_FALSE(MSPDIWouldBeRemoved("/real/R.kdzx", "/out/Plan.kdzx", files));
}

TEST(MSPDIMayBeReplaced, neitherTheTemplateNorTheInputIsTakenAway) {
    InMemoryFileSystem files;
    files.addFolder("/out/Plan.kdzx");
    files.addFile("/out/Plan.kdzx/Plan.xml");
    EXPECT_TRUE(MSPDIMayBeReplaced("/out/Plan.kdzx", {"/share/Empty.kdzx", "/in/Plan.xml"}, files));
    EXPECT_FALSE(MSPDIMayBeReplaced("/out/Plan.kdzx", {"/out/Plan.kdzx", "/in/Plan.xml"}, files));
    EXPECT_FALSE(MSPDIMayBeReplaced("/out/Plan.kdzx", {"/share/Empty.kdzx", "/out/Plan.kdzx/Plan.xml"}, files));
    EXPECT_TRUE(MSPDIMayBeReplaced("/out/None.kdzx", {"/out/None.kdzx"}, files)) << "nothing is there to take away";
}
