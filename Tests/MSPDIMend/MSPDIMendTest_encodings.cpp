// Plans in other encodings, with other line ends, and inside files that hold them in other forms.
#include <tuple>

#include "MendFixture.h"

using testing::HasSubstr;

namespace {

class EncodingsTest : public MendTest {
protected:
    // Of characters below U+0100.
    static std::string utf16(const std::string& text, bool isBigEndian) {
        std::string units;
        for (const char character : text) {
            units += isBigEndian ? std::string{'\0', character} : std::string{character, '\0'};
        }
        return units;
    }
    static std::string marked(const std::string& text, bool isBigEndian) {
        return (isBigEndian ? "\xFE\xFF" : "\xFF\xFE") + utf16(text, isBigEndian);
    }
    static std::string withLineEnds(const std::string& text, const std::string& lineEnd) {
        std::string changed;
        for (const char character : text) {
            changed += character == '\n' ? lineEnd : std::string(1, character);
        }
        return changed;
    }
    static std::string escaped(const std::string& text) {
        std::string changed;
        for (const char character : text) {
            changed += character == '<'   ? "&lt;"
                       : character == '>' ? "&gt;"
                       : character == '&' ? "&amp;"
                       : character == '"' ? "&quot;"
                                          : std::string(1, character);
        }
        return changed;
    }
    static std::string declaring(const std::string& plan, const std::string& encoding) {
        return with(plan, "encoding=\"UTF-8\"", "encoding=\"" + encoding + "\"");
    }
    // Expects a copy in UTF-8 that says so, by those steps, and that mending it does nothing.
    void expectConverted(const std::string& plan, const std::string& wanted, const std::string& steps) const {
        const auto mended = mend(plan);
        ASSERT_EQ(mended.verdict, MSPDIMendVerdict::Mended) << mended.obstacle;
        EXPECT_EQ(mended.bytes, wanted);
        EXPECT_EQ(stepsOf(mended), steps);
        EXPECT_TRUE(mended.isConverted);
        EXPECT_FALSE(mended.isRepaired);
        EXPECT_EQ(mend(mended.bytes).verdict, MSPDIMendVerdict::ImportsAsIs);
    }
};

}  // namespace

TEST_F(EncodingsTest, mendsPlansInUtf16) {
    const auto root = planOf(tasks(task(0, 0, "<Summary>0</Summary>") + task(1, 1, "<Name>Paint</Name>")));
    const auto value = planOf(tasks(task(1, 1, "<Duration>soon</Duration>")));
    for (const bool isBigEndian : {false, true}) {
        expectConverted(marked(declaring(root, "UTF-16"), isBigEndian), with(root, "<Summary>0<", "<Summary>1<"),
                        "root-task 1");
        expectConverted(marked(declaring(value, "utf-16"), isBigEndian), with(value, "<Duration>soon</Duration>", ""),
                        "unreadable-value 1");
        expectConverted(marked(declaring(planOf(tasks(task(-1, 1))), "UTF-16"), isBigEndian), planOf(tasks(task(1, 1))),
                        "missing-uid 1");
    }
}

TEST_F(EncodingsTest, mendsPlansInOlderEncodings) {
    const auto plan = planOf(tasks(task(0, 0, "<Name>\xFC</Name>") + task(1, -1)));
    const auto wanted = planOf(tasks(task(0, 0, "<Name>\xC3\xBC</Name><Summary>1</Summary>") + task(1, 1)));
    for (const std::string encoding : {"windows-1252", "ISO-8859-1"}) {
        expectConverted(declaring(plan, encoding), wanted, "root-task 1, outline 1");
    }
}

// The bytes of such a plan are the same in both encodings, but what a step puts in need not be.
TEST_F(EncodingsTest, declaresPlansInOlderEncodingsThatHoldPlainLettersOnly) {
    const auto plan = declaring(planOf(tasks(task(0, 0, "<Name>&#252;</Name><Summary>0</Summary>"))), "ISO-8859-1");
    expectConverted(plan, planOf(tasks(task(0, 0, "<Name>&#252;</Name><Summary>1</Summary>"))), "root-task 1");
}

TEST_F(EncodingsTest, keepsTheLineEndsOfAPlan) {
    const auto lines = [](const std::string& root, const std::string& content) {
        return withLineEnds(
            "<?xml version=\"1.0\"?>\n<Project xmlns=\"http://schemas.microsoft.com/project\">\n" + standardCalendar() +
                "  <Tasks>\n    <Task>\n      <UID>0</UID>\n      <OutlineLevel>0</OutlineLevel>\n" + root +
                "    </Task>\n    <Task>\n      <UID>1</UID>\n" + content + "    </Task>\n  </Tasks>\n</Project>\n",
            "\r\n");
    };
    const std::string level = "      <OutlineLevel>1</OutlineLevel>\n";
    expectMended(lines("", level), lines("      <Summary>1</Summary>\n", level), "root-task 1");
    const std::string root = "      <Summary>1</Summary>\n";
    expectMended(lines(root, "      <Start>x</Start>\n" + level), lines(root, level), "unreadable-value 1");
    expectMended(lines("      <Summary>0</Summary>\n", "      <OutlineLevel>-1</OutlineLevel>\n"), lines(root, level),
                 "root-task 1, outline 1");
}

TEST_F(EncodingsTest, takesPlansInUtf16OutOfOtherBytes) {
    const auto plan = planOf(tasks(task(1, 1)));
    const auto wanted = plan.substr(0, plan.size() - 1);
    for (const bool isBigEndian : {false, true}) {
        for (const std::string before : {"\x01\x02 mail", "\x01\x02 mails"}) {
            expectConverted(before + utf16(declaring(plan, "UTF-16"), isBigEndian) + "\xFF\xFF\x01", wanted,
                            "embedded 1");
        }
    }
}

