#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "ListedRandomSource.h"
#include "MSPCExtensions.h"
#include "MSPCServices.h"
#include "MSPCURL.h"
#include "MSPCXMLLoader.h"
#include "MSPIElementsRead.h"
#include "MSPIMappingContext.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"
#include "RecordingProgress.h"

// The outside world of a mapper test: Europe/Berlin at noon of 2012-01-10 (winter), an empty disk, no random numbers.
class MappingServices {
public:
    explicit MappingServices(std::string_view zone = "Europe/Berlin")
        : services{clock, *MSPCTimeZone::named(zone), log, userDefaults, fileSystem, randomSource, progress} {}

    FixedClock clock{MSPCInstant{1326193200}};  // 2012-01-10T11:00:00Z
    RecordingLog log;
    MapUserDefaults userDefaults;
    InMemoryFileSystem fileSystem;
    ListedRandomSource randomSource{};
    RecordingProgress progress;
    MSPCServices services;
};

// A document from a snippet; the test fails when the snippet is no XML.
inline MSPCXMLDocument documentFromXML(std::string_view xml, MSPCXMLContent content = MSPCXMLContent::DataOnly) {
    auto document = MSPCXMLDocument::read(std::string(xml), {.content = content});
    if (!document) {
        ADD_FAILURE() << "not XML: " << xml;
        return {};
    }
    return std::move(*document);
}

// What plans are loaded with: the elements that an import reads. elements-read-test names others in the environment, to
// show for each of them that a test misses it.
inline const MSPCXMLSelection& elementsRead() {
    static const char* const named = std::getenv("KZMSP_ELEMENTS_READ");
    static const auto others = MSPCXMLSelection::fromText(named != nullptr ? named : "");
    return named != nullptr ? others : MSPIElementsRead();
}

// An MSPDI document, loaded as by an import: it lacks what no import reads. `projectContent` is what stands between the
// tags of `Project`.
inline MSPCXMLLoaded planFromXML(std::string_view projectContent) {
    constexpr const char* path = "/Plan.xml";
    InMemoryFileSystem disk;
    disk.addFile(
        path, "<Project xmlns=\"http://schemas.microsoft.com/project\">" + std::string(projectContent) + "</Project>");
    RecordingLog log;  // repairs would stand there
    return newXmlDocFromUrlSelection(MSPCURL::fileURL(path, false), elementsRead(), disk, log);
}

// An MSPDI plan and the context of its mapping.
class MappingFixture : public MappingServices {
public:
    // `projectContent` is what stands between the tags of `Project`.
    explicit MappingFixture(std::string_view projectContent, std::string_view zone = "Europe/Berlin")
        : MappingServices(zone), plan(planFromXML(projectContent)), context(plan, services) {}

    // The only child element at a path below `Project`.
    [[nodiscard]] MSPCXMLNode node(std::string_view path) {
        const auto nodes = plan.root().nodesForXPath(path);
        EXPECT_TRUE(nodes && nodes->size() == 1) << path;
        return nodes && !nodes->empty() ? nodes->front() : MSPCXMLNode();
    }

    MSPIPlan plan;
    MSPIMappingContext context;
};

// The markup of a document on one line, without its XML declaration and indentation.
inline std::string markupOf(const MSPCXMLDocument& document) {
    std::string markup;
    const auto text = document.serialized();
    for (std::size_t at = text.find("?>\n") + 3; at < text.size();) {
        const auto lineEnd = std::min(text.find('\n', at), text.size());
        const auto start = std::min(text.find_first_not_of(' ', at), lineEnd);
        markup.append(text, start, lineEnd - start);
        at = lineEnd + 1;
    }
    return markup;
}

// The same of a free element.
inline std::string markupOf(MSPCXMLNewElement&& element) {
    MSPCXMLDocument document;
    document.setRoot(std::move(element));
    return markupOf(document);
}
