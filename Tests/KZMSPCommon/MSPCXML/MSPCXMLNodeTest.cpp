#include "MSPCXMLNode.h"

#include <gtest/gtest.h>

#include "XMLText.h"

namespace {

std::string bodyOf(const MSPCXMLDocument& document) {
    return document.root().markup();
}

class MSPCXMLNodeOfBothContents : public testing::TestWithParam<MSPCXMLContent> {};

INSTANTIATE_TEST_SUITE_P(Contents, MSPCXMLNodeOfBothContents,
                         testing::Values(MSPCXMLContent::Everything, MSPCXMLContent::DataOnly));

TEST_P(MSPCXMLNodeOfBothContents, textOfAnElementIsAllTextBelowIt) {
    struct Case {
        std::string_view content;
        std::string_view text;
    };
    constexpr Case cases[] = {
        {"", ""},
        {"abc", "abc"},
        {"   ", "   "},
        {"a<!--x-->b<![CDATA[c]]>", "abc"},
        {"<![CDATA[ <a> ]]>", " <a> "},
        {"a<b>c<d>e</d></b>f", "acef"},
        {"a <![CDATA[b]]> <![CDATA[c]]>", "a b c"},
        {"a<!--x--> <!--y-->b", "a b"},
        {"a<?target data?>b", "ab"},
        {"&amp;&lt;&gt;&quot;&apos;&#65;&#x42;", "&<>\"'AB"},
        {"a\r\nb&#13;c", "a\nb\rc"},
    };
    for (const auto& [content, text] : cases) {
        const auto document = xmlDocument("<Name>" + std::string(content) + "</Name>", GetParam());
        EXPECT_EQ(document.root().stringValue(), text) << content;
        std::string buffer = "left over";
        EXPECT_EQ(document.root().stringValue(buffer), text) << content;
    }
}

TEST_P(MSPCXMLNodeOfBothContents, settingATextReplacesAllChildren) {
    const auto document = xmlDocument("<Name>a<b>c</b>d</Name>", GetParam());
    auto name = document.root();
    name.setStringValue("x < y");
    EXPECT_EQ(bodyOf(document), "<Name>x &lt; y</Name>");
    name.setStringValue("");
    EXPECT_EQ(bodyOf(document), "<Name/>");
    name.setStringValue("again");
    EXPECT_EQ(name.stringValue(), "again");
}

TEST_P(MSPCXMLNodeOfBothContents, textCanBeSetFromAPartOfItself) {
    const auto document = xmlDocument("<Name>Release 1.5</Name>", GetParam());
    auto name = document.root();
    std::string buffer;
    name.setStringValue(name.stringValue(buffer).substr(8));
    EXPECT_EQ(name.stringValue(), "1.5");
}

TEST_P(MSPCXMLNodeOfBothContents, blanksBetweenElementsAreNoChildren) {
    const auto document = xmlDocument("<a>\n  <b/>\n  <c/>\n</a>", GetParam());
    EXPECT_EQ(document.root().firstChild().name(), "b");
    EXPECT_EQ(document.root().firstChild().nextSibling().name(), "c");
    EXPECT_EQ(document.root().lastChild().name(), "c");
    EXPECT_EQ(document.root().stringValue(), "");
}

TEST(MSPCXMLNode, aDeepCopyIntoAnotherDocumentKeepsTheText) {
    const auto plan = xmlDocument("<Task><Name>Dig</Name></Task>", MSPCXMLContent::DataOnly);
    MSPCXMLDocument scenario;
    auto root = scenario.setRoot(scenario.newElement("scenario"));
    root.appendChild(root.newCopyOf(plan.root()));
    EXPECT_EQ(bodyOf(scenario), "<scenario><Task><Name>Dig</Name></Task></scenario>");
    EXPECT_EQ(bodyOf(plan), "<Task><Name>Dig</Name></Task>");
}

TEST(MSPCXMLNode, anEmptyHandleAnswersNothingAndChangesNothing) {
    MSPCXMLNode none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.kind(), MSPCXMLNodeKind::None);
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.stringValue(), "");
    EXPECT_EQ(none.markup(), "");
    EXPECT_FALSE(none.parent() || none.firstChild() || none.lastChild() || none.nextSibling() ||
                 none.previousSibling() || none.rootElement() || none.attribute("a") || none.firstChildElement("a") ||
                 none.nextSiblingElement("a"));
    none.setStringValue("x");
    none.removeAttribute("a");
    EXPECT_FALSE(none.findOrAddAttribute("a") || none.setAttribute("a", "b") || none.appendElement("a") ||
                 none.appendElement("a", "b") || none.insertElement("a", 0) || none.appendComment("a") ||
                 none.insertComment("a", 0));
    EXPECT_FALSE(none.newElement("a") || none.newCopyOf(none) || none.detach());
    EXPECT_EQ(none.nodesForXPath("//a"), std::vector<MSPCXMLNode>());
    EXPECT_TRUE(none.namespaceDeclarations().empty());
    EXPECT_TRUE(none.childElements().empty() && none.childElements("a").empty());
    EXPECT_FALSE(none.lastChildElement("a").element);
    EXPECT_EQ(none.lastChildElement("a").count, 0U);
}

