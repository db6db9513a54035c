#include "MSPCURL.h"

#include <gtest/gtest.h>

TEST(MSPCURL, ofAFileHasTheSchemeAndThreeSlashes) {
    const auto url = MSPCURL::fileURL("/a/b.xml", false);
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(url.path(), "/a/b.xml");
    EXPECT_EQ(url.absoluteString(), "file:///a/b.xml");
}

TEST(MSPCURL, ofAFolderEndsInASlashThatThePathHasNot) {
    for (const auto* path : {"/a/T.kdzx", "/a/T.kdzx/", "/a/T.kdzx//"}) {
        const auto url = MSPCURL::fileURL(path, true);
        EXPECT_EQ(url.path(), "/a/T.kdzx");
        EXPECT_EQ(url.absoluteString(), "file:///a/T.kdzx/");
    }
    EXPECT_EQ(MSPCURL::fileURL("/", true).absoluteString(), "file:///");
    EXPECT_EQ(MSPCURL::fileURL("/", true).path(), "/");
}

TEST(MSPCURL, encodesWhatAPathMayNotHold) {
    const std::pair<const char*, const char*> table[] = {
        {"/a b.xml", "file:///a%20b.xml"},
        {"/100%.xml", "file:///100%25.xml"},
        {"/B\xC3\xBCro.xml", "file:///B%C3%BCro.xml"},
        {"/a?b#c.xml", "file:///a%3Fb%23c.xml"},
        {"/\"<>[]\\^`{|}\n\x7F", "file:///%22%3C%3E%5B%5D%5C%5E%60%7B%7C%7D%0A%7F"},
        {"/\xFF", "file:///%FF"},
        {"/azAZ09-._~!$&'()*+,;=:@", "file:///azAZ09-._~!$&'()*+,;=:@"},
    };
    for (const auto& [path, expected] : table) {
        const auto url = MSPCURL::fileURL(path, false);
        EXPECT_EQ(url.absoluteString(), expected);
        EXPECT_EQ(url.path(), path);
        EXPECT_EQ(MSPCURL::fromString(url.absoluteString()).path(), path);
    }
}

TEST(MSPCURL, keepsARelativePath) {
    const auto url = MSPCURL::fileURL("a/b c.xml", false);
    EXPECT_EQ(url.path(), "a/b c.xml");
    EXPECT_EQ(url.absoluteString(), "file:a/b%20c.xml");
}

TEST(MSPCURL, fromTextIsDecoded) {
    const auto url = MSPCURL::fromString("file:///a/b%20%c3%BC/Plan.kdzx/");
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(url.path(), "/a/b \xC3\xBC/Plan.kdzx");
    EXPECT_EQ(url.absoluteString(), "file:///a/b%20%C3%BC/Plan.kdzx/");
}

TEST(MSPCURL, leavesAPercentSignThatEncodesNothing) {
    EXPECT_EQ(MSPCURL::fromString("file:///a%2").path(), "/a%2");
    EXPECT_EQ(MSPCURL::fromString("file:///a%zzb%").path(), "/a%zzb%");
}

TEST(MSPCURL, ofAnotherSchemeIsNoFileURL) {
    const std::pair<const char*, bool> table[] = {
        {"http://host/a.xml", false},
        {"FILE:///a.xml", true},
        {"file://localhost/a.xml", true},
        {"/a.xml", false},
        {"files:///a.xml", false},
        {"1file:///a", false},
        {"", false},
    };
    for (const auto& [text, expected] : table) {
        EXPECT_EQ(MSPCURL::fromString(text).isFileURL(), expected) << text;
    }
}

TEST(MSPCURL, keepsTheHostAndDropsQueryAndFragment) {
    const auto url = MSPCURL::fromString("http://example.org:80/a/b.xml?q=1#f");
    EXPECT_EQ(url.path(), "/a/b.xml");
    EXPECT_EQ(url.absoluteString(), "http://example.org:80/a/b.xml");
}
