#include "MSPIXMLImporter.h"

#include <fmt/format.h>

#include <new>
#include <utility>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCXMLLoader.h"
#include "MSPIBundleNaming.h"
#include "MSPIElementsRead.h"
#include "MSPIKdzxNamespace.h"
#include "MSPIMapper.h"
#include "MSPINewBundle.h"
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

// The failure itself is what counts. Where not even the remains of the import can be shown, they are of no use either.
void appearAfterFailure(MSPINewBundle& bundle) {
    try {
        bundle.appear();
    } catch (const MSPCException&) {
        return;
    }
}

}  // namespace

std::optional<MSPCXMLDocument> MSPIMapScenario(MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate,
                                               MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
                                               const MSPCServices& services) {
    MSPIMapper mapper(plan, kdzxTemplate, kdzxTOC, info, services);
    mapper.map();
    return std::move(mapper.kdzxXmlDoc());
}

MSPCXMLDocument MSPILoadTemplate(const MSPCURL& url, const MSPCFileReader& files, MSPCLog& log) {
    return newXmlDocFromUrl(url, MSPCXMLContent::Everything, files, log);
}

// The three documents of one import.
struct MSPIXMLImporter::Documents {
    MSPIPlan plan;
    MSPCXMLDocument kdzxTemplate;
    MSPCXMLDocument kdzxTOC;
};

MSPIXMLImporter::MSPIXMLImporter(MSPIImportInfo info, const MSPCServices& services, MSPIScenarioMapping mapScenario,
                                 MSPITemplateLoading loadTemplate)
    : _info(std::move(info)),
      _services(services),
      _mapScenario(std::move(mapScenario)),
      _loadTemplate(std::move(loadTemplate)) {
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
    MSPINewBundle bundle(_info, _services, destination);
    _services.log.log("MSPIXMLImporter: Importing XML (MSPDI) file to KZ 2 document bundle...");
    _services.log.log("Input:  '{}'", source.path());
    _services.log.log("Output: '{}'", bundle.path());
    bundle.copyTemplate();
    // From here on the bundle counts; nothing is rolled back unless that was asked for.
    bool isFilled = false;
    try {
        isFilled = fillBundle(source, bundle);
    } catch (...) {
        if (_info.keepsFailedBundle) {
            appearAfterFailure(bundle);
        }
        throw;
    }
    if (isFilled || _info.keepsFailedBundle) {
        bundle.appear();
    }
    return isFilled;
}

bool MSPIXMLImporter::fillBundle(const MSPCURL& source, MSPINewBundle& bundle) {
    auto documents = loadDocuments(source, bundle);
    if (!importScenario(std::nullopt, documents, bundle)) {
        return false;
    }
    for (int number = 0; number <= LastBaselineNumber; ++number) {
        importScenario(number, documents, bundle);
    }
    // Every scenario has entered itself in the table of contents; it is written once, when all their files are there.
    bundle.write(documents.kdzxTOC, MSPITOCFileName);
    return true;
}

MSPIXMLImporter::Documents MSPIXMLImporter::loadDocuments(const MSPCURL& source, const MSPINewBundle& bundle) const {
    const auto loadFromBundle = [&](std::string_view fileName) {
        return _loadTemplate(MSPCURL::fileURL(bundle.pathOf(fileName), false), bundle.files(), _services.log);
    };
    _services.log.log("Begin loading XML document ...");
    auto mspdi = newXmlDocFromUrlSelection(source, MSPIElementsRead(), _services.fileSystem, _services.log);
    _services.log.log("Process XML DOM ...");
    auto kdzxTemplate = loadFromBundle(MSPIActualScenarioFileName);
    auto kdzxTOC = loadFromBundle(MSPITOCFileName);
    return {MSPIPlan(std::move(mspdi)), std::move(kdzxTemplate), std::move(kdzxTOC)};
}

bool MSPIXMLImporter::importScenario(std::optional<int> baselineNumber, Documents& documents, MSPINewBundle& bundle) {
    _info.mspdiBaselineNumber = baselineNumber;
    _info.kdzxScenarioName = MSPIScenarioName(baselineNumber);
    _services.progress.beginScenario(*_info.kdzxScenarioName);
    const auto scenario = _mapScenario(documents.plan, documents.kdzxTemplate, documents.kdzxTOC, _info, _services);
    if (!scenario) {
        return false;
    }
    // Deliberate: the verdict changes nothing; an odd scenario is written like any other.
    static_cast<void>(MSPIScenarioCheck(*scenario, MSPIKdzxNamespace));
    bundle.write(*scenario, MSPIScenarioFileName(*_info.kdzxScenarioName));
    return true;
}
