// A list file, gone through by a whole run in which every import succeeds.

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "MSPCException.h"
#include "MSPDIImportRunner.h"
#include "MSPDIInputList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const CountedSteps steps;
    FuzzWorld world;
    world.fileSystem.addFile("/home/me/list.txt", std::string(textOf(bytes, size)));
    world.fileSystem.addFile("/home/me/Plan.xml", "<Project/>");
    world.fileSystem.addFolder("/share/Empty.kdzx");
    std::size_t entries = 0;
    try {
        for (const auto& line : MSPDIReadInputList("/home/me/list.txt", world.fileSystem)) {
            require(line.find_first_of("\r\n") == std::string::npos, "a line holds no line end");
            entries += MSPDIIsInputEntry(line) ? 1U : 0U;
        }
    } catch (const FileNotFoundException&) {
        entries = 0;
    }
    std::size_t imports = 0;
    const auto importFile = [&imports](const MSPIImportInfo&, const MSPCServices&, const MSPCURL& source,
                                       const MSPCURL& destination) {
        require(source.path() == "/home/me/Plan.xml", "only the file that exists is imported");
        require(destination.path() == "/home/me/Plan.kdzx", "the bundle is named after its file");
        ++imports;
        return true;
    };
    const auto status =
        MSPDIImportRunner(world.services, importFile)
            .run({"MSPDIImport", "--template-path", "/share/Empty.kdzx", "--input-list", "/home/me/list.txt"});
    require(imports <= entries, "nothing is imported that no line names");
    require(status == (imports > 0 ? 0 : 1), "the status tells of the last import");
    requireStepsThatGrowWith(size, steps.count(), {50'000, 1'000});
    return 0;
}
