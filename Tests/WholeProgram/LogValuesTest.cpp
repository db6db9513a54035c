// What plans, paths and the environment try to write into the log.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "PlanImport.h"

namespace fs = std::filesystem;

namespace {

// Would be a line of its own, wipe the screen out, turn the text around.
constexpr std::string_view forged = "x'\n2024-05-13 09:30:00.125 MSPDIImport[1] ### Importer SUCCEEDED.";
constexpr std::string_view driving = "\u009b2J\u0085\u061c\u200e\u200f\u202e\u2066\u2028\u2029";
constexpr std::string_view drivingShown = "\\u009b2J\\u0085\\u061c\\u200e\\u200f\\u202e\\u2066\\u2028\\u2029";

// A value with both, as XML writes it.
std::string hostileXML() {
    auto text = std::string(forged) + std::string(driving);
    text.replace(text.find('\n'), 1, "&#10;");
    return text;
}

std::string hostileShown() {
    auto text = std::string(forged) + std::string(drivingShown);
    text.replace(text.find('\n'), 1, "\\n");
    return text;
}

// The lines that begin as only the log begins them.
std::size_t linesBegunByTheLog(const std::string& log) {
    const std::regex begin("(^|\\n)\\d{4}-\\d\\d-\\d\\d [0-9:.]{12} MSPDIImport\\[\\d+\\] ");
    return static_cast<std::size_t>(std::distance(std::sregex_iterator(log.begin(), log.end(), begin), {}));
}

void expectHarmless(const std::string& log) {
    for (const auto byte : log) {
        const auto value = static_cast<unsigned char>(byte);
        EXPECT_TRUE(byte == '\n' || (value >= 0x20 && value < 0x7F)) << static_cast<int>(value) << " in\n" << log;
    }
    EXPECT_EQ(log.find("\n2024-05-13"), std::string::npos) << log;
}

// Runs the program in a folder of the test's own.
class LogValues : public ::testing::Test {
protected:
    LogValues() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~LogValues() override { fs::remove_all(folder); }

    ProgramResult run(const std::vector<std::string>& arguments) const {
        return runProgram(arguments, folder, environment);
    }
    void addFile(const std::string& name, std::string_view content) const {
        fs::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary) << content;
    }

    const fs::path folder =
        fs::path(KZMSP_SCRATCH) / "log-values" / testing::UnitTest::GetInstance()->current_test_info()->name();
    std::map<std::string, std::string> environment{{"TZ", "UTC"}};
};

}  // namespace

TEST_F(LogValues, ofPlansAreEscapedWhereverTheyReachTheLog) {
    const auto value = hostileXML();
    struct Place {
        std::string name;
        PlanPieces plan;
        std::string shown;
    };
    const auto task = [](const std::string& children) { return "<Tasks>" + taskElement("1", children) + "</Tasks>"; };
    const auto resource = [](const std::string& children) {
        return "<Resources><Resource>" + children + "</Resource></Resources>";
    };
    const std::vector<Place> places = {
        {"task", {task("<Name>" + value + "</Name>"), "", ""}, "  Mapping Task UID='1' name='{}' ..."},
        {"uid", {"<Tasks>" + taskElement("2" + value) + "</Tasks>", "", ""}, "  Mapping Task UID='2{}' name='' ..."},
        {"resource",
         {resource("<UID>1</UID><Name>" + value + "</Name>"), "", ""},
         "  Mapping Resource UID=1  name='{}' ..."},
        {"calendar", {"", "<Name>" + value + "</Name>", ""}, "  Mapping Calendar UID='1' name='{}' ..."},
        {"currency",
         {"<SaveVersion>12</SaveVersion><CurrencyCode>" + value + "</CurrencyCode>", "", ""},
         "WARNING: Igonring currency code from MSPDI: {}. Always assume USD."},
        {"reason",
         {task("<Start>" + value + "</Start>"), "", ""},
         "Failed to make MSPCDateComponents from MSPDI date-time: '{}'.\n"},
        {"node",
         {task("<Priority/><Type>" + value + "</Type>"), "", ""},
         "Failed to get int value from XML node: <Type"},
        {"negative",
         {"<Tasks>" + taskElement("-" + value) + "</Tasks>", "", ""},
         "Invalid format of MSPDI Task ID (can not be negative number): -{}\n"},
    };
    for (const auto& place : places) {
        SCOPED_TRACE(place.name);
        const PlanImport import(place.name, planOf(place.plan));
        auto expected = place.shown;
        if (const auto at = expected.find("{}"); at != std::string::npos) {
            expected.replace(at, 2, hostileShown());
        }
        EXPECT_TRUE(import.logHolds(expected)) << expected << "\n" << import.log();
        expectHarmless(import.log());
    }
}

