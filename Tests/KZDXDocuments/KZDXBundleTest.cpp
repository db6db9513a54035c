#include "KZDXBundle.h"

#include <gtest/gtest.h>

#include "SoundBundle.h"

TEST(KZDXContents, namesTheScenarios) {
    KZDXXMLError error;
    auto file = KZDXXMLFile::read("__TOC.xml", soundBundle()["__TOC.xml"], error);
    ASSERT_TRUE(file);
    const KZDXContents contents(std::move(*file));
    ASSERT_EQ(contents.entries().size(), 2U);
    EXPECT_EQ(contents.entries()[1].id, "aBaseline01");
    EXPECT_EQ(contents.entries()[1].name, "Baseline");
    EXPECT_EQ(contents.entries()[1].filename, "Baseline.xml");
    EXPECT_EQ(contents.entryNamed("Actual"), &contents.entries()[0]);
    EXPECT_EQ(contents.entryNamed("Baseline2"), nullptr);
}

TEST(KZDXEntry, neverLeavesItsBundle) {
    for (const auto* const name : {"", ".", "..", "../Actual.xml", "/etc/passwd", "a/b.xml"}) {
        EXPECT_FALSE((KZDXEntry{{}, "", "", name}).staysInBundle()) << name;
    }
    EXPECT_FALSE((KZDXEntry{{}, "", "", std::string_view("a\0b", 3)}).staysInBundle());
    EXPECT_TRUE((KZDXEntry{{}, "", "", "Actual.xml"}).staysInBundle());
    EXPECT_TRUE((KZDXEntry{{}, "", "", "..a"}).staysInBundle());
}
