#include "BundleImport.h"

#include <fstream>
#include <iterator>
#include <map>

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
    const auto written = textsOfStrictReading(bytes);
    for (std::size_t i = 0; i < texts.size() && i < written.size(); ++i) {
        require(texts[i] == written[i], name + " reads back '" + texts[i] + "', not '" + written[i] + "'");
    }
    require(texts.size() == written.size(), name + " reads back as many elements, attributes and texts");
}

}  // namespace

const BundleImportInput& emptyTemplate() {
    static const BundleImportInput documents{
        {}, contentsOf(KZMSP_TEMPLATE "/Actual.xml"), contentsOf(KZMSP_TEMPLATE "/__TOC.xml")};
    return documents;
}

void importIntoBundle(const BundleImportInput& input) {
    FuzzWorld world;
    world.fileSystem.addFile(Template + "/Actual.xml", input.actual);
    world.fileSystem.addFile(Template + "/__TOC.xml", input.toc);
    world.fileSystem.addFile(Plan, input.plan);

    std::map<std::string, WrittenTexts> mapped;
    const auto mapAndRemember = [&mapped](MSPCXMLDocument& mspdi, const MSPCXMLDocument& kdzxTemplate,
                                          MSPCXMLDocument& toc, const MSPIImportInfo& info,
                                          const MSPCServices& services) {
        auto scenario = MSPIMapScenario(mspdi, kdzxTemplate, toc, info, services);
        if (scenario) {
            mapped[MSPIScenarioFileName(*info.kdzxScenarioName)] = textsOf(*scenario);
        }
        mapped[std::string(MSPITOCFileName)] = textsOf(toc);
        return scenario;
    };
    MSPIImportInfo info;
    info.mspdiProjectName = "Plan";
    info.kdzxTemplateURL = MSPCURL::fileURL(Template, true);
    const bool isComplete =
        MSPIXMLImporter(info, world.services, mapAndRemember)
            .importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL(Plan, false), MSPCURL::fileURL(Bundle, true));
    for (const auto& [name, texts] : mapped) {
        const auto bytes = world.fileSystem.contents(Bundle + "/" + name);
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
}
