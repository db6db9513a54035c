#include "MSPISplitTask.h"

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

// An owner of pieces with the given contents, "split-1", "split-2" and so on.
class SplitTask {
public:
    explicit SplitTask(std::string_view ownerContent)
        : document(documentFromXML("<scenario><task>" + std::string(ownerContent) + "</task></scenario>")),
          owner(document.root().firstChildElement("task")) {}

    std::string splitInto(const std::vector<std::string>& pieceContents, const std::optional<std::string>& end = {},
                          bool isReportingErrors = true) {
        std::vector<MSPCXMLNewElement> pieces;
        for (const auto& content : pieceContents) {
            const auto source = documentFromXML("<task>" + content + "</task>");
            pieces.push_back(document.root().newCopyOf(source.root()));
            setAttributeWithNameStringValue(pieces.back().node(), "id", "split-" + std::to_string(pieces.size()));
        }
        pendingPieces = splitTaskIntoPieces(owner, std::move(pieces), end, isReportingErrors);
        return markupOf(owner.newCopyOf(owner));
    }

    MSPCXMLDocument document;
    MSPCXMLNode owner;
    std::vector<MSPIPendingPiece> pendingPieces;
};

const std::string twoReferences = "<child-task idref=\"split-1\"/><child-task idref=\"split-2\"/>";

std::string splitOf(std::string_view ownerContent, const std::vector<std::string>& pieceContents,
                    const std::optional<std::string>& end = {}, bool isReportingErrors = true) {
    return SplitTask(ownerContent).splitInto(pieceContents, end, isReportingErrors);
}

}  // namespace

TEST(MSPISplitTask, hasAMarkInPlaceOfItsType) {
    const struct {
        const char* content;
        const char* expected;
    } table[] = {
        {"<title>Dig</title><type>task</type><note/>", "<title>Dig</title><split/><note/>"},
        {"<note/><type>task</type><title>Dig</title>", "<note/><split/><title>Dig</title>"},
        {"<note/><title>Dig</title><x/>", "<note/><title>Dig</title><split/><x/>"},
        {"<note/><x/>", "<split/><note/><x/>"},
        {"", "<split/>"},
    };
    for (const auto& [content, expected] : table) {
        EXPECT_EQ(splitOf(content, {"", ""}), "<task>" + std::string(expected) + twoReferences + "</task>") << content;
    }
}

TEST(MSPISplitTask, needsTwoPieces) {
    EXPECT_RAISES(splitOf("", {"<effort>1</effort>"}), MSPCInternalInconsistency,
                  "Minimum number of task splits must be 2.");
    EXPECT_RAISES(splitOf("", {}), MSPCInternalInconsistency, "Minimum number of task splits must be 2.");
}

TEST(MSPISplitTask, hasTheEffortOfItsPieces) {
    EXPECT_EQ(splitOf("<type/><effort>5</effort>", {"<effort>3600</effort>", "<effort>7200</effort>"}),
              "<task><split/><effort>10800.00</effort>" + twoReferences + "</task>");
    EXPECT_EQ(splitOf("<title/><type/><note/>", {"<effort>0.125</effort>", "<effort>1</effort>"}),
              "<task><title/><split/><effort>1.12</effort><note/>" + twoReferences + "</task>");
    for (const auto* none : {"<effort>0</effort>", "<effort>-1</effort>", ""}) {
        EXPECT_EQ(splitOf("<type/><effort>5</effort>", {none, none}),
                  "<task><split/><effort>5</effort>" + twoReferences + "</task>")
            << none;
    }
}

TEST(MSPISplitTask, countsAmbiguousEffortsOnlyWhenErrorsDoNotCount) {
    const std::vector<std::string> pieces = {"<effort>1</effort><effort>2</effort>", "<effort>4</effort>"};
    EXPECT_EQ(splitOf("<type/>", pieces), "<task><split/><effort>4.00</effort>" + twoReferences + "</task>");
    EXPECT_EQ(splitOf("<type/>", pieces, {}, false), "<task><split/><effort>6.00</effort>" + twoReferences + "</task>");
    EXPECT_EQ(splitOf("<type/>", {"", "<effort>4</effort>"}, {}, false),
              "<task><split/><effort>4.00</effort>" + twoReferences + "</task>");
    EXPECT_RAISES(splitOf("<type/>", {"<effort>much</effort>", ""}), MSPCInternalInconsistency,
                  "Failed to get float value from XML node: <effort>much</effort>");
}

TEST(MSPISplitTask, endsWhereItsLastPieceEnds) {
    EXPECT_EQ(splitOf("<type/><end-date>1</end-date>", {"", ""}, "E"),
              "<task><split/><end-date>E</end-date>" + twoReferences + "</task>");
    EXPECT_EQ(splitOf("<type/><locked-end-date>1</locked-end-date><end-constraint-date>2</end-constraint-date>"
                      "<locked-start-date>3</locked-start-date>",
                      {"", ""}, "E"),
              "<task><split/><locked-end-date>E</locked-end-date><end-constraint-date>E</end-constraint-date>"
              "<locked-start-date>3</locked-start-date><end-date>E</end-date>" +
                  twoReferences + "</task>");
    EXPECT_EQ(splitOf("<type/><end-date>1</end-date><locked-end-date>1</locked-end-date>", {"", ""}),
              "<task><split/><end-date>1</end-date><locked-end-date>1</locked-end-date>" + twoReferences + "</task>");
}

TEST(MSPISplitTask, keepsItsPiecesWithTheReferencesToThem) {
    SplitTask task("<type/>");
    static_cast<void>(task.splitInto({"<title>a</title>", "<title>b</title>", "<title>c</title>"}));
    ASSERT_EQ(task.pendingPieces.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto id = "split-" + std::to_string(i + 1);
        EXPECT_EQ(task.pendingPieces[i].piece.node().attribute("id").stringValue(), id);
        EXPECT_EQ(task.pendingPieces[i].reference.attribute("idref").stringValue(), id);
        EXPECT_EQ(task.pendingPieces[i].reference.parent(), task.owner);
        EXPECT_EQ(task.pendingPieces[i].piece.node().stringValue(), std::string(1, "abc"[i]));
    }
}
