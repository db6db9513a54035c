#include "MSPCXMLLoader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "InMemoryFileSystem.h"
#include "MSPCXMLDocument.h"
#include "MSPCXMLRepair.h"
#include "MSPCXMLSelection.h"
#include "ProcessorTime.h"

namespace {

// What a loading gave: the root's markup or "(none)", and the repair as "<line>: <message>".
struct Outcome {
    std::string markup = "(none)";
    std::string repair;
};

Outcome outcomeOf(const std::optional<MSPCXMLLoaded>& loaded) {
    Outcome outcome;
    if (loaded) {
        outcome.markup = loaded->document.root().markup();
    }
    if (loaded && loaded->repair) {
        outcome.repair = std::to_string(loaded->repair->line) + ": " + loaded->repair->message;
    }
    return outcome;
}

Outcome outcomeOf(std::string bytes, MSPCXMLContent content = MSPCXMLContent::DataOnly,
                  std::string_view mendableRoot = "Project") {
    return outcomeOf(MSPCXMLLoader(content, mendableRoot).loadBytes(std::move(bytes)));
}

TEST(MSPCXMLLoader, everythingOrDataOnlyIsKept) {
    const std::string text = "<Project><!--c--><Name>a</Name><?p i?></Project>";
    EXPECT_EQ(outcomeOf(text, MSPCXMLContent::Everything).markup, text);
    EXPECT_EQ(outcomeOf(text, MSPCXMLContent::DataOnly).markup, "<Project><Name>a</Name></Project>");
    EXPECT_EQ(outcomeOf("<Project><!--c--></Project>", MSPCXMLContent::DataOnly).markup, "<Project/>");
    EXPECT_EQ(outcomeOf("<Project><?p i?></Project>", MSPCXMLContent::DataOnly).markup, "<Project/>");
}

TEST(MSPCXMLLoader, aNameOfThreeBlanksIsAName) {
    for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
        EXPECT_EQ(outcomeOf("<Project>\n <Name>   </Name>\n</Project>", content).markup,
                  "<Project><Name>   </Name></Project>");
    }
}

TEST(MSPCXMLLoader, soundMarkupIsNotReportedAsMended) {
    constexpr std::string_view texts[] = {
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<Project/>\n",
        " \n<Project a='&amp;&#10;&#x1F600;'>&lt;</Project>",
        "<Project><![CDATA[A & B &nbsp;]]></Project>",
        "<Project><!-- A & B --></Project>",
        "<Project><?t A & B?></Project>",
        "<!-- A & B --><Project/>",
        "<!DOCTYPE Project><Project/>",
        "<Project></Project >",
    };
    for (const auto text : texts) {
        for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
            const auto outcome = outcomeOf(std::string(text), content);
            EXPECT_NE(outcome.markup, "(none)") << text;
            EXPECT_EQ(outcome.repair, "") << text;
        }
    }
}

TEST(MSPCXMLLoader, brokenMarkupIsMendedAndReported) {
    struct Case {
        std::string_view bytes;
        std::string_view markup;
        std::string_view repair;
    };
    constexpr Case cases[] = {
        {"<Project>\n<Name>A & B</Name></Project>", "<Project><Name>A &amp; B</Name></Project>",
         "2: xmlParseEntityRef: no name"},
        {"<Project><Name>R&D; &nbsp;x &</Name></Project>", "<Project><Name>R&amp;D; &amp;nbsp;x &amp;</Name></Project>",
         "1: Entity 'D' not defined"},
        {"<Project a='1&2'/>", "<Project a=\"1&amp;2\"/>", "1: xmlParseEntityRef: no name"},
        {"<Project><Name>a&#1;b</Name></Project>",
         "<Project><Name>a\xEF\xBF\xBD"
         "b</Name></Project>",
         "1: xmlParseCharRef: invalid xmlChar value 1"},
        {"<Project>\n<Name>a\n</Project>", "<Project><Name>a\n</Name></Project>",
         "3: Opening and ending tag mismatch: Name line 2 and Project"},
        {"<Project><Name>a</Name>", "<Project><Name>a</Name></Project>",
         "1: Premature end of data in tag Project line 1"},
        {"<Project/><Project/>", "<Project/>", "1: Extra content at the end of the document"},
        {"<Project/>tail", "<Project/>", "1: Extra content at the end of the document"},
    };
    for (const auto& [bytes, markup, repair] : cases) {
        const auto outcome = outcomeOf(std::string(bytes));
        EXPECT_EQ(outcome.repair, repair) << bytes;
        EXPECT_EQ(outcome.markup, markup) << bytes;
    }
}

