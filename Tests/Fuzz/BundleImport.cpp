#include "BundleImport.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCXMLDocument.h"
#include "MSPIBundleNaming.h"
#include "MSPIXMLImporter.h"
#include "WrittenTexts.h"

namespace {

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    require(file.is_open(), "the template can be read: " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string Template = "/share/Empty.kdzx";
const std::string Plan = "/home/me/Plan.xml";
const std::string Bundle = "/home/me/Plan.kdzx";

void requireSameTexts(const std::string& name, const WrittenTexts& texts, const std::string& bytes) {
    const auto reading = textsOfStrictReading(bytes);
    if (!reading) {
        return;
    }
    const auto& written = *reading;
    for (std::size_t i = 0; i < texts.size() && i < written.size(); ++i) {
        require(texts[i] == written[i], name + " reads back '" + texts[i] + "', not '" + written[i] + "'");
    }
    require(texts.size() == written.size(), name + " reads back as many elements, attributes and texts");
}

// The declarations of a document type multiply what stands in the document; how far they may is the importer's to
// bound.
bool multiplies(std::string text) {
    std::erase(text, '\0');  // whatever the width of its characters
    return text.find("<!ENTITY") != std::string::npos || text.find("<!ATTLIST") != std::string::npos;
}

// About as many as the tag of a document that has the most attributes, or even more.
std::size_t mostAttributesOfATag(std::string_view text) {
    std::size_t most = 0;
    std::size_t count = 0;
    for (const char character : text) {
        count = character == '<' ? 0 : count + (character == '=' ? 1U : 0U);
        most = std::max(most, count);
    }
    return most;
}

// libxml2 compares the attributes of a tag two by two, which is why it is never given one with more than a thousand.
std::uint64_t stepsForAttributes(std::string_view document) {
    constexpr std::uint64_t stepsOfPair = 8;
    const auto count = std::min<std::size_t>(mostAttributesOfATag(document), 1'000);
    return stepsOfPair * count * count;
}

// It is broken markup, which is mended, that takes most for each byte that is read.
void requireFewSteps(const BundleImportInput& input, std::size_t bytesWritten, std::uint64_t steps) {
    constexpr std::uint64_t ofByteWritten = 40;
    StepBound bound{200'000 + ofByteWritten * bytesWritten, 150};
    std::size_t bytesRead = 0;
    for (const auto& document : {input.plan, input.actual, input.toc}) {
        if (multiplies(document)) {
            return;
        }
        bound.ofAny += stepsForAttributes(document);
        bytesRead += document.size();
    }
    requireStepsThatGrowWith(bytesRead, steps, bound);
}

}  // namespace

const BundleImportInput& emptyTemplate() {
    static const BundleImportInput documents{
        {}, contentsOf(KZMSP_TEMPLATE "/Actual.xml"), contentsOf(KZMSP_TEMPLATE "/__TOC.xml")};
    return documents;
}

void importIntoBundle(const BundleImportInput& input, const MSPIScenarioMapping& mapScenario) {
    FuzzWorld world;
    world.fileSystem.addFile(Template + "/Actual.xml", input.actual);
    world.fileSystem.addFile(Template + "/__TOC.xml", input.toc);
    world.fileSystem.addFile(Plan, input.plan);

    std::map<std::string, WrittenTexts> mapped;
    const auto mapAndRemember = [&mapped, &mapScenario](MSPCXMLDocument& mspdi, const MSPCXMLDocument& kdzxTemplate,
                                                        MSPCXMLDocument& toc, const MSPIImportInfo& info,
                                                        const MSPCServices& services) {
        auto scenario = mapScenario(mspdi, kdzxTemplate, toc, info, services);
        if (scenario) {
            mapped[MSPIScenarioFileName(*info.kdzxScenarioName)] = textsOf(*scenario);
        }
        // A baseline that the plan has nothing of changes nothing.
        if (scenario || !info.mspdiBaselineNumber) {
            mapped[std::string(MSPITOCFileName)] = textsOf(toc);
        }
        return scenario;
    };
    MSPIImportInfo info;
    info.mspdiProjectName = "Plan";
    info.kdzxTemplateURL = MSPCURL::fileURL(Template, true);
    const CountedSteps steps;
    const bool isComplete =
        MSPIXMLImporter(info, world.services, mapAndRemember)
            .importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL(Plan, false), MSPCURL::fileURL(Bundle, true));
    const auto stepsOfImport = steps.count();
    auto bytesWritten = world.log.characters();
    for (const auto& [name, texts] : mapped) {
        const auto bytes = world.fileSystem.contents(Bundle + "/" + name);
        bytesWritten += bytes.size();
        if (name == MSPITOCFileName && !isComplete) {
            require(bytes == input.toc, "a failed import leaves the table of contents alone");
        } else {
            requireSameTexts(name, texts, bytes);
        }
    }
    if (!mapped.contains(std::string(MSPIActualScenarioFileName))) {
        require(!isComplete, "an import that succeeds has mapped the plan itself");
        require(world.fileSystem.contents(Bundle + "/Actual.xml") == input.actual, "what is not mapped is not written");
    }
    requireFewSteps(input, bytesWritten, stepsOfImport);
}
