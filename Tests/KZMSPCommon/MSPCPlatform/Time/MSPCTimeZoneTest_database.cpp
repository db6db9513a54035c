#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MSPCTimeZone.h"
#include "RecordingLog.h"
#include "ScopedEnvironment.h"
#include "UTCInstant.h"

// Every zone of the machine's database against the C library, asked as any program asks it.

namespace {

const std::string database = "/usr/share/zoneinfo";
constexpr std::int64_t SixHours = 6 * 3600;

std::string bytesOf(const std::string& zone) {
    std::ifstream file(database + "/" + zone, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// "Europe/Berlin", "posix/Europe/Berlin", "right/Europe/Berlin" and so on.
std::vector<std::string> zoneNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             database, std::filesystem::directory_options::follow_directory_symlink)) {
        auto name = entry.path().lexically_relative(database).string();
        if (entry.is_regular_file() && bytesOf(name).starts_with("TZif")) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

// The C library's offset at every sixth hour from 2020 to 2030.
std::vector<std::int64_t> offsetsOfTheCLibrary(const std::string& tz) {
    const ScopedEnvironment zone("TZ", tz.c_str());
    ::tzset();
    std::vector<std::int64_t> offsets;
    for (auto second = secondsOf(utcInstant(2020, 1, 1)); second < secondsOf(utcInstant(2031, 1, 1));
         second += SixHours) {
        const auto time = static_cast<std::time_t>(second);
        std::tm local{};
        ::localtime_r(&time, &local);
        offsets.push_back(local.tm_gmtoff);
    }
    return offsets;
}

// The C library's offset in the zone of TZ.
std::int64_t offsetOfTheCLibraryAt(std::int64_t second) {
    const auto time = static_cast<std::time_t>(second);
    std::tm local{};
    ::localtime_r(&time, &local);
    return local.tm_gmtoff;
}

// Compares a zone with the C library's zone of TZ right before and at each of the changes that the zone tells of, and
// now and then between them.
void expectTheChangesOfTheCLibrary(const MSPCTimeZone& zone, std::int64_t from, std::int64_t before) {
    constexpr std::int64_t nowAndThen = 61 * 86'400 + 12'345;
    for (auto second = from; second < before;) {
        const auto span = zone.steadySpanAt({static_cast<double>(second)});
        const auto offset = zone.secondsFromGMT({static_cast<double>(second)});
        const auto end = span.end.secondsSince1970 < static_cast<double>(before) ? secondsOf(span.end) : before;
        for (auto within = second; within < end; within += nowAndThen) {
            ASSERT_EQ(offset, offsetOfTheCLibraryAt(within)) << zone.name() << ' ' << within;
        }
        ASSERT_EQ(offset, offsetOfTheCLibraryAt(end - 1)) << zone.name() << " before " << end;
        second = end;
    }
}

std::vector<std::int64_t> offsetsOf(const MSPCTimeZone& zone) {
    std::vector<std::int64_t> offsets;
    for (auto second = secondsOf(utcInstant(2020, 1, 1)); second < secondsOf(utcInstant(2031, 1, 1));
         second += SixHours) {
        offsets.push_back(zone.secondsFromGMT({static_cast<double>(second)}));
    }
    return offsets;
}

}  // namespace

TEST(MSPCTimeZoneDatabase, everyZone_hasTheOffsetsOfTheCLibrary) {
    const auto names = zoneNames();
    ASSERT_GT(names.size(), 400U);
    std::set<std::string> compared;  // most zones have several names
    for (const auto& name : names) {
        const auto zone = MSPCTimeZone::named(name);
        ASSERT_TRUE(zone) << name;
        if (!compared.insert(bytesOf(name)).second) {
            continue;
        }
        ASSERT_EQ(offsetsOf(*zone), offsetsOfTheCLibrary(name)) << name;
    }
    ::tzset();
}

TEST(MSPCTimeZoneDatabase, everythingElseTheCLibraryUnderstands_hasItsOffsetsToo) {
    RecordingLog log;
    for (const std::string tz : {"CET-1CEST,M3.5.0,M10.5.0/3",
                                 ":CET-1CEST,M3.5.0,M10.5.0/3",
                                 "EST5EDT,M3.2.0,M11.1.0",
                                 "IST-5:30",
                                 "<+0330>-3:30<+0430>,J79/24,J263/24",
                                 "IST-1GMT0,M10.5.0,M3.5.0/1",
                                 "NZST-12NZDT,M9.5.0,M4.1.0/3",
                                 "<-02>2<-01>,M3.5.0/-1,M10.5.0/0",
                                 "EET-2EEST,M3.4.4/50,M10.4.4/50",
                                 "AAA+3BBB1,59,300/-5:30",
                                 "UTC0",
                                 "XYZ-14:15:30",
                                 ":Europe/Berlin",
                                 "Europe/../Asia/Kolkata",
                                 "posix/America/New_York",
                                 "right/Europe/Berlin",
                                 ":/usr/share/zoneinfo/Asia/Tokyo",
                                 "/usr/share/zoneinfo/Africa/Cairo",
                                 "UTC",
                                 "",
                                 ":"}) {
        EXPECT_EQ(offsetsOf(MSPCTimeZone::fromEnvironment(tz.c_str(), log)), offsetsOfTheCLibrary(tz)) << tz;
    }
    ::tzset();
}

TEST(MSPCTimeZoneDatabase, everyZone_changesWhenTheCLibraryDoes) {
    std::set<std::string> compared;
    for (const auto& name : zoneNames()) {
        if (!compared.insert(bytesOf(name)).second) {
            continue;
        }
        const auto zone = MSPCTimeZone::named(name);
        ASSERT_TRUE(zone) << name;
        const ScopedEnvironment tz("TZ", name.c_str());
        ::tzset();
        expectTheChangesOfTheCLibrary(*zone, secondsOf(utcInstant(1840, 1, 1)), secondsOf(utcInstant(2140, 1, 1)));
        ASSERT_FALSE(testing::Test::HasFatalFailure());
    }
    ::tzset();
}

// Changes on any day and at any time, days or minutes apart, on the other side of the new year too.
TEST(MSPCTimeZoneDatabase, rulesOfAllKinds_haveTheOffsetsOfTheCLibrary) {
    std::mt19937 random(2'012);
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    const auto change = [&](int day) {
        const auto month = day / 31 + 1;
        const std::string days[] = {fmt::format("J{}", day + 1), fmt::format("{}", day),
                                    fmt::format("M{}.{}.{}", month, number(1, 5), number(0, 6))};
        return fmt::format(",{}/{}:{}:{}", days[number(0, 2)], number(-167, 167), number(0, 59), number(0, 59));
    };
    RecordingLog log;
    for (int count = 0; count < 150; ++count) {
        const auto first = number(0, 364);
        const auto second = count % 3 == 0 ? std::min(364, first + number(0, 3)) : number(0, 364);
        const auto rule = fmt::format("AAA{}:{}BBB{}:{}{}{}", number(-24, 24), number(0, 59), number(-24, 24),
                                      number(0, 59), change(first), change(second));
        EXPECT_EQ(offsetsOf(MSPCTimeZone::fromEnvironment(rule.c_str(), log)), offsetsOfTheCLibrary(rule)) << rule;
    }
    ::tzset();
}
