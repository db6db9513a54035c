#include "MSPCZoneSetting.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "ScopedTempFolder.h"

// What a value of TZ names.

namespace {

using Setting = std::optional<std::string>;

Setting settingOf(const std::string& tz, const MSPCZoneFiles& files = {}) {
    return MSPCZoneSettingOf(tz.c_str(), files);
}

std::string bytesOfZone(const std::string& name) {
    std::ifstream file("/usr/share/zoneinfo/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(MSPCZoneSetting, nameOrPath_isThePathOfItsFile) {
    for (const std::string colon : {"", ":"}) {
        EXPECT_EQ(settingOf(colon + "Europe/Berlin"), ":/usr/share/zoneinfo/Europe/Berlin");
        EXPECT_EQ(settingOf(colon + "posix/Europe/Berlin"), ":/usr/share/zoneinfo/posix/Europe/Berlin");
        EXPECT_EQ(settingOf(colon + "/usr/share/zoneinfo/Asia/Tokyo"), ":/usr/share/zoneinfo/Asia/Tokyo");
        EXPECT_EQ(settingOf(colon + "EST5EDT"), ":/usr/share/zoneinfo/EST5EDT");  // a file as well as a rule
    }
}

TEST(MSPCZoneSetting, nothing_isUTC) {
    EXPECT_EQ(settingOf(""), "UTC0");
    EXPECT_EQ(settingOf(":"), "UTC0");
}

TEST(MSPCZoneSetting, rule_isItself) {
    for (const std::string rule : {"CET-1", "CET-1CEST,M3.5.0,M10.5.0/3", "<+0330>-3:30<+0430>,J79/24,J263/24",
                                   "AAA+3BBB1:30:15,59,300/-5:30", "XXX24", "EET-2EEST,M3.4.4/50,M10.4.4/50"}) {
        EXPECT_EQ(settingOf(rule), rule);
        EXPECT_EQ(settingOf(":" + rule), rule);
    }
}

TEST(MSPCZoneSetting, ruleThatDoesNotSayWhen_hasTheCLibrarysDefault) {
    for (const std::string rule : {"CET-1CEST", "EST+5EDT+4", "<+01>-1:30:15<+02>-2"}) {
        EXPECT_EQ(settingOf(rule), rule + ",M3.2.0,M11.1.0");
    }
}

TEST(MSPCZoneSetting, whatIsNoRule_isNone) {
    for (const std::string text : {"CET",
                                   "Mars",
                                   "Mars/Olympus",
                                   "AB1",
                                   "<+1>-1",
                                   "<+01-1",
                                   "5",
                                   "CET-1CEST,",
                                   "CET-1CEST,M3.5.0",
                                   "CET-1CEST,M3.5.0,M10.5.0/3x",
                                   "CET-1CEST,M13.5.0,M10.5.0",
                                   "CET-1CEST,M3.6.0,M10.5.0",
                                   "CET-1 CEST",
                                   "CET-1\n",
                                   "CET-100",
                                   "::Europe/Berlin",
                                   "CET-1CEST,X3,X4",
                                   "\xFF\xFE",
                                   "UTC,",
                                   "utc"}) {
        EXPECT_EQ(settingOf(text, {"/nowhere", "/nowhere"}), std::nullopt) << text;
    }
}

TEST(MSPCZoneSetting, databaseIsThatOfTZDIR) {
    EXPECT_EQ(MSPCZoneFiles::fromEnvironment(nullptr).database, "/usr/share/zoneinfo");
    EXPECT_EQ(MSPCZoneFiles::fromEnvironment("").database, "/usr/share/zoneinfo");
    EXPECT_EQ(MSPCZoneFiles::fromEnvironment("/zones").database, "/zones");
    EXPECT_EQ(MSPCZoneFiles::fromEnvironment("zones").database, std::filesystem::current_path() / "zones");

    const ScopedTempFolder folder;
    const auto zone = folder.addFile("Moon/Base", bytesOfZone("Asia/Kolkata"));
    const auto files = MSPCZoneFiles::fromEnvironment(folder.path().c_str());
    EXPECT_EQ(settingOf("Moon/Base", files), ":" + zone);
    EXPECT_EQ(MSPCZoneSettingNamed("Moon/Base", files), ":" + zone);
    EXPECT_EQ(settingOf("Europe/Berlin", files), std::nullopt);
    EXPECT_EQ(settingOf("/usr/share/zoneinfo/Europe/Berlin", files), ":/usr/share/zoneinfo/Europe/Berlin");
}

TEST(MSPCZoneSetting, withoutADatabase_UTCIsKnown) {
    EXPECT_EQ(settingOf("UTC", {"/nowhere", "/nowhere"}), "UTC0");
    EXPECT_EQ(settingOf("UTC0", {"/nowhere", "/nowhere"}), "UTC0");
    EXPECT_EQ(settingOf("Europe/Berlin", {"/nowhere", "/nowhere"}), std::nullopt);
}

// The C library would wait for what a pipe or a terminal brings, or take all memory for the numbers in a damaged file.
TEST(MSPCZoneSetting, whatIsNoZoneFile_isNoneAtOnce) {
    const ScopedTempFolder folder;
    const auto pipe = folder / "CET-1";  // named like a rule
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto whole = bytesOfZone("Europe/Berlin");
    const auto hugeNumbers = "TZif2" + std::string(15, '\0') + std::string(24, '\x7F');
    const auto sparse = folder.addFile("sparse", hugeNumbers);
    std::filesystem::resize_file(sparse, 1'000'000'000);
    const MSPCZoneFiles files{folder.path(), "/nowhere"};
    for (const auto& value :
         {std::string("CET-1"), ":" + pipe, sparse, folder.addFile("short", whole.substr(0, 50)),
          folder.addFile("shorter", whole.substr(0, 20)), folder.addFile("numbers", hugeNumbers),
          folder.addFile("empty"), folder.addFile("text", "Europe/Berlin\n"), folder.addFolder("folder"),
          std::string("../../../../../../../dev/zero"), std::string("/dev/zero"), std::string("/dev/tty"),
          std::string("."), std::string("/proc/kmsg"), std::string(100'000, 'A'), std::string(100'000, '/'),
          "CET-" + std::string(5000, '1')}) {
        EXPECT_EQ(settingOf(value, files), std::nullopt) << value.substr(0, 200);
        EXPECT_EQ(MSPCZoneSettingOf(nullptr, {"/nowhere", value}), std::nullopt) << value.substr(0, 200);
    }
}
