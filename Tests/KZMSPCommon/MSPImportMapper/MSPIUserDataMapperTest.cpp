#include "MSPIUserDataMapper.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

// Custom fields: 1 has a name and an alias, 2 a name, 3 an alias, 4 neither, 5 an empty alias.
constexpr std::string_view definitions =
    "<ExtendedAttributes>"
    "<ExtendedAttribute><FieldID>1</FieldID><FieldName>Text1</FieldName><Alias>Region</Alias></ExtendedAttribute>"
    "<ExtendedAttribute><FieldID>2</FieldID><FieldName>Text2</FieldName></ExtendedAttribute>"
    "<ExtendedAttribute><FieldID>3</FieldID><Alias>Site</Alias></ExtendedAttribute>"
    "<ExtendedAttribute><FieldID>4</FieldID></ExtendedAttribute>"
    "<ExtendedAttribute><FieldID>5</FieldID><FieldName>Text5</FieldName><Alias/></ExtendedAttribute>"
    "</ExtendedAttributes>";

std::string attribute(const std::string& fieldID, const std::string& value) {
    return "<ExtendedAttribute><FieldID>" + fieldID + "</FieldID><Value>" + value + "</Value></ExtendedAttribute>";
}

// The entries as "name=value" lines; "name!" for the null value.
std::string summaryOf(const MSPIUserData& userData) {
    std::string summary;
    for (const auto& [name, value] : userData.entries()) {
        const auto* text = std::get_if<std::string>(&value);
        summary += name.value_or("(none)") + (text != nullptr ? "=" + *text : "!") + ";";
    }
    return summary;
}

std::string userDataOf(std::string_view projectContent, const std::string& taskContent, std::int64_t saveVersion = 9,
                       std::string_view zone = "Europe/Berlin") {
    MappingFixture fixture(std::string(projectContent) + "<Tasks><Task>" + taskContent + "</Task></Tasks>", zone);
    fixture.context.setMspSaveVersion(saveVersion);
    return summaryOf(userDataFromExtendedAttributes(*fixture.node("Tasks/Task").nodesForXPath("ExtendedAttribute"),
                                                    fixture.context));
}

TEST(MSPIExtendedAttributes, AreNamedByTheAliasOrElseTheFieldName) {
    EXPECT_EQ(userDataOf(definitions, attribute("1", "North")), "Region=North;");
    EXPECT_EQ(userDataOf(definitions, attribute("2", "North")), "Text2=North;");
    EXPECT_EQ(userDataOf(definitions, attribute("3", "North")), "Site=North;");
}

TEST(MSPIExtendedAttributes, KeepAnEmptyAliasAsTheirName) {
    EXPECT_EQ(userDataOf(definitions, attribute("5", "North")), "=North;");
}

TEST(MSPIExtendedAttributes, AreSkippedWithoutFieldIDDefinitionOrName) {
    EXPECT_EQ(userDataOf(definitions, "<ExtendedAttribute><Value>x</Value></ExtendedAttribute>"), "");
    EXPECT_EQ(userDataOf(definitions, attribute("99", "x")), "");
    EXPECT_EQ(userDataOf(definitions, attribute("4", "x")), "");
    EXPECT_EQ(userDataOf("", attribute("1", "x")), "");
    EXPECT_EQ(userDataOf(definitions, attribute("99", "x") + attribute("2", "y") + attribute("4", "z")), "Text2=y;");
}

TEST(MSPIExtendedAttributes, HaveTheNullValueWithoutValue) {
    EXPECT_EQ(userDataOf(definitions, "<ExtendedAttribute><FieldID>1</FieldID></ExtendedAttribute>"), "Region!;");
}

TEST(MSPIExtendedAttributes, KeepAnEmptyValue) {
    EXPECT_EQ(userDataOf(definitions, attribute("1", "")), "Region=;");
}

TEST(MSPIExtendedAttributes, KeepBlanksAndAllTextOfAValue) {
    EXPECT_EQ(userDataOf(definitions, attribute("1", " a<!--x--><![CDATA[<b>]]> ")), "Region= a<b> ;");
}

