#include "MSPDIPlanImporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCPath.h"
#include "MSPDIAccountOfImport.h"
#include "MSPDICutOff.h"
#include "MSPDIDocumentAround.h"
#include "MSPDIEmptyDocument.h"
#include "MSPDIImportDestination.h"
#include "MSPDIImportFileSystem.h"
#include "MSPDIInWords.h"
#include "MSPDIRepairWarning.h"
#include "MSPIBundleNaming.h"
#include "MSPIXMLImporter.h"

namespace {

std::optional<std::string> obstacleAt(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (path.empty() || !fileSystem.leadsToAnything(path)) {
        return "no such file";
    }
    return fileSystem.isDirectory(path) ? std::optional<std::string>("a folder, not a plan") : std::nullopt;
}

MSPIScenarioMapping counted(MSPIScenarioMapping mapScenario, MSPDIDocumentCounts& counts) {
    return [mapScenario = std::move(mapScenario), &counts](auto& plan, const auto& kdzxTemplate, auto& kdzxTOC,
                                                           const auto& info, const auto& services) {
        auto scenario = mapScenario(plan, kdzxTemplate, kdzxTOC, info, services);
        if (scenario) {
            ++counts.scenarios;
            counts.customFields = MSPDICustomFieldsIn(kdzxTOC);
        }
        if (scenario && !info.mspdiBaselineNumber) {
            counts.tasks = MSPDITasksIn(*scenario);
            counts.resources = MSPDIResourcesIn(*scenario);
        }
        return scenario;
    };
}

// The failures of the system are told by their names. One of the XML reader is the template's where the plan has been
// read already.
MSPDIVerdict verdictOf(const MSPDIRefusal& refusal, bool hasReadTemplate) {
    const std::string_view name = refusal.name;
    const bool isOfReading = name == "MSPEXMLException";
    if (name == "MSPIXMLException" || name == "MSPIMapperException" || (isOfReading && !hasReadTemplate)) {
        return MSPDIVerdict::Unreadable;
    }
    const bool isOfMachine = isOfReading || name == "KZMPPImporterException" || MSPDIBlamesTemplate(refusal);
    return isOfMachine ? MSPDIVerdict::Failed : MSPDIVerdict::Refused;
}

// The same warning comes with every scenario, and of a plan that is mended with every import.
void addInWords(const std::vector<std::string>& warnings, std::vector<std::string>& words) {
    for (const auto& warning : warnings) {
        auto text = MSPDIWarningInWords(warning);
        if (std::ranges::find(words, text) == words.end()) {
            words.push_back(std::move(text));
        }
    }
}

void noteCutOff(bool isCutOff, MSPDIImportedPlan& result) {
    if (isCutOff) {
        result.isCutOff = true;
        result.warnings.push_back(fmt::format("{}: what stood behind that place is missing", MSPDICutOffReason));
    }
}

// What was named like a document by chance, a folder of other files say, is not what people mean to replace.
bool isDocumentOrNothing(const std::string& path, const MSPCFileSystem& fileSystem) {
    if (!fileSystem.exists(path) || fileSystem.leadsToAnything(pathByAppendingComponent(path, MSPITOCFileName))) {
        return true;
    }
    const auto names = fileSystem.isDirectory(path) ? fileSystem.namesIn(path) : std::nullopt;
    return names && names->empty();
}

std::string inMemory(const std::string& name) {
    return pathByAppendingComponent(MSPDIMemoryFileSystem::Folder, name);
}

std::string withBuiltInTemplate(MSPDIMemoryFileSystem& memory) {
    auto folder = inMemory("Empty.kdzx");
    for (const auto& [name, content] : MSPDIEmptyDocument()) {
        memory.addFile(pathByAppendingComponent(folder, name), std::string(content));
    }
    return folder;
}

}  // namespace

std::string_view MSPDIVerdictName(MSPDIVerdict verdict) {
    constexpr std::array<std::string_view, 4> names = {"imported", "refused", "unreadable", "failed"};
    return names[static_cast<std::size_t>(verdict)];
}

MSPDIPlanImporter::MSPDIPlanImporter(const MSPCServices& services, MSPDIPlanImportOptions options,
                                     std::shared_ptr<MSPDITemplateDocuments> templateDocuments)
    : _services(services),
      _options(std::move(options)),
      _templateDocuments(templateDocuments ? std::move(templateDocuments)
                                           : std::make_shared<MSPDITemplateDocuments>()) {
}

