#include "MSPCPath.h"

#include <gtest/gtest.h>

TEST(MSPCPath, lastComponentIgnoresATrailingSlash) {
    EXPECT_EQ(lastPathComponent("/a/b.xml"), "b.xml");
    EXPECT_EQ(lastPathComponent("/a/T.kdzx/"), "T.kdzx");
    EXPECT_EQ(lastPathComponent("b.xml"), "b.xml");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(MSPCPath, deletingTheLastComponentGivesTheFolder) {
    EXPECT_EQ(pathByDeletingLastComponent("/a/b.xml"), "/a");
    EXPECT_EQ(pathByDeletingLastComponent("/b.xml"), "/");
    EXPECT_EQ(pathByDeletingLastComponent("b.xml"), "");
    EXPECT_EQ(pathByDeletingLastComponent("/a/b/"), "/a");
}

TEST(MSPCPath, extensionIsWhatFollowsTheLastPoint) {
    EXPECT_EQ(pathExtension("a/Plan.final.xml"), "xml");
    EXPECT_EQ(pathExtension("Plan.XML"), "XML");
    EXPECT_EQ(pathExtension("T.kdzx/"), "kdzx");
    EXPECT_EQ(pathExtension("a.b/Plan"), "");
}

TEST(MSPCPath, pointAtEitherEndMakesNoExtension) {
    EXPECT_EQ(pathExtension(".xml"), "");
    EXPECT_EQ(pathExtension("a/.xml"), "");
    EXPECT_EQ(pathExtension("Plan."), "");
}

TEST(MSPCPath, deletingTheExtensionKeepsEarlierPoints) {
    EXPECT_EQ(pathByDeletingExtension("a/Plan.final.xml"), "a/Plan.final");
    EXPECT_EQ(pathByDeletingExtension("a.b/Plan"), "a.b/Plan");
    EXPECT_EQ(pathByDeletingExtension("T.kdzx/"), "T");
    EXPECT_EQ(pathByDeletingExtension(".xml"), ".xml");
}

TEST(MSPCPath, appendingJoinsWithOneSeparator) {
    EXPECT_EQ(pathByAppendingExtension("Plan", "kdzx"), "Plan.kdzx");
    EXPECT_EQ(pathByAppendingComponent("/a", "b"), "/a/b");
    EXPECT_EQ(pathByAppendingComponent("/a/", "b"), "/a/b");
    EXPECT_EQ(pathByAppendingComponent("/", "b"), "/b");
    EXPECT_EQ(pathByAppendingComponent("", "b"), "b");
}

TEST(MSPCPath, lowerCaseTouchesAsciiOnly) {
    EXPECT_EQ(lowerCased("KdZx\xC3\x84"), "kdzx\xC3\x84");
}