TEST(MSPCXMLLoader, mendingLosesNoTextBesideForbiddenCharactersAndSectionEnds) {
    const auto afterNul = outcomeOf(std::string("<Project><Name>a\0b</Name><UID>1</UID></Project>", 47));
    EXPECT_EQ(afterNul.markup,
              "<Project><Name>a\xEF\xBF\xBD"
              "b</Name><UID>1</UID></Project>");
    EXPECT_EQ(afterNul.repair, "1: Char 0x0 out of allowed range");
    EXPECT_EQ(outcomeOf("<Project><Name>a & \x01</Name></Project>").markup,
              "<Project><Name>a &amp; \xEF\xBF\xBD</Name></Project>");
    EXPECT_EQ(outcomeOf("<Project><Name>a]]>b &</Name><UID>1</UID></Project>").markup,
              "<Project><Name>a]]&gt;b &amp;</Name><UID>1</UID></Project>");
}

TEST(MSPCXMLLoader, onlyTheRootThatWasAskedForIsMended) {
    EXPECT_EQ(outcomeOf("<scenario><a>").markup, "(none)");
    EXPECT_EQ(outcomeOf("<p:Project xmlns:p='u'><a>").markup, "(none)");
    EXPECT_EQ(outcomeOf("<scenario><a>", MSPCXMLContent::Everything, "scenario").markup, "<scenario><a/></scenario>");
    EXPECT_EQ(outcomeOf("<Project>A & B</Project>", MSPCXMLContent::DataOnly, "").markup, "(none)");
    EXPECT_EQ(outcomeOf("<Project>", MSPCXMLContent::DataOnly, "").markup, "(none)");
}

TEST(MSPCXMLLoader, bytesThatAreNoXMLGiveNoDocument) {
    using namespace std::string_view_literals;
    for (const auto bytes : {""sv, " "sv, "Project"sv, "\0\0\0"sv, "\xFF\xFE"sv, "<"sv, "<?xml version='1.0'?>"sv,
                             "<!DOCTYPE Project ["sv, "<!--"sv, "&"sv, "\x89PNG\r\n\x1A\n"sv, "]]>"sv}) {
        EXPECT_EQ(outcomeOf(std::string(bytes)).markup, "(none)") << bytes;
        EXPECT_EQ(outcomeOf(std::string(bytes), MSPCXMLContent::Everything, "").markup, "(none)") << bytes;
    }
}

// The loader gives up before it asks the parsers, none of which would go beyond such a text.
TEST(MSPCXMLLoader, textBeforeTheRootIsRefusedAsTheParsersRefuseIt) {
    using namespace std::string_literals;
    const std::string texts[] = {"x",
                                 "text\n ",
                                 "&amp;",
                                 "&#60;",
                                 ">",
                                 "]]>",
                                 "-->",
                                 "\x01",
                                 "\0"s,
                                 "\xC2\xA0",
                                 "\xE2\x80\x8B",
                                 "\xEF\xBB\xBF\xEF\xBB\xBF",
                                 "\xEF\xBB\xBFx"};
    const std::string documents[] = {"<Project><Name>a</Name></Project>", "<Project><Name>a</Project>",
                                     "<!DOCTYPE Project [<!ENTITY e 'b'>]><Project>&e;</Project>", ""};
    for (const auto& document : documents) {
        for (const auto& text : texts) {
            const auto bytes = text + document;
            EXPECT_EQ(outcomeOf(bytes).markup, "(none)") << bytes;
            EXPECT_EQ(outcomeOf(bytes, MSPCXMLContent::Everything).markup, "(none)") << bytes;
            EXPECT_FALSE(MSPCXMLDocument::read(std::string(bytes), {.content = MSPCXMLContent::DataOnly})) << bytes;
            EXPECT_FALSE(mendedXML(bytes, document.starts_with("<!DOCTYPE"), "Project")) << bytes;
        }
    }
}

TEST(MSPCXMLLoader, anAttributeGivenTwiceIsNoXMLWhereItIsWrittenBack) {
    EXPECT_EQ(outcomeOf("<scenario a='1' a='2'/>", MSPCXMLContent::Everything).markup, "(none)");
    const auto outcome = outcomeOf("<Project a='1' a='2'/>", MSPCXMLContent::Everything);
    EXPECT_EQ(outcome.markup, "<Project a=\"1\"/>");
    EXPECT_EQ(outcome.repair, "1: Attribute a redefined");
}

// One file whose content may be gone when it is read again.
class OneFile final : public MSPCFileReader {
public:
    explicit OneFile(std::string bytes, int mostReadings = 2) : _bytes(std::move(bytes)), _mostReadings(mostReadings) {}