std::optional<std::string> MSPDIPlanImporter::obstacle() const {
    if (_options.documentName) {
        const auto& name = *_options.documentName;
        if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
            return (name.empty() ? ".kdzx" : name) + ": a document cannot have this name";
        }
    }
    if (_options.outputFolder) {
        const auto path = _services.fileSystem.absolutePath(*_options.outputFolder);
        if (path.empty() || (_services.fileSystem.exists(path) && !_services.fileSystem.isDirectory(path))) {
            return *_options.outputFolder + ": no folder";
        }
        if (const auto document = MSPDIDocumentAround(path, _services.fileSystem)) {
            return fmt::format("{}: what is put there would become a part of the document {}", *_options.outputFolder,
                               *document);
        }
    }
    if (_options.templateFolder) {
        const auto path = _services.fileSystem.absolutePath(*_options.templateFolder);
        for (const auto name : {MSPIActualScenarioFileName, MSPITOCFileName}) {
            if (!_services.fileSystem.leadsToAnything(pathByAppendingComponent(path, name))) {
                return *_options.templateFolder + ": no document to import into";
            }
        }
    }
    return std::nullopt;
}

MSPDIImportedPlan MSPDIPlanImporter::import(const std::string& plan) {
    MSPDIImportedPlan result;
    const auto path = _services.fileSystem.absolutePath(plan);
    if (const auto obstacle = obstacleAt(path, _services.fileSystem)) {
        result.verdict = MSPDIVerdict::Unreadable;
        result.reason = *obstacle;
        return result;
    }
    const auto folder = _options.outputFolder ? _services.fileSystem.absolutePath(*_options.outputFolder)
                                              : pathByDeletingLastComponent(path);
    if (const auto failure = makeFolder(folder)) {
        result.verdict = MSPDIVerdict::Failed;
        result.reason = "the folder " + folder + " could not be made: " + *failure;
        return result;
    }
    try {
        importInto(folder, path, result);
    } catch (const std::bad_alloc&) {
        result = {};
        result.verdict = MSPDIVerdict::Failed;
        result.reason = "not enough memory";
    }
    _services.progress.endImport();
    return result;
}

// Makes a folder, and keeps which of those above it are new.
std::optional<std::string> MSPDIPlanImporter::makeFolder(const std::string& folder) {
    if (_services.fileSystem.isDirectory(folder)) {
        return std::nullopt;
    }
    std::vector<std::string> missing;
    for (auto path = folder; !_services.fileSystem.leadsToAnything(path); path = pathByDeletingLastComponent(path)) {
        missing.insert(missing.begin(), path);
    }
    auto failure = _services.fileSystem.createFolder(folder);
    _newFolders.insert(_newFolders.end(), missing.begin(), missing.end());
    return failure;
}

MSPCURL MSPDIPlanImporter::destinationFor(const std::string& path, const std::string& folder) const {
    const auto bundlePath =
        _options.documentName
            ? pathByAppendingComponent(folder, pathByAppendingExtension(*_options.documentName, "kdzx"))
            : MSPDIBundlePath(folder, path, false);
    return MSPCURL::fileURL(bundlePath, true);
}

MSPIImportInfo MSPDIPlanImporter::infoFor(const std::string& path, const MSPCURL& destination,
                                          MSPDIMemoryFileSystem& memory) const {
    const auto templatePath =
        _options.templateFolder ? memory.absolutePath(*_options.templateFolder) : withBuiltInTemplate(memory);
    MSPIImportInfo info;
    info.mspdiProjectName = pathByDeletingExtension(lastPathComponent(path));
    info.kdzxTemplateURL = MSPCURL::fileURL(templatePath, true);
    info.replacesOldBundle = _options.overwrites && !_documents.contains(destination.path()) &&
                             isDocumentOrNothing(destination.path(), memory) &&
                             MSPDIMayBeReplaced(destination.path(), {templatePath, path}, memory);
    info.keepsFailedBundle = false;
    info.bundleNumbers = _bundleNumbers;
    return info;
}

// The plan is read more than once. What gives its content only once, such as a pipe, is read into the memory. What is
// refused is mended then, so that most plans need no more than one import.
void MSPDIPlanImporter::importInto(const std::string& folder, const std::string& path, MSPDIImportedPlan& result) {
    std::string failure;
    const auto bytes =
        _services.fileSystem.openFile(path) ? std::nullopt : _services.fileSystem.readFile(path, &failure);
    if (!bytes && !failure.empty()) {
        result.verdict = MSPDIVerdict::Unreadable;
        result.reason = "it cannot be read: " + failure;
        return;
    }
    auto improved = _options.mending == MSPDIMending::All ? mendedBytes(path, bytes, true, result) : std::nullopt;
    if (improved) {
        importOnce(folder, path, std::move(improved), result);
        return;
    }
    importOnce(folder, path, bytes, result);
    const bool isRefused = result.verdict == MSPDIVerdict::Refused || result.verdict == MSPDIVerdict::Unreadable;
    if (!isRefused || (_options.mending == MSPDIMending::None && !_options.tellsMending)) {
        return;
    }
    auto mended = mendedBytes(path, bytes, false, result);
    if (mended && _options.mending != MSPDIMending::None) {
        importOnce(folder, path, std::move(mended), result);
    }
}

