#include "ImportWork.h"

#include <fstream>
#include <iterator>
#include <utility>

#include "FuzzWorld.h"
#include "MSPDIAccountOfPlan.h"
#include "MSPIXMLImporter.h"

namespace {

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

ImportWork workOfImporting(std::string plan) {
    FuzzWorld world;
    for (const std::string name : {"Actual.xml", "__TOC.xml"}) {
        world.fileSystem.addFile("/share/Empty.kdzx/" + name, contentsOf(KZMSP_TEMPLATE "/" + name));
    }
    world.fileSystem.addFile("/home/me/Plan.xml", std::move(plan));
    MSPIImportInfo info;
    info.mspdiProjectName = "Plan";
    info.kdzxTemplateURL = MSPCURL::fileURL("/share/Empty.kdzx", true);
    const auto before = countedWork();
    const bool succeeded = MSPIXMLImporter(info, world.services)
                               .importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL("/home/me/Plan.xml", false),
                                                                  MSPCURL::fileURL("/home/me/Plan.kdzx", true));
    const auto after = countedWork();
    return {{after.steps - before.steps, after.bytes - before.bytes}, succeeded};
}

ImportWork workOfTellingLosses(std::string plan) {
    FuzzWorld world;
    world.fileSystem.addFile("/home/me/Plan.xml", std::move(plan));
    const auto before = countedWork();
    const auto account = MSPDIAccountOfPlan("/home/me/Plan.xml", world.services);
    const auto after = countedWork();
    return {{after.steps - before.steps, after.bytes - before.bytes}, !account.obstacle};
}