TEST(MSPIExtendedAttributes, TakeTheLastOfSeveralDefinitionsOfOneField) {
    EXPECT_EQ(userDataOf("<ExtendedAttributes>"
                         "<ExtendedAttribute><FieldID>1</FieldID><Alias>First</Alias></ExtendedAttribute>"
                         "<ExtendedAttribute><FieldID>2</FieldID><Alias>Other</Alias></ExtendedAttribute>"
                         "<ExtendedAttribute><FieldID>1</FieldID><Alias>Last</Alias></ExtendedAttribute>"
                         "</ExtendedAttributes>",
                         attribute("1", "x")),
              "Last=x;");
}

TEST(MSPIExtendedAttributes, CompareFieldIDsAsTexts) {
    EXPECT_EQ(userDataOf(definitions, attribute("01", "x")), "");
    EXPECT_EQ(userDataOf(definitions, attribute(" 1", "x")), "");
    EXPECT_EQ(userDataOf(definitions, attribute("1.0", "x")), "");
}

TEST(MSPIExtendedAttributes, FindFieldIDsThatHoldQuotesButNoApostrophes) {
    constexpr std::string_view quotedDefinitions =
        "<ExtendedAttributes>"
        "<ExtendedAttribute><FieldID>a\"c</FieldID><Alias>Quoted</Alias></ExtendedAttribute>"
        "<ExtendedAttribute><FieldID>a'c</FieldID><Alias>Apostrophe</Alias></ExtendedAttribute>"
        "<ExtendedAttribute><FieldID>a' or '1'='1</FieldID><Alias>All</Alias></ExtendedAttribute>"
        "</ExtendedAttributes>";
    EXPECT_EQ(userDataOf(quotedDefinitions, attribute("a\"c", "x")), "Quoted=x;");
    EXPECT_EQ(userDataOf(quotedDefinitions, attribute("a'c", "x")), "");
    EXPECT_EQ(userDataOf(quotedDefinitions, attribute("a' or '1'='1", "x")), "");
}

TEST(MSPIExtendedAttributes, ReplaceAnEarlierValueOfTheSameName) {
    EXPECT_EQ(userDataOf(definitions, attribute("1", "a") + attribute("2", "b") + attribute("1", "c")),
              "Region=c;Text2=b;");
    // Two fields of one name are one.
    EXPECT_EQ(userDataOf("<ExtendedAttributes>"
                         "<ExtendedAttribute><FieldID>1</FieldID><Alias>Same</Alias></ExtendedAttribute>"
                         "<ExtendedAttribute><FieldID>2</FieldID><Alias>Same</Alias></ExtendedAttribute>"
                         "</ExtendedAttributes>",
                         attribute("1", "a") + "<ExtendedAttribute><FieldID>2</FieldID></ExtendedAttribute>"),
              "Same!;");
}

TEST(MSPIExtendedAttributes, AppearInTheOrderOfTheirFirstAppearance) {
    EXPECT_EQ(userDataOf(definitions, attribute("3", "z") + attribute("1", "y") + attribute("2", "x")),
              "Site=z;Region=y;Text2=x;");
}

std::string definitionWithCFType(const std::string& type) {
    return "<ExtendedAttributes><ExtendedAttribute><FieldID>1</FieldID>" + type +
           "<Alias>V</Alias></ExtendedAttribute></ExtendedAttributes>";
}

TEST(MSPIExtendedAttributes, TakeAPhoneNumberForADate) {
    // Year 555, month 123, day 4567: 4,566 days after 1 March 565.
    const auto shown = userDataOf(definitionWithCFType(""), attribute("1", "555-123-4567"), 14);
    EXPECT_TRUE(shown.starts_with("V=0577-08-3")) << shown;
    EXPECT_EQ(userDataOf(definitionWithCFType("<CFType>4</CFType>"), attribute("1", "555-123-4567"), 14),
              "V=555-123-4567;");
}