TEST(MSPCXMLNode, tellsItsKind) {
    const auto document = xmlDocument("<a b='c'>t<![CDATA[d]]><!--e--><?f g?></a>");
    auto child = document.root().firstChild();
    EXPECT_EQ(document.root().kind(), MSPCXMLNodeKind::Element);
    EXPECT_EQ(document.root().attribute("b").kind(), MSPCXMLNodeKind::Attribute);
    EXPECT_EQ(document.root().parent().kind(), MSPCXMLNodeKind::Document);
    EXPECT_EQ(child.kind(), MSPCXMLNodeKind::Text);
    EXPECT_EQ((child = child.nextSibling()).kind(), MSPCXMLNodeKind::CData);
    EXPECT_EQ((child = child.nextSibling()).kind(), MSPCXMLNodeKind::Comment);
    EXPECT_EQ(child.stringValue(), "e");
    EXPECT_EQ((child = child.nextSibling()).kind(), MSPCXMLNodeKind::ProcessingInstruction);
    EXPECT_EQ(child.name(), "f");
}

TEST(MSPCXMLNode, attributesAreFoundAddedAndRemoved) {
    const auto document = xmlDocument("<a b='1'/>");
    auto element = document.root();
    EXPECT_EQ(element.attribute("b").stringValue(), "1");
    EXPECT_EQ(element.attribute("b").parent(), element);
    EXPECT_FALSE(element.attribute("c"));
    auto added = element.findOrAddAttribute("c");
    added.setStringValue("\"2\"");
    EXPECT_EQ(element.findOrAddAttribute("c"), added);
    EXPECT_EQ(bodyOf(document), "<a b=\"1\" c=\"&quot;2&quot;\"/>");
    EXPECT_EQ(added.markup(), "c=\"&quot;2&quot;\"");
    element.removeAttribute("b");
    element.removeAttribute("b");
    EXPECT_EQ(element.attribute("c").stringValue(), "\"2\"");
    EXPECT_FALSE(element.attribute("b"));
}

TEST(MSPCXMLNode, settingAnAttributeAddsItOrReplacesItsValue) {
    const auto document = xmlDocument("<a b='1' c='2'>t</a>");
    auto element = document.root();
    EXPECT_EQ(element.setAttribute("b", "<3>"), element.attribute("b"));
    EXPECT_EQ(element.setAttribute("d", "four").stringValue(), "four");
    EXPECT_EQ(element.setAttribute("c", "").stringValue(), "");
    EXPECT_EQ(bodyOf(document), "<a b=\"&lt;3&gt;\" c=\"\" d=\"four\">t</a>");
    EXPECT_FALSE(element.attribute("b").setAttribute("e", "5") || element.firstChild().setAttribute("e", "5"));
}

