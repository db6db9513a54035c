#include "MSPIXMLImporter.h"

#include <fmt/format.h>

#include <new>
#include <utility>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCXMLAsides.h"
#include "MSPIBundleNaming.h"
#include "MSPIElementsRead.h"
#include "MSPIKdzxNamespace.h"
#include "MSPIScenarioCheck.h"

namespace {

constexpr int LastBaselineNumber = 10;

void checkSource(const std::optional<MSPCURL>& source) {
    if (!source) {
        throw MSPIXMLException("MSPIXMLImporter.importMSPDIData: Source URL not specified.");
    }
    if (!source->isFileURL()) {
        throw MSPIXMLException("MSPIXMLImporter.importMSPDIData: Source must be a file system.");
    }
    const auto extension = lowerCased(pathExtension(source->path()));
    if (extension != "xml" && extension != "mspxml") {
        throw MSPIXMLException("MSPIXMLImporter.importMSPDIData: Source must be a MS Project XML document.");
    }
}

void checkDestination(const std::optional<MSPCURL>& destination) {
    if (!destination) {
        throw MSPIXMLException("MSPIXMLImporter.importMSPDIData: Destination URL not specified.");
    }
    if (!destination->isFileURL()) {
        throw MSPIXMLException("MSPIXMLImporter.importMSPDIData: Destination must be a file system.");
    }
    // Deliberate: unlike the source's, this extension is compared with its case; "Plan.KDZX" is refused.
    if (pathExtension(destination->path()) != "kdzx") {
        throw MSPIXMLException(
            "MSPIXMLImporter.importMSPDIData: Destination must be a KZ 2 document bundle (.kdzx file).");
    }
}

// Ends what the progress shows, however the import ends.
class ShownProgress {
public:
    explicit ShownProgress(MSPCProgress& progress) : _progress(progress) {}
    ~ShownProgress() { _progress.endImport(); }
    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;

private:
    MSPCProgress& _progress;
};

// Lets go of what was found out about the documents of one import, before the documents themselves.
class FindingsOfImport {
public:
    explicit FindingsOfImport(MSPIImportInfo& info) : _info(info) {}
    ~FindingsOfImport() {
        _info.baselines.reset();
        _info.index.reset();
    }
    FindingsOfImport(const FindingsOfImport&) = delete;
    FindingsOfImport& operator=(const FindingsOfImport&) = delete;

private:
    MSPIImportInfo& _info;
};

}  // namespace

// The three documents of one import.
struct MSPIXMLImporter::Documents {
    MSPCXMLDocument mspdi;
    MSPCXMLDocument kdzxTemplate;
    MSPCXMLDocument kdzxTOC;
};

MSPIXMLImporter::MSPIXMLImporter(MSPIImportInfo info, const MSPCServices& services, MSPIScenarioMapping mapScenario)
    : _info(std::move(info)), _services(services), _mapScenario(std::move(mapScenario)) {
}

bool MSPIXMLImporter::importFromMspdiURLToKdzxBundleURL(const std::optional<MSPCURL>& source,
                                                        const std::optional<MSPCURL>& destination) {
    const ShownProgress shown(_services.progress);
    try {
        checkSource(source);
        checkDestination(destination);
        return importChecked(*source, *destination);
    } catch (const MSPCException& exception) {
        _services.log.log("Exception: {}\n{}\n{}", exception.name(), exception.message(), exception.userInfo());
        return false;
    } catch (const std::bad_alloc&) {
        // A plan that does not fit into the memory is no reason to let the other plans of a list down. By now all that
        // this import held is free again.
        _services.log.log("Exception: KZMPPImporterException\nNot enough memory for this import.\n");
        return false;
    }
}

bool MSPIXMLImporter::importChecked(const MSPCURL& source, const MSPCURL& destination) {
    const auto bundlePath = copyTemplate(source, destination);
    // From here on the bundle exists; nothing is rolled back.
    auto documents = loadDocuments(source, bundlePath);
    const FindingsOfImport findings(_info);
    _info.index = std::make_shared<MSPIProjectIndex>(documents.mspdi.root());
    if (!importScenario(std::nullopt, documents, bundlePath)) {
        return false;
    }
    _info.baselines = std::make_shared<const MSPIBaselineIndex>(documents.mspdi, documents.mspdi.takeAsides());
    for (int number = 0; number <= LastBaselineNumber; ++number) {
        importScenario(number, documents, bundlePath);
    }
    // Every scenario has entered itself in the table of contents; it is written once, when all their files are there.
    writeDocument(documents.kdzxTOC, pathByAppendingComponent(bundlePath, MSPITOCFileName));
    return true;
}

