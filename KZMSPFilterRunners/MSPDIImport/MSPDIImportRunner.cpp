#include "MSPDIImportRunner.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <utility>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCUserDefaults.h"
#include "MSPDIImportDestination.h"
#include "MSPDIInputList.h"
#include "MSPIXMLImporter.h"

bool MSPDIImportFile(const MSPIImportInfo& info, const MSPCServices& services, const MSPCURL& source,
                     const MSPCURL& destination) {
    return MSPIXMLImporter(info, services).importFromMspdiURLToKdzxBundleURL(source, destination);
}

MSPDIImportRunner::MSPDIImportRunner(const MSPCServices& services, MSPDIFileImport importFile)
    : _services(services), _importFile(std::move(importFile)) {
}

int MSPDIImportRunner::run(const std::vector<std::string>& arguments) {
    _services.log.log("MSPDIImporter Runner");
    readSettings();
    try {
        importAll(MSPDIParseArguments(arguments));
    } catch (const MSPCException& exception) {
        _services.log.log("Exception: {}\n{}", exception.name(), exception.message());
    } catch (const std::bad_alloc&) {
        _services.log.log("Exception: std::bad_alloc\nNot enough memory.");
        _lastResult = false;
    } catch (...) {
        // Nobody above catches it, and without any handler the stack need not be unwound: temporary files would stay.
        throw;
    }
    bringToDisk();
    return _lastResult ? 0 : 1;
}

void MSPDIImportRunner::bringToDisk() {
    if (const auto failure = _services.fileSystem.synchronize(_outputFolders)) {
        _services.log.log("WARNING: Failed to bring the bundles to the disk: {}", *failure);
        _lastResult = false;
    }
}

void MSPDIImportRunner::readSettings() {
    _includesInputExtension = _services.userDefaults.boolForKey("IncludeInputExtension").value_or(false);
    _overwritesTarget = _services.userDefaults.boolForKey("OverwriteFilterTarget").value_or(false);
}

void MSPDIImportRunner::importAll(const MSPDIImportArguments& arguments) {
    const auto templateURL = checkedTemplateURL(arguments.templatePath);
    _services.log.log("KDZX Template URL: '{}'", templateURL.absoluteString());
    const auto entries = inputFiles(arguments);
    MSPDICheckInputFiles(entries);
    if (std::ranges::none_of(entries, MSPDIIsInputEntry)) {
        _services.log.log("WARNING: Nothing to import: '{}' names no plan.", arguments.inputPath.value_or(""));
    }
    for (const auto& entry : entries) {
        if (MSPDIIsInputEntry(entry)) {
            importEntry(entry, templateURL, arguments);
        }
    }
}

MSPCURL MSPDIImportRunner::checkedTemplateURL(const std::string& templatePath) const {
    if (lowerCased(pathExtension(templatePath)) != "kdzx") {
        throw CommandLineArgumentException(fmt::format("Template is not a valid KDZX doc folder: '{}'", templatePath));
    }
    const auto path = _services.fileSystem.standardizedPath(templatePath);
    if (!_services.fileSystem.isDirectory(path)) {
        throw FileNotFoundException(fmt::format("KDZX template doc folder not found: {}", path));
    }
    return MSPCURL::fileURL(_services.fileSystem.absolutePath(path), true);
}

std::vector<std::string> MSPDIImportRunner::inputFiles(const MSPDIImportArguments& arguments) const {
    if (arguments.isListForm) {
        return listedInputFiles(arguments);
    }
    const auto& inputFile = *arguments.inputPath;
    _services.log.log("### Import single file: \"{}\"", inputFile);
    return {inputFile};
}

std::vector<std::string> MSPDIImportRunner::listedInputFiles(const MSPDIImportArguments& arguments) const {
    _services.log.log("### Import files from the list:");
    if (!arguments.inputPath) {
        throw CommandLineArgumentException("No input list found in command line.");
    }
    const auto path = _services.fileSystem.standardizedPath(*arguments.inputPath);
    auto lines = MSPDIReadInputList(path, _services.fileSystem);
    for (const auto& line : lines) {
        if (MSPDIIsInputEntry(line)) {
            _services.log.log("    \"{}\"", line);
        }
    }
    return lines;
}

void MSPDIImportRunner::importEntry(const std::string& entry, const MSPCURL& templateURL,
                                    const MSPDIImportArguments& arguments) {
    const auto checkedPath = checkedInputPath(entry);
    const auto inputPath = _services.fileSystem.absolutePath(checkedPath);
    const auto source = MSPCURL::fileURL(inputPath, false);
    _services.log.log("### Import from URL: '{}'", source.absoluteString());

    const auto folder = MSPDIOutputFolder(checkedPath, arguments.outputFolder, _services.fileSystem);
    const auto bundlePath = MSPDIBundlePath(folder, inputPath, _includesInputExtension);
    const auto destination = MSPCURL::fileURL(bundlePath, true);
    _services.log.log("### Write to URL (bundle): '{}'", destination.absoluteString());

    _outputFolders.insert(folder);
    MSPIImportInfo info;
    info.mspdiProjectName = pathByDeletingExtension(lastPathComponent(inputPath));
    info.kdzxTemplateURL = templateURL;
    info.replacesOldBundle =
        _overwritesTarget && MSPDIMayBeReplaced(bundlePath, {templateURL.path(), inputPath}, _services.fileSystem);
    info.bundleNumbers = _bundleNumbers;
    _lastResult = _importFile(info, _services, source, destination);
    _services.log.log("### Importer {}.", _lastResult ? "SUCCEEDED" : "FAILED");
}

std::string MSPDIImportRunner::checkedInputPath(const std::string& entry) const {
    const auto extension = lowerCased(pathExtension(entry));
    if (extension != "xml" && extension != "mspxml") {
        throw CommandLineArgumentException(fmt::format("Input file is not XML: '{}'", entry));
    }
    auto path = _services.fileSystem.standardizedPath(entry);
    if (!_services.fileSystem.leadsToAnything(path)) {
        throw FileNotFoundException(fmt::format("Input file not found: {}", path));
    }
    if (_services.fileSystem.isDirectory(path)) {
        throw FileNotFoundException(fmt::format("Input file is a directory: {}", path));
    }
    return path;
}