TEST(MSPCXMLNode, namesMatchAsWrittenWithoutAnyNamespace) {
    const auto document = xmlDocument("<p:a xmlns='urn:one' xmlns:p='urn:two' xmlnsx='3'><b/><p:b/></p:a>");
    EXPECT_EQ(document.root().name(), "p:a");
    EXPECT_EQ(document.root().firstChildElement("b").nextSibling().name(), "p:b");
    EXPECT_TRUE(document.root().firstChildElement("p:b"));
    const auto declarations = document.root().namespaceDeclarations();
    ASSERT_EQ(declarations.size(), 2U);
    EXPECT_EQ(declarations[0].prefix, "");
    EXPECT_EQ(declarations[0].uri, "urn:one");
    EXPECT_EQ(declarations[1].prefix, "p");
    EXPECT_EQ(declarations[1].uri, "urn:two");
}

TEST(MSPCXMLNode, childElementsAreFoundByNamesOfAnyLength) {
    const std::string longName(200, 'n');
    const auto document = xmlDocument("<a><?b no element?><b/><" + longName + "/><b/></a>");
    const auto first = document.root().firstChildElement("b");
    EXPECT_TRUE(first.isElement());
    EXPECT_EQ(first.nextSiblingElement("b"), document.root().lastChild());
    EXPECT_FALSE(first.nextSiblingElement("b").nextSiblingElement("b"));
    EXPECT_EQ(document.root().firstChildElement(longName).name(), longName);
    EXPECT_FALSE(document.root().firstChildElement(longName + "n"));
}

TEST(MSPCXMLNode, theLastChildElementOfANameComesWithTheirNumber) {
    const auto document = xmlDocument("<a><b>1</b><?b no element?>t<c/><b>2<b>3</b></b><!--b--><b>4</b><bb/></a>");
    const auto last = document.root().lastChildElement("b");
    EXPECT_EQ(last.element.stringValue(), "4");
    EXPECT_EQ(last.count, 3U);
    EXPECT_EQ(document.root().lastChildElement("c").count, 1U);
    EXPECT_EQ(document.root().lastChildElement("d").count, 0U);
    EXPECT_FALSE(document.root().lastChildElement("d").element);
    const auto all = document.root().childElements("b");
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].stringValue(), "1");
    EXPECT_EQ(all[1].stringValue(), "23");
    EXPECT_EQ(all[2], last.element);
    EXPECT_TRUE(document.root().childElements("d").empty());
    EXPECT_EQ(document.root().parent().lastChildElement("a").element, document.root());
}

TEST(MSPCXMLNode, freeElementsAreNoChildElementsOfTheDocument) {
    const auto document = xmlDocument("<a/>");
    const auto free = document.root().newElement("a");
    const auto top = document.root().parent();
    EXPECT_EQ(top.lastChildElement("a").count, 1U);
    ASSERT_EQ(top.childElements().size(), 1U);
    EXPECT_EQ(top.childElements().front().element, document.root());
    EXPECT_EQ(free.node().lastChildElement("a").count, 0U);
}

TEST(MSPCXMLNode, anElementIsAppendedWithItsText) {
    const auto document = xmlDocument("<a>t</a>");
    auto element = document.root();
    const auto added = element.appendElement("b", "x < y");
    EXPECT_EQ(added.parent(), element);
    EXPECT_EQ(added.stringValue(), "x < y");
    EXPECT_FALSE(element.appendElement("c", "").firstChild());
    EXPECT_EQ(bodyOf(document), "<a>t<b>x &lt; y</b><c/></a>");
    EXPECT_FALSE(element.firstChild().appendElement("d", "z"));
}

