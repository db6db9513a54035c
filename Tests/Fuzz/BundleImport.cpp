#include "BundleImport.h"

#include <fstream>
#include <iterator>
#include <map>

#include "CountedSteps.h"
#include "DocumentSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPCXMLDocument.h"
#include "MSPIBundleNaming.h"
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

// It is broken markup, which is mended, that takes most for each byte that is read.
void requireFewSteps(const BundleImportInput& input, std::size_t bytesWritten, std::uint64_t steps) {
    constexpr std::uint64_t ofByteWritten = 40;
    StepBound bound{200'000 + ofByteWritten * bytesWritten, 150};
    std::size_t bytesRead = 0;
    for (const auto& document : {input.plan, input.actual, input.toc}) {
        const auto more = stepsBeyondBytes(document);
        if (!more) {
            return;
        }
        bound.ofAny += *more;
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
    const auto mapAndRemember = [&mapped, &mapScenario](MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate,
                                                        MSPCXMLDocument& toc, const MSPIImportInfo& info,
                                                        const MSPCServices& services) {
        auto scenario = mapScenario(plan, kdzxTemplate, toc, info, services);
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