    [[nodiscard]] std::optional<std::string> readFile(const std::string& /*path*/,
                                                      std::string* /*failure*/) const override {
        return readings++ < _mostReadings ? std::optional(_bytes) : std::nullopt;
    }

    mutable int readings = 0;

private:
    std::string _bytes;
    int _mostReadings;
};

TEST(MSPCXMLLoader, aRepairReadsTheFileAgain) {
    const MSPCXMLLoader loader(MSPCXMLContent::DataOnly, "Project");
    const OneFile broken("<Project><Name>a</Name>");
    const auto mended = outcomeOf(loader.loadFile(broken, "/Plan.xml"));
    EXPECT_EQ(mended.markup, "<Project><Name>a</Name></Project>");
    EXPECT_EQ(mended.repair, "1: Premature end of data in tag Project line 1");
    EXPECT_EQ(broken.readings, 2);

    const OneFile sound("<Project/>");
    EXPECT_EQ(outcomeOf(loader.loadFile(sound, "/Plan.xml")).markup, "<Project/>");
    EXPECT_EQ(sound.readings, 1);

    const OneFile gone("<Project>", 1);
    EXPECT_EQ(outcomeOf(loader.loadFile(gone, "/Plan.xml")).markup, "(none)");
    EXPECT_EQ(gone.readings, 2);
}

TEST(MSPCXMLLoader, aFileThatCannotBeReadGivesNoDocument) {
    const InMemoryFileSystem files;
    const MSPCXMLLoader loader(MSPCXMLContent::DataOnly, "Project");
    EXPECT_FALSE(loader.loadFile(files, "/None.xml"));
    EXPECT_FALSE(loader.loadSelection(files, "/None.xml", MSPCXMLSelection::fromText("Project(Name)")));
}

TEST(MSPCXMLLoader, aSelectionIsReadInPartWhereThatIsPossible) {
    struct Case {
        std::string_view behaviour;
        std::string_view bytes;
        std::string_view markup;
        std::string_view deferred;
        std::string_view repair;
    };
    constexpr Case cases[] = {
        {"plain", "<Project><Name>a</Name><Cost>1</Cost><Task><UID>2</UID></Task></Project>",
         "<Project><Name>a</Name><Task/></Project>", "<deferred><UID>2</UID></deferred>", ""},
        {"nothing to defer", "<Project><Cost>1</Cost><Task/></Project>", "<Project><Task/></Project>", "(none)", ""},
        {"as a whole", "<Project><Cost x='1'/><Task><UID>2</UID></Task></Project>",
         "<Project><Cost x=\"1\"/><Task><UID>2</UID></Task></Project>", "(none)", ""},
        {"in another encoding", "<?xml version='1.0' encoding='iso-8859-1'?><Project><Name>\xE4</Name></Project>",
         "<Project><Name>\xC3\xA4</Name></Project>", "(none)", ""},
        {"mended", "<Project><Name>a & b</Name><Cost>1</Cost></Project>",
         "<Project><Name>a &amp; b</Name><Cost>1</Cost></Project>", "(none)", "1: xmlParseEntityRef: no name"},
        {"refused", "<Plan><Name>a & b</Name></Plan>", "(none)", "(none)", ""},
    };
    const auto selection = MSPCXMLSelection::fromText("Project(Name Task(~UID))");
    for (const auto& [behaviour, bytes, markup, deferred, repair] : cases) {
        const OneFile file{std::string(bytes), 3};
        auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly, "Project").loadSelection(file, "/Plan.xml", selection);
        const auto outcome = outcomeOf(loaded);
        EXPECT_EQ(outcome.markup, markup) << behaviour;
        EXPECT_EQ(outcome.repair, repair) << behaviour;
        const auto children = loaded ? loaded->deferred.take("Task").next() : std::nullopt;
        EXPECT_EQ(children ? children->root().markup() : "(none)", deferred) << behaviour;
    }
}