std::string MSPIXMLImporter::copyTemplate(const MSPCURL& source, const MSPCURL& destination) {
    MSPIBundleNaming naming(destination.path());
    naming.advanceToFreePath(_services.fileSystem);
    _services.log.log("MSPIXMLImporter: Importing XML (MSPDI) file to KZ 2 document bundle...");
    _services.log.log("Input:  '{}'", source.path());
    _services.log.log("Output: '{}'", naming.path());
    if (!_info.kdzxTemplateURL) {
        throw MSPCInternalInconsistency("URL of Template kdzx document not specified.");
    }
    bool isTaken = false;
    while (const auto failure =
               _services.fileSystem.copyFolder(_info.kdzxTemplateURL->path(), naming.path(), &isTaken)) {
        if (!isTaken) {
            throw KZMPPImporterException(
                "MSPIMPPImporter importFromMppURL:toKdzxBundleURL:Failed to copy KZ2 Template bundle to destination "
                "directory.",
                *failure);
        }
        // Another run took the name since it was found free.
        naming.advanceToFreePath(_services.fileSystem);
        _services.log.log("Output: '{}'", naming.path());
    }
    return naming.path();
}

MSPIXMLImporter::Documents MSPIXMLImporter::loadDocuments(const MSPCURL& source, const std::string& bundlePath) const {
    const auto load = [this](const MSPCURL& url, MSPCXMLContent content, const MSPCXMLSelection* selection = nullptr) {
        return newXmlDocFromUrl(url, content, _services.fileSystem, _services.log, selection);
    };
    const auto inBundle = [&bundlePath](std::string_view fileName) {
        return MSPCURL::fileURL(pathByAppendingComponent(bundlePath, fileName), false);
    };
    _services.log.log("Begin loading XML document ...");
    auto mspdi = load(source, MSPCXMLContent::DataOnly, &MSPIElementsRead());
    _services.log.log("Process XML DOM ...");
    auto kdzxTemplate = load(inBundle(MSPIActualScenarioFileName), MSPCXMLContent::Everything);
    auto kdzxTOC = load(inBundle(MSPITOCFileName), MSPCXMLContent::Everything);
    return {std::move(mspdi), std::move(kdzxTemplate), std::move(kdzxTOC)};
}

bool MSPIXMLImporter::importScenario(std::optional<int> baselineNumber, Documents& documents,
                                     const std::string& bundlePath) {
    _info.mspdiBaselineNumber = baselineNumber;
    _info.kdzxScenarioName = MSPIScenarioName(baselineNumber);
    _services.progress.beginScenario(*_info.kdzxScenarioName);
    const auto scenario = _mapScenario(documents.mspdi, documents.kdzxTemplate, documents.kdzxTOC, _info, _services);
    if (!scenario) {
        return false;
    }
    // Deliberate: the verdict changes nothing; an odd scenario is written like any other.
    static_cast<void>(MSPIScenarioCheck(*scenario, MSPIKdzxNamespace));
    const auto fileName = MSPIScenarioFileName(*_info.kdzxScenarioName);
    writeDocument(*scenario, pathByAppendingComponent(bundlePath, fileName));
    return true;
}

void MSPIXMLImporter::writeDocument(const MSPCXMLDocument& document, const std::string& path) const {
    std::size_t replacedCount = 0;
    const auto failure =
        _services.fileSystem.writeAtomically(path, [&](MSPCByteSink& sink) { replacedCount = document.write(sink); });
    if (failure) {
        throw KZMPPImporterException(fmt::format("Failed to write '{}': {}", path, *failure));
    }
    if (replacedCount > 0) {
        _services.log.log("WARNING: Replaced {} characters that XML cannot hold in '{}'.", replacedCount, path);
    }
}