TEST_F(LogValues, ofPathsAreEscaped) {
    const auto name = std::string(forged) + std::string(driving) + "\x1b[2J\t\xff";
    const auto shown = hostileShown() + "\\x1b[2J\\t\\xff";
    addFile("Plan.xml", planOf({}));
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"--template-path", name},
                                               {"--template-path", name, "Plan.xml"},
                                               {"--template-path", name + ".kdzx", "Plan.xml"},
                                               {"--template-path", KZMSP_TEMPLATE, name},
                                               {"--template-path", KZMSP_TEMPLATE, "missing/" + name + ".xml"},
                                               {"--template-path", KZMSP_TEMPLATE, "--input-list", name},
                                               {"--template-path", KZMSP_TEMPLATE, "Plan.xml", name}}) {
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(arguments.size() < 3 || result.standardError.find(shown) != std::string::npos)
            << result.standardError;
        expectHarmless(result.standardError);
    }
}

TEST_F(LogValues, ofAListAnOutputFolderAndAFolderOnTheWayAreEscaped) {
    const std::string out = "o\nu\x1bt\u202e";
    const std::string deep = std::string("in\n### Importer SUCCEEDED.\x1b") + "\u202e/Plan.xml";
    fs::create_directories(folder / out);
    addFile("Plan\x1b\u202e.xml", planOf({}));
    addFile(deep, "<Other/>");
    addFile("list.txt", "Plan\x1b\u202e.xml\n");
    auto result = run({"--template-path", KZMSP_TEMPLATE, "--input-list", "list.txt", out});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.standardError.find("    \"Plan\\x1b\\u202e.xml\"\n"), std::string::npos);
    EXPECT_NE(result.standardError.find("/o\\nu\\x1bt\\u202e/Plan\\x1b\\u202e.kdzx'\n"), std::string::npos);
    expectHarmless(result.standardError);
    result = run({"--template-path", KZMSP_TEMPLATE, deep});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.standardError.find("\n### Importer"), std::string::npos);
    expectHarmless(result.standardError);
}

TEST_F(LogValues, ofTheEnvironmentAndTheSettingsAreEscaped) {
    environment["TZ"] = "No\nwhere\x1b";
    environment["XDG_CONFIG_HOME"] = (folder / "set\ntings\x1b").string();
    const std::string file = "set\ntings\x1b/org.kadenza.Kadenza2.MSPImportMSPDI.toml";
    addFile(file, "\"a\\u001b\\n\" = 'x'\n");
    auto result = run({});
    EXPECT_NE(result.standardError.find("WARNING: Unknown time zone in TZ: 'No\\nwhere\\x1b'."), std::string::npos)
        << result.standardError;
    EXPECT_NE(result.standardError.find("WARNING: Setting 'a\\x1b\\n' in '"), std::string::npos)
        << result.standardError;
    expectHarmless(result.standardError);
    addFile(file, "a = \"\u202e\x1b\n");
    result = run({});
    EXPECT_NE(result.standardError.find("/set\\ntings\\x1b/org.kadenza"), std::string::npos) << result.standardError;
    expectHarmless(result.standardError);
}

TEST_F(LogValues, keepTheLinesOfTheProgramItself) {
    const auto result = run({"--help"});
    const auto at = result.standardError.find("Exception: CommandLineArgumentException\nToo few arguments. Usage:\n  ");
    EXPECT_NE(at, std::string::npos) << result.standardError;
    EXPECT_EQ(linesBegunByTheLog(result.standardError), 2U) << result.standardError;
}
