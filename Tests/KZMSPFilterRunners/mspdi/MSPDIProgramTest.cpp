#include "MSPDIProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RunInMemory.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ProgramTest : public RunInMemory {};

}  // namespace

TEST_F(ProgramTest, printsItsVersionOnStandardOutput) {
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(out.str(), "mspdi " KZMSP_VERSION "\n");
    EXPECT_EQ(err.str(), "");
}

TEST_F(ProgramTest, printsItsHelpOnStandardOutput) {
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("Usage: mspdi"));
    EXPECT_THAT(out.str(), HasSubstr("Exit status: 0 nothing to tell, 1 something to tell, 2 could not look."));
    EXPECT_EQ(err.str(), "");
}

TEST_F(ProgramTest, tellsWrongArgumentsInOneLineOnStandardError) {
    for (const auto& arguments : {std::vector<std::string>{}, {"--colour"}, {"no-such-subcommand"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), StartsWith("mspdi: "));
        EXPECT_EQ(err.str().find('\n'), err.str().size() - 1) << err.str();
    }
}

TEST_F(ProgramTest, namesASubcommandThatItDoesNotHave) {
    EXPECT_EQ(run({"losess", "Plan.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: no such subcommand: losess (mspdi --help tells more)\n");
    EXPECT_EQ(run({"a\nb"}), 2);
    EXPECT_EQ(err.str(), "mspdi: no such subcommand: a b (mspdi --help tells more)\n");
}

TEST_F(ProgramTest, tellsThatANameIsEmpty) {
    for (const auto& arguments : {std::vector<std::string>{"losses", ""}, {"check", ""}, {"diff", "", "Plan.xml"}}) {
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(err.str(), "mspdi: an empty name: no such file\n");
    }
}

TEST_F(ProgramTest, failsWhenTheResultCannotBeWritten) {
    for (const auto& arguments : {std::vector<std::string>{"--help"}, {"--version"}, {"losses", "--help"}}) {
        out.setstate(std::ios::badbit);
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(err.str(), "mspdi: the result could not be written\n");
        out.clear();
    }
}

TEST_F(ProgramTest, tellsNothingWhenItsReaderHasLeft) {
    out.setstate(std::ios::badbit);
    EXPECT_EQ(MSPDIProgram({"--help"}, world.services, {out, err, false, [] { return true; }}), 2);
    EXPECT_EQ(err.str(), "");
}

TEST_F(ProgramTest, showsNoControlCharactersOfWrongArguments) {
    EXPECT_EQ(run({"losses", "--\x1B[31m"}), 2);
    EXPECT_EQ(err.str().find('\x1B'), std::string::npos) << err.str();
}