TEST(MSPIExtendedAttributes, ShowDatesOfFilesFrom2007OnInTheirDisplayForm) {
    struct Case {
        std::string value;
        std::string shown;
    };
    const Case cases[] = {
        {"2012-03-05T08:00:00", "2012-03-05 08:00:00 +0100"},  // winter in Berlin
        {"2012-07-05T08:00:00", "2012-07-05 08:00:00 +0200"},  // summer
        {"2012-01-01T00:30:00", "2012-01-01 00:30:00 +0100"},
        {"2012-03-05", "2012-03-05 00:00:00 +0100"},
        {"2012-03-05T08:00:00Z", "2012-03-05T08:00:00Z"},  // a zone makes it no MSPDI date
        {"2012-03-05T08:00:00+01:00", "2012-03-05T08:00:00+01:00"},
        {"2012-03-05 08:00:00", "2012-03-05 08:00:00"},  // no "T"
        {"08:30:00", "08:30:00"},                        // a time alone has no display form
        {"PT8H0M0S", "PT8H0M0S"},
        {"North", "North"},
        {"12", "12"},
        {"", ""},
        {"-", "-"},
    };
    for (const auto& [value, shown] : cases) {
        EXPECT_EQ(userDataOf(definitionWithCFType(""), attribute("1", value), 12), "V=" + shown + ";") << value;
        EXPECT_EQ(userDataOf(definitionWithCFType(""), attribute("1", value), 14), "V=" + shown + ";") << value;
        EXPECT_EQ(userDataOf(definitionWithCFType(""), attribute("1", value), 11), "V=" + value + ";") << value;
        EXPECT_EQ(userDataOf(definitionWithCFType("<CFType>4</CFType>"), attribute("1", value), 12), "V=" + value + ";")
            << value;
    }
}

TEST(MSPIExtendedAttributes, TakeADateForWallClockTimeOfTheMachine) {
    EXPECT_EQ(userDataOf(definitionWithCFType(""), attribute("1", "2012-07-05T08:00:00"), 12, "America/New_York"),
              "V=2012-07-05 08:00:00 -0400;");
}

TEST(MSPIExtendedAttributes, TakeATypeGivenTwiceForNone) {
    EXPECT_EQ(userDataOf(definitionWithCFType("<CFType>4</CFType><CFType>4</CFType>"),
                         attribute("1", "2012-03-05T08:00:00"), 12),
              "V=2012-03-05 08:00:00 +0100;");
}

TEST(MSPIExtendedAttributes, RaiseForATypeThatIsNoNumber) {
    EXPECT_RAISES(userDataOf(definitionWithCFType("<CFType>text</CFType>"), attribute("1", "x"), 12),
                  MSPCInternalInconsistency, "Failed to get int value from XML node: <CFType>text</CFType>");
    EXPECT_EQ(userDataOf(definitionWithCFType("<CFType>text</CFType>"), attribute("1", "x"), 11), "V=x;");
}

TEST(MSPIExtendedAttributes, HaveTheNullValueWhateverTheVersion) {
    EXPECT_EQ(userDataOf(definitionWithCFType(""), "<ExtendedAttribute><FieldID>1</FieldID></ExtendedAttribute>", 14),
              "V!;");
}

// A mapper with its recorded elements and the document that owns them.
struct UserDataMapperFixture {
    MSPCXMLDocument document;
    MSPIUserDataTOCElements elements;
    MSPIUserDataMapper mapper{elements, document};

    std::string recorded(const std::optional<std::string>& tag) {
        const auto found = elements.find(tag);
        return found == elements.end() ? "(nothing)" : markupOf(std::move(found->second));
    }
};

TEST(MSPIUserDataMapper, WritesKeysAndValues) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set("Region", "a & b");
    userData.set("Empty", "");
    EXPECT_EQ(markupOf(fixture.mapper.newUserDataFromDictionary(userData)),
              "<user-data><key>Region</key><string>a &amp; b</string><key>Empty</key><string/></user-data>");
}

TEST(MSPIUserDataMapper, LeavesNullValuesOut) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set("A", MSPINullValue{});
    userData.set("B", "b");
    EXPECT_EQ(markupOf(fixture.mapper.newUserDataFromDictionary(userData)),
              "<user-data><key>B</key><string>b</string></user-data>");
}

TEST(MSPIUserDataMapper, WritesNothingWithoutAnyValue) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    EXPECT_FALSE(fixture.mapper.newUserDataFromDictionary(userData));
    userData.set("A", MSPINullValue{});
    EXPECT_FALSE(fixture.mapper.newUserDataFromDictionary(userData));
}

TEST(MSPIUserDataMapper, RefusesAValueThatIsNeitherTextNorNull) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set("A", MSPIUserDataValue());
    EXPECT_RAISES(fixture.mapper.newUserDataFromDictionary(userData), MSPCInternalInconsistency,
                  "Unexpected value in MSPDI Extended Attributes dictionary.");
}

