// A document: its table of contents, a zero byte, its scenario. An empty one of the two stands for the delivered one.
// What is found in it must name a file and say something, and looking takes steps that grow with its bytes.

#include "CountedSteps.h"
#include "FuzzWorld.h"
#include "KZDXCheck.h"
#include "MSPDIEmptyDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    InputReader reader(textOf(bytes, size));
    std::map<std::string, std::string> files;
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        files[std::string(name)] = content;
    }
    if (const auto contents = reader.upTo('\0'); !contents.empty()) {
        files["__TOC.xml"] = contents;
    }
    if (!reader.rest().empty()) {
        files["Actual.xml"] = reader.rest();
    }
    const auto inMemory = KZDXFilesInMemory(std::move(files));
    const CountedSteps steps;
    const auto check = KZDXCheckBundle(*inMemory);
    requireStepsThatGrowWith(size, steps.count(), {100'000, 200});
    require(!check.obstacle, "what is there can be looked at");
    for (const auto& finding : check.findings) {
        require(!finding.file.empty() && !finding.text.empty() && finding.line >= 0, "a finding says what and where");
    }
    return 0;
}