TEST(MSPCXMLNode, anElementsOnlyTextIsReplacedInPlace) {
    for (const std::string_view text : {"x", "2012-01-05T08:00:00", "a < b"}) {
        const auto document = xmlDocument("<r><a n='1'>2012-01-02T08:00:00</a><b/></r>", MSPCXMLContent::DataOnly);
        auto element = document.root().firstChildElement("a");
        const auto piece = element.firstChild();
        std::string former = "before ";
        EXPECT_FALSE(element.replaceOnlyText("", &former));
        EXPECT_EQ(former, "before ");
        EXPECT_TRUE(element.replaceOnlyText(text, &former));
        EXPECT_EQ(former, "before 2012-01-02T08:00:00");
        EXPECT_EQ(element.stringValue(), text);
        EXPECT_EQ(element.firstChild(), piece);
        EXPECT_FALSE(piece.nextSibling());
        EXPECT_TRUE(element.replaceOnlyText("2012-01-02T08:00:00"));
        EXPECT_EQ(bodyOf(document), "<r><a n=\"1\">2012-01-02T08:00:00</a><b/></r>");
    }
}

TEST(MSPCXMLNode, onlyAnOnlyTextIsReplacedInPlace) {
    constexpr std::string_view markup = "<r><a>t<i/></a><b/><c><!--x-->t</c><d><![CDATA[t]]></d><?f t?></r>";
    auto document = xmlDocument(markup);
    for (auto child = document.root().firstChild(); child; child = child.nextSibling()) {
        EXPECT_FALSE(child.replaceOnlyText("new")) << child.name();
    }
    EXPECT_FALSE(MSPCXMLNode().replaceOnlyText("new"));
    EXPECT_EQ(bodyOf(document), markup);
}

TEST(MSPCXMLNode, elementsAndCommentsAreInsertedByPosition) {
    const auto document = xmlDocument("<a>t<b/></a>");
    auto element = document.root();
    element.insertElement("first", 0);
    element.insertElement("third", 2);
    element.insertElement("last", 100);
    element.insertComment("second", 1);
    element.appendElement("end").setStringValue("x");
    element.appendComment("tail");
    EXPECT_EQ(bodyOf(document), "<a><first/><!--second-->t<third/><b/><last/><end>x</end><!--tail--></a>");
}

TEST(MSPCXMLNode, aFreeElementHasNoSurroundings) {
    const auto document = xmlDocument("<!--head--><a><b/></a>");
    const auto first = document.root().newElement("free");
    auto second = document.root().newElement("other");
    second.node().appendElement("inside");
    EXPECT_FALSE(first.node().parent());
    EXPECT_FALSE(first.node().nextSibling() || first.node().previousSibling());
    EXPECT_FALSE(second.node().nextSibling() || second.node().previousSibling());
    EXPECT_FALSE(first.node().nextSiblingElement("other"));
    EXPECT_EQ(first.node().rootElement(), document.root());
    EXPECT_EQ(document.root().parent().firstChild().kind(), MSPCXMLNodeKind::Comment);
    EXPECT_FALSE(document.root().parent().firstChild().previousSibling());
    EXPECT_EQ(document.root().parent().lastChild(), document.root());
    EXPECT_EQ(document.root().name(), "a");
    EXPECT_EQ(document.root().parent().stringValue(), "");
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<!--head-->\n<a>\n    <b/>\n</a>\n");
}

TEST(MSPCXMLNode, aCommentGoesBeforeTheRootWhileFreeElementsExist) {
    const auto document = xmlDocument("<a/>");
    const auto free = document.root().newElement("free");
    document.root().parent().insertComment("head", 0);
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<!--head-->\n<a/>\n");
}

TEST(MSPCXMLNode, freeElementsGoBeforeAndAfterNeighbours) {
    const auto document = xmlDocument("<a><b/></a>");
    auto a = document.root();
    const auto b = a.firstChild();
    a.insertChildBefore(a.newElement("beforeB"), b);
    a.insertChildAfter(a.newElement("afterB"), b);
    a.insertChildAfter(a.newElement("first"), {});
    a.insertChildBefore(a.newElement("last"), {});
    const auto handle = a.appendChild(a.newElement("end"));
    EXPECT_EQ(handle, a.lastChild());
    EXPECT_EQ(bodyOf(document), "<a><first/><beforeB/><b/><afterB/><last/><end/></a>");
}