// The plan as mending makes it, by all steps or only by those that it needs; none where nothing was to be done, or it
// does not help.
std::optional<std::string> MSPDIPlanImporter::mendedBytes(const std::string& path, std::optional<std::string> bytes,
                                                          bool isAll, MSPDIImportedPlan& result) const {
    const bool isFile = !bytes;  // a pipe's are given, which nobody can read again
    if (isFile) {
        bytes = _services.fileSystem.readFile(path);
    }
    if (!bytes) {
        return std::nullopt;
    }
    MSPDIMendOptions options;
    options.isAll = isAll;
    auto mended = MSPDIMendPlan(lastPathComponent(path), std::move(*bytes), _services, options);
    if (isAll && mended.verdict == MSPDIMendVerdict::NotMendable) {
        return std::nullopt;  // the steps that it needs may do alone
    }
    result.mending = std::move(mended.steps);
    result.mendingObstacle = std::move(mended.obstacle);
    if (isAll && mended.isRepaired) {
        result.warnings.emplace_back("the markup of the plan was repaired, or brought entities of its own");
        noteCutOff(isFile && MSPDIIsPlanCutOff(path, _services.fileSystem), result);
    }
    return mended.verdict == MSPDIMendVerdict::Mended ? std::optional(std::move(mended.bytes)) : std::nullopt;
}

void MSPDIPlanImporter::importOnce(const std::string& folder, const std::string& path, std::optional<std::string> bytes,
                                   MSPDIImportedPlan& result) {
    MSPDIMemoryFileSystem memory(_services.fileSystem, MSPDIMemoryKeeping::Content);
    MSPDIImportFileSystem fileSystem(_services.fileSystem, memory, _services.progress);
    // What was mended is a plan, whatever its file is called.
    const auto name =
        result.mending.empty() ? lastPathComponent(path) : pathByDeletingExtension(lastPathComponent(path)) + ".xml";
    const auto source = bytes ? inMemory(name) : path;
    if (bytes) {
        memory.addFile(source, *std::exchange(bytes, std::nullopt));
    }
    MSPDIVerdictLog log(_services.log);
    const MSPCServices ofImport{_services.clock,        _services.timeZone,   log,
                                _services.userDefaults, fileSystem,           _services.randomSource,
                                _services.progress,     _services.seasonClock};
    MSPDIAccountOfImport watching(ofImport);
    auto mapScenario = _options.tellsLosses ? watching.watchedMapping() : MSPIScenarioMapping(MSPIMapScenario);
    const auto destination = destinationFor(path, folder);
    MSPIXMLImporter importer(infoFor(path, destination, memory), ofImport,
                             counted(std::move(mapScenario), result.counts),
                             [this](const auto& url, const auto& files, auto& ofLoading) {
                                 return _templateDocuments->load(url, files, ofLoading);
                             });
    const bool isImported = importer.importFromMspdiURLToKdzxBundleURL(MSPCURL::fileURL(source, false), destination);
    addInWords(log.warnings(), result.warnings);
    const bool isRepaired = std::ranges::any_of(log.warnings(), MSPDIIsRepairWarning);
    noteCutOff(isRepaired && MSPDIIsPlanCutOff(source, fileSystem), result);
    if (!isImported) {
        result.counts = {};
        result.refusal = log.refusal();
        result.verdict = verdictOf(*result.refusal, fileSystem.hasReadTemplate());
        result.reason = MSPDIReasonInWords(*result.refusal);
        return;
    }
    result.verdict = MSPDIVerdict::Imported;
    result.reason.clear();
    result.refusal.reset();
    result.document = fileSystem.newDocument();
    result.isNumbered = result.document != destination.path();
    if (result.isNumbered && _options.overwrites && !isDocumentOrNothing(destination.path(), _services.fileSystem)) {
        result.warnings.push_back(lastPathComponent(destination.path()) + " is no document, so it was not replaced");
    }
    _documents.insert(result.document);
    _folders.insert(folder);
    if (_options.tellsLosses) {
        MSPDIAccountOptions withoutPlaces;
        withoutPlaces.mostPlaces = 0;
        fileSystem.setDoing("Looking for losses");
        auto account = watching.account(source, std::nullopt, log.warnings(), withoutPlaces);
        result.account = account.obstacle ? std::nullopt : std::optional(std::move(account));
    }
}

std::optional<std::string> MSPDIPlanImporter::finish() {
    // From the innermost on; those that hold something stay.
    for (auto folder = _newFolders.rbegin(); folder != _newFolders.rend(); ++folder) {
        _services.fileSystem.removeEmptyFolder(*folder);
    }
    _newFolders.clear();
    return _folders.empty() ? std::nullopt : _services.fileSystem.synchronize(_folders);
}