// Half of a file may parse as well as a whole one.
TEST(MSPCXMLLoader, aFileThatFailsOnTheWayIsNotReadInPart) {
    class Failing final : public MSPCFileReader {
    public:
        [[nodiscard]] std::optional<std::string> readFile(const std::string& /*path*/,
                                                          std::string* /*failure*/) const override {
            return std::nullopt;
        }
        [[nodiscard]] std::unique_ptr<MSPCByteSource> openFile(const std::string& /*path*/) const override {
            class Source final : public MSPCByteSource {
            public:
                [[nodiscard]] std::optional<std::size_t> read(char* buffer, std::size_t /*capacity*/) override {
                    constexpr std::string_view bytes = "<Project/>";
                    return std::exchange(_isRead, true) ? std::nullopt
                                                        : std::optional(bytes.copy(buffer, bytes.size()));
                }
                [[nodiscard]] std::size_t expectedSize() const override { return 100; }

            private:
                bool _isRead = false;
            };
            return std::make_unique<Source>();
        }
    };
    const auto selection = MSPCXMLSelection::fromText("Project(Name)");
    EXPECT_FALSE(MSPCXMLLoader(MSPCXMLContent::DataOnly).loadSelection(Failing(), "/Plan.xml", selection));
}

TEST(MSPCXMLLoader, internalEntitiesAreExpanded) {
    const auto outcome = outcomeOf(
        "<!DOCTYPE Project [<!ENTITY firm \"Dig &amp; Sons\"><!ENTITY all '&firm;!'>]>"
        "<Project a='&firm;'><Name>&all;</Name></Project>");
    EXPECT_EQ(outcome.markup, "<Project a=\"Dig &amp; Sons\"><Name>Dig &amp; Sons!</Name></Project>");
    EXPECT_EQ(outcome.repair, "");
}

TEST(MSPCXMLLoader, strayAmpersandsBesideEntitiesAreMended) {
    const auto outcome = outcomeOf("<!DOCTYPE Project [<!ENTITY e 'x'>]>\n<Project>&e; & y</Project>");
    EXPECT_EQ(outcome.markup, "<Project>x &amp; y</Project>");
    EXPECT_EQ(outcome.repair, "2: xmlParseEntityRef: no name");
}

std::string entityBomb(std::string_view use) {
    std::string bomb = "<!DOCTYPE Project [<!ENTITY a0 \"lol\">";
    for (int level = 1; level <= 12; ++level) {
        bomb += "<!ENTITY a" + std::to_string(level) + " \"";
        for (int copy = 0; copy < 10; ++copy) {
            bomb += "&a" + std::to_string(level - 1) + ";";
        }
        bomb += "\">";
    }
    return bomb + "]><Project>" + std::string(use) + "</Project>";
}

TEST(MSPCXMLLoader, anEntityBombFailsAtOnce) {
    const auto start = processorTime();
    EXPECT_EQ(outcomeOf(entityBomb("&a12;")).markup, "(none)");
    EXPECT_EQ(outcomeOf(entityBomb("<Name a='&a12;'/>")).markup, "(none)");
    std::string quadratic = "<!DOCTYPE Project [<!ENTITY a '" + std::string(100'000, 'x') + "'>]><Project>";
    for (int use = 0; use < 20'000; ++use) {
        quadratic += "&a;";
    }
    EXPECT_EQ(outcomeOf(quadratic + "</Project>").markup, "(none)");
    EXPECT_EQ(outcomeOf("<!DOCTYPE Project [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><Project>&a;</Project>").markup,
              "(none)");
    EXPECT_LT(processorTime() - start, std::chrono::seconds(1));
}

TEST(MSPCXMLLoader, nothingOutsideTheBytesIsRead) {
    const auto canary = std::filesystem::temp_directory_path() / ("kzmsp-canary-" + std::to_string(::getpid()));
    std::ofstream(canary) << "<!ENTITY e 'CANARY'>CANARY";
    const auto url = "'file://" + canary.string() + "'";
    const std::string bodies[] = {
        "<!DOCTYPE Project [<!ENTITY e SYSTEM " + url + ">]><Project>[&e;]</Project>",
        "<!DOCTYPE Project [<!ENTITY % p SYSTEM " + url + "> %p;]><Project>[&e;]</Project>",
        "<!DOCTYPE Project SYSTEM " + url + " [<!ENTITY f 'x'>]><Project>[&e;&f;]</Project>",
        "<!DOCTYPE Project SYSTEM " + url + "><Project>[&e;]</Project>",
        "<Project xmlns:i='http://www.w3.org/2001/XInclude'><i:include parse='text' href=" + url + "/></Project>",
    };
    for (const auto& body : bodies) {
        for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
            EXPECT_EQ(outcomeOf(body, content).markup.find("CANARY"), std::string::npos) << body;
        }
    }
    std::filesystem::remove(canary);
}

TEST(MSPCXMLLoader, aMillionUnclosedLevelsAreMended) {
    std::string bytes = "<Project>";
    for (int level = 0; level < 1'000'000; ++level) {
        bytes += "<a>";
    }
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::DataOnly, "Project").loadBytes(bytes);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->document.root().firstChild().name(), "a");
}

}  // namespace