TEST(MSPCXMLNode, anElementThatCannotBePlacedStaysWithItsOwner) {
    const auto document = xmlDocument("<a><b/></a>");
    auto a = document.root();
    auto element = a.newElement("free");
    auto inside = element.node().appendElement("inside");
    EXPECT_FALSE(a.insertChildBefore(std::move(element), a));  // no child of a
    EXPECT_FALSE(a.insertChildAfter(std::move(element), a));
    EXPECT_FALSE(inside.appendChild(std::move(element)));  // into itself
    EXPECT_FALSE(MSPCXMLNode().appendChild(std::move(element)));
    EXPECT_FALSE(a.appendChild(MSPCXMLNewElement()));
    ASSERT_TRUE(element);
    EXPECT_EQ(element.node().markup(), "<free><inside/></free>");
    EXPECT_EQ(bodyOf(document), "<a><b/></a>");
}

TEST(MSPCXMLNode, aDetachedElementLivesOnAndGoesBack) {
    const auto document = xmlDocument("<a><b>1</b><c/></a>");
    auto a = document.root();
    auto b = a.firstChild();
    auto detached = b.detach();
    EXPECT_EQ(bodyOf(document), "<a><c/></a>");
    EXPECT_EQ(b.stringValue(), "1");
    EXPECT_FALSE(b.parent());
    EXPECT_FALSE(b.detach());
    EXPECT_FALSE(a.firstChildElement("b"));
    EXPECT_EQ(a.insertChildAfter(std::move(detached), {}), b);
    EXPECT_EQ(bodyOf(document), "<a><b>1</b><c/></a>");
}

TEST(MSPCXMLNode, anElementOfAnotherDocumentIsTakenInAsACopy) {
    const auto source = xmlDocument("<x/>");
    const auto target = xmlDocument("<a/>");
    auto element = source.root().newElement("b");
    element.node().setStringValue("text");
    const auto placed = target.root().appendChild(std::move(element));
    EXPECT_EQ(placed.rootElement(), target.root());
    EXPECT_EQ(bodyOf(target), "<a><b>text</b></a>");
}

TEST(MSPCXMLNode, aNewRootTakesTheFormerOnesPlace) {
    auto document = xmlDocument("<!--head--><a/><!--tail-->");
    const auto other = xmlDocument("<x/>");
    const auto root = document.setRoot(document.newElement("b"));
    EXPECT_EQ(root, document.root());
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<!--head-->\n<b/>\n<!--tail-->\n");
    document.setRoot(other.root().newCopyOf(other.root()));
    EXPECT_EQ(document.serialized(), XMLDeclaration + "<!--head-->\n<x/>\n<!--tail-->\n");
    EXPECT_FALSE(document.setRoot({}));
    EXPECT_FALSE(MSPCXMLDocument().root());
}

TEST(MSPCXMLNode, documentsMoveWithTheirHandles) {
    auto first = xmlDocument("<a><b/></a>");
    const auto root = first.root();
    auto free = first.newElement("free");
    MSPCXMLDocument second = std::move(first);
    EXPECT_EQ(second.root(), root);
    EXPECT_EQ(free.node().rootElement(), root);
    free = MSPCXMLNewElement();  // before the document goes
}

TEST(MSPCXMLNode, aMillionLevelsAreReadCopiedDetachedAndDestroyed) {
    constexpr std::size_t levels = 1'000'000;
    std::string text = "<r>";
    for (std::size_t level = 0; level < levels; ++level) {
        text += "<a>";
    }
    text += "x";
    for (std::size_t level = 0; level < levels; ++level) {
        text += "</a>";
    }
    text += "</r>";
    for (const auto content : {MSPCXMLContent::Everything, MSPCXMLContent::DataOnly}) {
        const auto document = xmlDocument(text, content);
        auto root = document.root();
        EXPECT_EQ(root.stringValue(), "x");
        EXPECT_EQ(root.markup(), text);
        { const auto copy = root.newCopyOf(root); }
        { const auto detached = root.firstChild().detach(); }
        EXPECT_EQ(root.markup(), "<r/>");
    }
}

}  // namespace
