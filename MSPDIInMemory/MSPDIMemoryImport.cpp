#include "MSPDIMemoryImport.h"

#include <algorithm>
#include <utility>

#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPDIEmptyDocument.h"

namespace {

// Keeps of an import's log what nothing else tells: why it failed, and what it warned of.
class VerdictLog final : public MSPCLog {
public:
    explicit VerdictLog(MSPDIMemoryImport& result) : _result(result) {}

protected:
    void write(std::string_view message) override {
        constexpr std::string_view failure = "Exception: ";
        constexpr std::string_view warning = "WARNING: ";
        if (message.starts_with(warning)) {
            _result.warnings.emplace_back(message.substr(warning.size()));
        } else if (message.starts_with(failure)) {
            _result.refusal = refusalOf(message.substr(failure.size()));
        }
    }

private:
    // "<name>\n<reason>\n<subject>": values in it have no line ends.
    static MSPDIRefusal refusalOf(std::string_view text) {
        const auto nameEnd = std::min(text.find('\n'), text.size());
        const auto rest = text.substr(std::min(nameEnd + 1, text.size()));
        const auto reasonEnd = std::min(rest.rfind('\n'), rest.size());
        return {std::string(text.substr(0, nameEnd)), std::string(rest.substr(0, reasonEnd)),
                std::string(rest.substr(std::min(reasonEnd + 1, rest.size())))};
    }

    MSPDIMemoryImport& _result;
};

std::string inMemory(std::string_view name) {
    return pathByAppendingComponent(MSPDIMemoryFileSystem::Folder, name);
}

MSPDIMemoryImport importWith(MSPDIMemoryFileSystem& fileSystem, const std::string& planPath,
                             const MSPCServices& services, MSPIScenarioMapping mapScenario) {
    const auto templateFolder = inMemory("Empty.kdzx");
    const auto bundle = inMemory("Plan.kdzx");
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        fileSystem.addFile(pathByAppendingComponent(templateFolder, name), std::string(content));
    }
    MSPIImportInfo info;
    info.mspdiProjectName = pathByDeletingExtension(lastPathComponent(planPath));
    info.kdzxTemplateURL = MSPCURL::fileURL(templateFolder, true);

    MSPDIMemoryImport result;
    VerdictLog log(result);
    const MSPCServices ofImport{services.clock,        services.timeZone, log, services.userDefaults, fileSystem,
                                services.randomSource, MSPCNoProgress()};
    MSPIXMLImporter importer(std::move(info), ofImport, std::move(mapScenario));
    const bool isImported =
        importer.importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL(planPath, false), MSPCURL::fileURL(bundle, true));
    if (isImported) {
        result.bundle = fileSystem.takeFilesBelow(bundle);
    } else if (!result.refusal) {
        result.refusal = MSPDIRefusal{};
    }
    return result;
}

}  // namespace

std::string MSPDIRefusal::sentence() const {
    auto text = reason.empty() ? std::string("The importer gives no reason.") : reason;
    std::replace(text.begin(), text.end(), '\n', ' ');
    if (subject.empty()) {
        return text;
    }
    const bool hasStop = text.ends_with('.');
    text.resize(text.size() - (hasStop ? 1 : 0));
    return text + " (" + subject + ")" + (hasStop ? "." : "");
}

MSPDIMemoryImport MSPDIImportInMemory(const std::string& planPath, const MSPCServices& services,
                                      MSPDIMemoryKeeping keeping, MSPIScenarioMapping mapScenario) {
    MSPDIMemoryFileSystem fileSystem(services.fileSystem, keeping);
    return importWith(fileSystem, planPath, services, std::move(mapScenario));
}

MSPDIMemoryImport MSPDIImportBytesInMemory(std::string_view name, std::string bytes, const MSPCServices& services,
                                           MSPDIMemoryKeeping keeping, MSPIScenarioMapping mapScenario) {
    MSPDIMemoryFileSystem fileSystem(services.fileSystem, keeping);
    // Whatever the file is called, it is taken for a plan.
    const auto path = inMemory("Plan/" + pathByDeletingExtension(lastPathComponent(name)) + ".xml");
    fileSystem.addFile(path, std::move(bytes));
    return importWith(fileSystem, path, services, std::move(mapScenario));
}
