#include "MSPDIJSON.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using JSON = nlohmann::ordered_json;

std::string written(const JSON& json) {
    std::ostringstream out;
    MSPDIWriteJSON(json, out);
    return out.str();
}

}  // namespace

TEST(MSPDIJSONTest, isIndentedAndEndsWithALineFeed) {
    EXPECT_EQ(written({{"count", 2}, {"name", "Paint"}}), "{\n  \"count\": 2,\n  \"name\": \"Paint\"\n}\n");
}

TEST(MSPDIJSONTest, letsNoTextDriveATerminalOrTurnItsOrderAround) {
    // DEL, U+0080, U+009F, U+061C, U+200E, U+2028, U+2029, U+202E, U+2066, and what nlohmann-json deals with.
    EXPECT_EQ(written(JSON(
                  "a\x7F\xC2\x80\xC2\x9F\xD8\x9C\xE2\x80\x8E\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAE\xE2\x81\xA6\x1B\n")),
              "\"a\\u007f\\u0080\\u009f\\u061c\\u200e\\u2028\\u2029\\u202e\\u2066\\u001b\\n\"\n");
    EXPECT_EQ(written({{"\xC2\x9B", 1}}), "{\n  \"\\u009b\": 1\n}\n");
}

TEST(MSPDIJSONTest, leavesLettersOfAllScripts) {
    EXPECT_EQ(written(JSON("\xC2\xA0\xC3\x9C\xE2\x82\xAC\xF0\x9F\x8F\xA0")),
              "\"\xC2\xA0\xC3\x9C\xE2\x82\xAC\xF0\x9F\x8F\xA0\"\n");
}

TEST(MSPDIJSONTest, isTheSameTextToWhoReadsIt) {
    const JSON json = {{"name",
                        "a\x7F\xE2\x80\xAE"
                        "b\xC2\x9B"}};
    EXPECT_EQ(JSON::parse(written(json)), json);
}

// Texts are looked at by several bytes at once: what is to be escaped may stand at each place, beside each other byte.
TEST(MSPDIJSONTest, escapesWhereverItStands) {
    for (const auto& [byte, escape] : {std::pair<char, std::string>('"', "\\\""),
                                       {'\\', "\\\\"},
                                       {'\x01', "\\u0001"},
                                       {'\x1F', "\\u001f"},
                                       {'\x7F', "\\u007f"}}) {
        for (std::size_t size = 0; size < 20; ++size) {
            for (const char other : {' ', '!', '#', '[', ']', '~', 'a'}) {
                for (std::size_t place = 0; place <= size; ++place) {
                    const std::string before(place, other);
                    const std::string behind(size - place, other);
                    ASSERT_EQ(written(JSON(before + byte + behind)),
                              fmt::format("\"{}{}{}\"\n", before, escape, behind));
                }
                const std::string plain(size, other);
                ASSERT_EQ(written(JSON(plain)), fmt::format("\"{}\"\n", plain));
            }
        }
    }
}

// More than is kept before it is written.
TEST(MSPDIJSONTest, writesDocumentsOfAnySize) {
    JSON json = JSON::array();
    for (int count = 0; count < 20'000; ++count) {
        json.push_back("Paint " + std::to_string(count));
    }
    EXPECT_EQ(JSON::parse(written(json)), json);
}

TEST(MSPDIJSONTest, hasReplacementsForBytesThatAreNoUTF8) {
    EXPECT_EQ(written(JSON("a\xFF")), "\"a\xEF\xBF\xBD\"\n");
}

TEST(MSPDIJSONTest, writesBitByBitWhatItWritesAtOnce) {
    std::ostringstream out;
    MSPDIJSONWriter writer(out);
    writer.beginObject();
    writer.key("a\x7F");
    writer.text("\xC2\x9B\"\\");
    writer.key("none");
    writer.beginArray();
    writer.endArray();
    writer.key("some");
    writer.beginArray();
    writer.value(nullptr);
    writer.value(JSON{{"b", 1}, {"c", JSON::object()}});
    writer.beginObject();
    writer.endObject();
    writer.endArray();
    writer.endObject();
    EXPECT_EQ(out.str(),
              "{\n"
              "  \"a\\u007f\": \"\\u009b\\\"\\\\\",\n"
              "  \"none\": [],\n"
              "  \"some\": [\n"
              "    null,\n"
              "    {\n"
              "      \"b\": 1,\n"
              "      \"c\": {}\n"
              "    },\n"
              "    {}\n"
              "  ]\n"
              "}");
    EXPECT_EQ(written(JSON::parse(out.str())), out.str() + "\n");
}