TEST_F(EncodingsTest, takesPlansOutOfTheTextOfOtherFiles) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>A &amp; B</Name>")));
    const auto wanted = plan.substr(0, plan.size() - 1);
    for (const std::string around : {"<Mail><Subject/>@</Mail>", "<Mail><Part>text</Part><Part>@</Part></Mail>"}) {
        expectMended(with(around, "@", escaped(plan)), wanted, "embedded 1");
        expectMended(with(around, "@", "<![CDATA[" + plan + "]]>"), wanted, "embedded 1");
    }
    expectMended("text " + escaped(plan) + " more", wanted, "embedded 1");
    expectMended("text <![CDATA[" + plan + "]]> more", wanted, "embedded 1");
    expectMended("<Mail plan=\"" + withLineEnds(escaped(plan), "&#xA;") + "\"/>", wanted, "embedded 1");
}

// Read one byte off, in the other byte order, plain letters look the same.
TEST_F(EncodingsTest, takesTheByteOrderOfUtf16FromWhatItYields) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>@ und @</Name>")));
    const auto wanted = plan.substr(0, plan.size() - 1);
    const auto replacedAll = [](std::string text, const std::string& piece, const std::string& other) {
        for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + other.size())) {
            text.replace(at, piece.size(), other);
        }
        return text;
    };
    for (const bool isBigEndian : {false, true}) {
        // The euro sign and a Cyrillic letter, at the beginning of a text and within.
        for (const auto& [utf8, high, low] :
             {std::tuple{"\xE2\x82\xAC", '\x20', '\xAC'}, std::tuple{"\xD0\xB8", '\x04', '\x38'}}) {
            const auto sign = isBigEndian ? std::string{high, low} : std::string{low, high};
            for (const bool isDeclared : {false, true}) {
                const auto begin = isDeclared ? 0 : plan.find("<Project");
                const auto units = replacedAll(utf16(wanted.substr(begin), isBigEndian), utf16("@", isBigEndian), sign);
                expectConverted("junk" + units + std::string("\0j", 2), replacedAll(wanted, "@", utf8).substr(begin),
                                "embedded 1");
            }
        }
    }
}

// The text of an element is all of its pieces together, as long ones are written, and those that hold "]]>".
TEST_F(EncodingsTest, takesPlansOutOfTextInSeveralPieces) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>A &amp; B</Name>")));
    const auto wanted = plan.substr(0, plan.size() - 1);
    for (const std::size_t at : {std::size_t{30}, plan.find("<Name>") + 3, plan.size() - 5}) {
        const auto first = plan.substr(0, at);
        const auto second = plan.substr(at);
        expectMended("<a><![CDATA[" + first + "]]><![CDATA[" + second + "]]></a>", wanted, "embedded 1");
        expectMended("<a>" + escaped(first) + "<![CDATA[" + second + "]]></a>", wanted, "embedded 1");
        expectMended("<a><![CDATA[" + first + "]]><!-- and --><?more?>" + escaped(second) + "</a>", wanted,
                     "embedded 1");
    }
    expectMended("<a><![CDATA[" + with(plan, "A &amp; B", "<![CDATA[x]]]]><![CDATA[>") + "]]></a>",
                 with(wanted, "A &amp; B", "<![CDATA[x]]>"), "embedded 1");
}

TEST_F(EncodingsTest, readsAllFormsOfReferencesInText) {
    const auto plan = planOf(tasks(task(1, 1, "<Name>A &amp; B</Name>")));
    const auto wanted = plan.substr(0, plan.size() - 1);
    for (const auto* opening : {"&#x3C;", "&#x3c;", "&#060;", "&#x0003C;"}) {
        std::string text;
        for (const char character : plan) {
            text += character == '<'   ? std::string(opening)
                    : character == '&' ? std::string("&#38;")
                                       : std::string(1, character);
        }
        expectMended("<a>" + text + "</a>", wanted, "embedded 1");
    }
}

TEST_F(EncodingsTest, takesTheFirstOfSeveralPlansThatHoldsTasks) {
    const std::string empty = "<Project xmlns=\"http://schemas.microsoft.com/project\"/>";
    const auto plan = planOf(tasks(task(1, 1)));
    const auto inner = plan.substr(plan.find("<Project"), plan.rfind('>') + 1 - plan.find("<Project"));
    const auto second = with(inner, "<UID>1</UID><OutlineLevel>", "<UID>2</UID><OutlineLevel>");
    expectMended("junk " + empty + " " + inner + second, inner, "embedded 1");
    expectMended("<a>" + empty + inner + second + "</a>", inner, "embedded 1");
    const auto withoutTasks = planOf("");
    expectMended("junk " + withoutTasks + empty, withoutTasks.substr(0, withoutTasks.size() - 1), "embedded 1");
}

TEST_F(EncodingsTest, saysThatNoPlanLiesInTextThatOnlyNamesOne) {
    for (const auto* text :
         {"&lt;Project", "&lt;Project&gt; &amp", "P\\0r\\0o\\0j\\0e\\0c\\0t\\0", "&lt;Projects xmlns="}) {
        EXPECT_EQ(mend(text).verdict, MSPDIMendVerdict::NotMendable) << text;
    }
    EXPECT_EQ(mend(utf16("<Project>", false)).verdict, MSPDIMendVerdict::NotMendable);
}