TEST(MSPIUserDataMapper, RecordsTheKeysUnderATag) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set("Region", "North");
    userData.set("Site", MSPINullValue{});
    EXPECT_TRUE(fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, userData));
    EXPECT_EQ(fixture.elements.size(), 1U);
    EXPECT_EQ(fixture.recorded("task-user-data-keys"),
              "<user-data><key>Region</key><null/><key>Site</key><null/></user-data>");
}

TEST(MSPIUserDataMapper, RecordsTheValuesWithoutATag) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set("Region", "North");
    userData.set("Site", MSPINullValue{});
    EXPECT_TRUE(fixture.mapper.setUserDataTOCElementsForTagFromDictionary(std::nullopt, userData));
    EXPECT_EQ(fixture.recorded(std::nullopt),
              "<user-data><key>Region</key><string>North</string><key>Site</key><null/></user-data>");
}

TEST(MSPIUserDataMapper, ReplacesWhatWasRecordedUnderTheSameTag) {
    UserDataMapperFixture fixture;
    MSPIUserData first;
    first.set("A", "1");
    MSPIUserData second;
    second.set("B", "2");
    fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, first);
    fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPIResourceUserDataKeysTag, first);
    fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, second);
    EXPECT_EQ(fixture.recorded("task-user-data-keys"), "<user-data><key>B</key><null/></user-data>");
    EXPECT_EQ(fixture.recorded("resource-user-data-keys"), "<user-data><key>A</key><null/></user-data>");
}

// Tasks one after the other; what is recorded is that of the last one.
class TasksWithFields {
public:
    TasksWithFields() : fixture(definitions) {}

    std::string markupAfter(const std::string& attributes) {
        _tasks.push_back(documentFromXML("<Task>" + attributes + "</Task>"));
        auto task = fixture.context.newElement("task");
        EXPECT_TRUE(addUserDataOfExtendedAttributesToElement(*_tasks.back().root().nodesForXPath("ExtendedAttribute"),
                                                             task.node(), MSPITaskUserDataKeysTag, elements,
                                                             fixture.context));
        return markupOf(std::move(task));
    }
    std::string recorded() {
        const auto copy = elements.at("task-user-data-keys").node();
        return markupOf(copy.newCopyOf(copy));
    }

    MappingFixture fixture;
    MSPIUserDataTOCElements elements;

private:
    std::vector<MSPCXMLDocument> _tasks;
};

TEST(MSPIUserDataOfTasks, RecordsTheKeysOfTheLastTaskWhicheverItsFields) {
    TasksWithFields tasks;
    const auto noValue = [](const std::string& id) {
        return "<ExtendedAttribute><FieldID>" + id + "</FieldID></ExtendedAttribute>";
    };
    EXPECT_EQ(tasks.markupAfter(attribute("1", "a") + noValue("2")),
              "<task><user-data><key>Region</key><string>a</string></user-data></task>");
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Region</key><null/><key>Text2</key><null/></user-data>");
    EXPECT_EQ(tasks.markupAfter(noValue("1") + attribute("2", "b")),
              "<task><user-data><key>Text2</key><string>b</string></user-data></task>");
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Region</key><null/><key>Text2</key><null/></user-data>");
    EXPECT_EQ(tasks.markupAfter(noValue("2") + noValue("1")), "<task/>");
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Text2</key><null/><key>Region</key><null/></user-data>");
    EXPECT_EQ(tasks.markupAfter(noValue("3")), "<task/>");
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Site</key><null/></user-data>");
    EXPECT_EQ(tasks.markupAfter(noValue("3")), "<task/>");
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Site</key><null/></user-data>");
}

TEST(MSPIUserDataOfTasks, RecordsWhatIsRecordedElsewhereAnew) {
    TasksWithFields tasks;
    EXPECT_EQ(tasks.markupAfter(attribute("1", "a")),
              "<task><user-data><key>Region</key><string>a</string></user-data></task>");
    MSPIUserData other;
    other.set("Other", "x");
    MSPIUserDataMapper(tasks.elements, tasks.fixture.context.kdzxDocument())
        .setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, other);
    static_cast<void>(tasks.markupAfter(attribute("1", "b")));
    EXPECT_EQ(tasks.recorded(), "<user-data><key>Region</key><null/></user-data>");
}

