#include "MSPCXMLOutput.h"

#include <gtest/gtest.h>

#include "MSPCByteStreams.h"

namespace {

struct Written {
    std::string bytes;
    std::size_t replaced = 0;
    friend bool operator==(const Written&, const Written&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Written& written) {
        return stream << '"' << written.bytes << "\", " << written.replaced << " replaced";
    }
};

template <typename Write>
Written written(Write&& write) {
    MSPCStringWriter writer;
    MSPCXMLOutput output(writer);
    write(output);
    output.flush();
    return {writer.take(), output.replacedCharacters()};
}

TEST(MSPCXMLOutput, escapesWhatATextCannotHold) {
    const auto result = written([](auto& output) { output.text("a & b < c > d \" ' \t \n \r ]]>"); });
    EXPECT_EQ(result, (Written{"a &amp; b &lt; c &gt; d \" ' \t \n &#13; ]]&gt;", 0}));
}

TEST(MSPCXMLOutput, escapesWhatAnAttributeValueCannotHold) {
    const auto result = written([](auto& output) { output.attributeValue("a & b < c > d \" ' \t \n \r"); });
    EXPECT_EQ(result, (Written{"a &amp; b &lt; c &gt; d &quot; ' &#9; &#10; &#13;", 0}));
}

TEST(MSPCXMLOutput, replacesAndCountsWhatXMLCannotHold) {
    struct Case {
        std::string_view text;
        Written expected;
    };
    using namespace std::string_view_literals;
    const Case cases[] = {
        {"a\x01\x1F"
         "b\0c"sv,
         {"a\xEF\xBF\xBD\xEF\xBF\xBD"
          "b\xEF\xBF\xBD"
          "c",
          3}},
        {"\x7F", {"\x7F", 0}},
        {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", 0}},
        {"\xF4\x8F\xBF\xBF\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD",
         {"\xF4\x8F\xBF\xBF\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD", 0}},
        {"\xEF\xBF\xBE\xEF\xBF\xBF", {"\xEF\xBF\xBD\xEF\xBF\xBD", 2}},
        {"a\xC3", {"a\xEF\xBF\xBD", 1}},
        {"\xC3z", {"\xEF\xBF\xBDz", 1}},
        {"\x80", {"\xEF\xBF\xBD", 1}},
        {"\xC0\xAF", {"\xEF\xBF\xBD\xEF\xBF\xBD", 2}},
        {"\xE0\x80\xAF", {"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", 3}},
        {"\xED\xA0\x80", {"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", 3}},
        {"\xF4\x90\x80\x80", {"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", 4}},
        {"\xF8", {"\xEF\xBF\xBD", 1}},
    };
    for (const auto& [input, expected] : cases) {
        const auto text = input;
        EXPECT_EQ(written([&](auto& output) { output.text(text); }), expected);
        EXPECT_EQ(written([&](auto& output) { output.attributeValue(text); }), expected);
        EXPECT_EQ(written([&](auto& output) { output.unescaped(text); }), expected);
    }
}

TEST(MSPCXMLOutput, aCommentNeverHoldsTwoHyphensNorEndsInOne) {
    struct Case {
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {{"a--b", "a- -b"}, {"---", "- - - "}, {"a-", "a- "},  {"a-b", "a-b"},
                              {"", ""},          {"-", "- "},       {"--", "- - "}, {"<&>", "<&>"}};
    for (const auto& [input, expected] : cases) {
        const auto text = input;
        EXPECT_EQ(written([&](auto& output) { output.comment(text); }).bytes, expected) << text;
    }
}

TEST(MSPCXMLOutput, indentsByFourBlanksUpToALimit) {
    EXPECT_EQ(written([](auto& output) { output.newLine(0); }).bytes, "\n");
    EXPECT_EQ(written([](auto& output) { output.newLine(3); }).bytes, "\n            ");
    EXPECT_EQ(written([](auto& output) { output.newLine(1'000'000); }).bytes,
              "\n" + std::string(4 * MSPCXMLOutput::MostIndentedLevels, ' '));
}

TEST(MSPCXMLOutput, handsLongContentOnInBlocks) {
    const std::string content(1'000'000, 'x');
    EXPECT_EQ(written([&](auto& output) {
                  output.text(content);
                  output.text("&");
                  output.text(content);
              }).bytes,
              content + "&amp;" + content);
}

}  // namespace
