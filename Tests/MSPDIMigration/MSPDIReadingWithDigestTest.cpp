#include "MSPDIReadingWithDigest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"

namespace {

using testing::ElementsAre;

// SHA-256 as other programs tell it.
constexpr const char* ofProject = "T9JL6D991jb24uj0Vt+lWfHKnHNG4dEKU1jbNGsTALk=";
constexpr const char* ofNothing = "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=";

class ReadingWithDigestTest : public testing::Test {
protected:
    ReadingWithDigestTest() {
        machine.addFile("/in/Plan.xml", "<Project/>");
        machine.addFile("/in/Other.xml", "<other/>");
        machine.addFile("/in/Empty.xml");
        machine.addFolder("/out");
    }
    // Reads so many bytes by pieces of a size; the last piece may be empty.
    static void read(MSPCByteSource& source, std::size_t size, int times) {
        std::string buffer(size, '\0');
        for (int time = 0; time < times; ++time) {
            ASSERT_TRUE(source.read(buffer.data(), buffer.size()));
        }
    }

    InMemoryFileSystem machine;
    MSPDIReadingWithDigest files{machine, "/in/Plan.xml"};
};

}  // namespace

TEST_F(ReadingWithDigestTest, isKnownWhenThePlanWasReadToItsEnd) {
    const auto source = files.openFile("/in/Plan.xml");
    EXPECT_EQ(source->expectedSize(), 10U);
    read(*source, 4, 3);
    EXPECT_EQ(files.digest(), "") << "all bytes are read, but nobody knows that yet";
    read(*source, 4, 1);
    EXPECT_EQ(files.digest(), ofProject);
    read(*source, 4, 1);
    EXPECT_EQ(files.digest(), ofProject) << "the end stays the end";
}

TEST_F(ReadingWithDigestTest, isThatOfTheFirstReadingToTheEnd) {
    read(*files.openFile("/in/Plan.xml"), 6, 1);
    EXPECT_EQ(files.digest(), "");
    read(*files.openFile("/in/Plan.xml"), 100, 2);
    EXPECT_EQ(files.digest(), ofProject) << "what was read and given up before counts for nothing";
    machine.addFile("/in/Plan.xml", "<changed/>");
    read(*files.openFile("/in/Plan.xml"), 100, 2);
    EXPECT_EQ(files.digest(), ofProject);
}

TEST_F(ReadingWithDigestTest, isOfThePlanAlone) {
    read(*files.openFile("/in/Other.xml"), 100, 2);
    EXPECT_EQ(files.openFile("/in/None.xml"), nullptr);
    EXPECT_EQ(files.digest(), "");
}

TEST_F(ReadingWithDigestTest, knowsNothingOfNoBytes) {
    MSPDIReadingWithDigest ofEmpty(machine, "/in/Empty.xml");
    const auto source = ofEmpty.openFile("/in/Empty.xml");
    char byte = 0;
    EXPECT_EQ(source->read(&byte, 0), 0U);
    EXPECT_EQ(ofEmpty.digest(), "") << "nobody has asked for a byte";
    EXPECT_EQ(source->read(&byte, 1), 0U);
    EXPECT_EQ(ofEmpty.digest(), ofNothing);
}

TEST_F(ReadingWithDigestTest, leavesAllElseToTheMachine) {
    EXPECT_EQ(files.createFolder("/out/new"), std::nullopt);
    EXPECT_EQ(files.writeAtomically("/out/new/a", [](MSPCByteWriter& writer) { writer.write("A"); }), std::nullopt);
    const auto folder = files.newFolder("/out/Plan.kdzx", false);
    ASSERT_TRUE(folder);
    EXPECT_EQ(files.newFolder("/out/new", false), nullptr);
    EXPECT_EQ(machine.contents("/out/new/a"), "A");
    EXPECT_THAT(files.namesIn("/out"), testing::Optional(ElementsAre("new")));
    EXPECT_EQ(files.synchronize({"/out"}), std::nullopt);
}