TEST(MSPIUserDataOfTasks, OfTwoFieldsOfOneNameTheLastValueCounts) {
    TasksWithFields tasks;
    tasks.fixture.node("ExtendedAttributes/ExtendedAttribute[FieldID=2]/FieldName").setStringValue("Region");
    EXPECT_EQ(
        tasks.markupAfter(attribute("1", "a") + attribute("3", "s") + attribute("2", "b")),
        "<task><user-data><key>Region</key><string>b</string><key>Site</key><string>s</string></user-data></task>");
}

// Thousands of values may refer to one definition.
TEST(MSPIUserDataOfTasks, ADefinitionIsReadOnce) {
    TasksWithFields tasks;
    static_cast<void>(tasks.markupAfter(attribute("1", "a")));
    tasks.fixture.node("ExtendedAttributes/ExtendedAttribute[FieldID=1]/Alias").setStringValue("Changed");
    EXPECT_EQ(tasks.markupAfter(attribute("1", "b")),
              "<task><user-data><key>Region</key><string>b</string></user-data></task>");
}

TEST(MSPIUserDataMapper, RecordsNothingWithoutKeys) {
    UserDataMapperFixture fixture;
    EXPECT_FALSE(fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, MSPIUserData()));
    EXPECT_TRUE(fixture.elements.empty());
}

TEST(MSPIUserDataMapper, RefusesAKeyThatIsNoText) {
    UserDataMapperFixture fixture;
    MSPIUserData userData;
    userData.set(std::nullopt, "x");
    EXPECT_RAISES(fixture.mapper.setUserDataTOCElementsForTagFromDictionary(MSPITaskUserDataKeysTag, userData),
                  MSPCInternalInconsistency, "Expected NSString as a key in extended attributes dictionary.");
    EXPECT_TRUE(fixture.elements.empty());
}

// What a task with that content becomes, and what is recorded of it.
struct MappedTask {
    bool hasKeys = false;
    std::string element;
    std::string recorded;
};

MappedTask mappedTask(const std::string& taskContent) {
    MappingFixture fixture(std::string(definitions) + "<Tasks><Task>" + taskContent + "</Task></Tasks>");
    MSPIUserDataTOCElements elements;
    MappedTask mapped;
    auto element = fixture.context.newElement("task");
    const auto attributes = fixture.node("Tasks/Task").nodesForXPath("ExtendedAttribute");
    mapped.hasKeys = addUserDataOfExtendedAttributesToElement(attributes.value(), element.node(),
                                                              MSPITaskUserDataKeysTag, elements, fixture.context);
    mapped.element = markupOf(std::move(element));
    if (!elements.empty()) {
        EXPECT_EQ(elements.begin()->first, "task-user-data-keys");
        mapped.recorded = markupOf(std::move(elements.begin()->second));
    }
    return mapped;
}

TEST(MSPIUserDataMapper, AppendsUserDataToATaskAndRecordsItsKeys) {
    const auto mapped = mappedTask(attribute("1", "North") + attribute("2", "x"));
    EXPECT_TRUE(mapped.hasKeys);
    EXPECT_EQ(mapped.element,
              "<task><user-data><key>Region</key><string>North</string><key>Text2</key><string>x</string></user-data>"
              "</task>");
    EXPECT_EQ(mapped.recorded, "<user-data><key>Region</key><null/><key>Text2</key><null/></user-data>");
}

TEST(MSPIUserDataMapper, RecordsTheKeyOfATaskWhoseOnlyFieldHasNoValue) {
    const auto mapped = mappedTask("<ExtendedAttribute><FieldID>1</FieldID></ExtendedAttribute>");
    EXPECT_TRUE(mapped.hasKeys);
    EXPECT_EQ(mapped.element, "<task/>");
    EXPECT_EQ(mapped.recorded, "<user-data><key>Region</key><null/></user-data>");
}

TEST(MSPIUserDataMapper, LeavesATaskWithoutKnownFieldsAlone) {
    for (const auto& content : {std::string(), attribute("99", "x"), std::string("<Name>n</Name>")}) {
        const auto mapped = mappedTask(content);
        EXPECT_FALSE(mapped.hasKeys) << content;
        EXPECT_EQ(mapped.element, "<task/>") << content;
        EXPECT_EQ(mapped.recorded, "") << content;
    }
}

}  // namespace
