#pragma once

#include <functional>
#include <optional>
#include <string>

#include "MSPCServices.h"
#include "MSPCURL.h"
#include "MSPCXMLDocument.h"
#include "MSPIImportInfo.h"
#include "MSPIPlan.h"

class MSPCFileReader;
class MSPINewBundle;

// Maps one scenario: reads the plan and the template scenario, enters the scenario in the table of contents and gives
// its document, owned by the caller; none when the plan holds no such scenario. `info` says which scenario it is. The
// plan's document is afterwards what it was before. Raises the mappers' failures.
using MSPIScenarioMapping = std::function<std::optional<MSPCXMLDocument>(
    MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate, MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
    const MSPCServices& services)>;

// The mapping by a mapper of its own.
[[nodiscard]] std::optional<MSPCXMLDocument> MSPIMapScenario(MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplate,
                                                             MSPCXMLDocument& kdzxTOC, const MSPIImportInfo& info,
                                                             const MSPCServices& services);

// Loads a document of the template from its copy in the new bundle, with all that it holds. Raises the failures of
// `newXmlDocFromUrl`.
using MSPITemplateLoading =
    std::function<MSPCXMLDocument(const MSPCURL& url, const MSPCFileReader& files, MSPCLog& log)>;

// The loading by itself.
[[nodiscard]] MSPCXMLDocument MSPILoadTemplate(const MSPCURL& url, const MSPCFileReader& files, MSPCLog& log);

// Imports one MSPDI file into one new Kadenza 2 bundle. Made for one file; the services outlive it.
class MSPIXMLImporter {
public:
    // Keeps a copy of `info`, which it fills in for every scenario. Whoever replaces one of the two operations sees to
    // it that the result is the same.
    MSPIXMLImporter(MSPIImportInfo info, const MSPCServices& services,
                    MSPIScenarioMapping mapScenario = MSPIMapScenario,
                    MSPITemplateLoading loadTemplate = MSPILoadTemplate);

    // Copies the template bundle to the destination, or to the first free name "<destination>-1", "-2", ... where
    // something exists already that is not to be replaced, and writes into the copy the actual scenario ("Actual.xml"),
    // every baseline 0 to 10 that the plan holds ("Baseline.xml", "Baseline1.xml" to "Baseline10.xml") and, last, the
    // table of contents ("__TOC.xml"). The bundle appears under its name when all is done or has failed; what it
    // replaces stands until then. True when all of it was written.
    //
    // False on any failure of the system's own kinds, after the log line "Exception: <name>\n<reason>\n<user info>"; a
    // plan without an actual scenario gives false without a line. What was written before stays: nothing is rolled
    // back, and the bundle appears with it, unless `info` says that a failed bundle is not kept. Memory that runs out
    // (std::bad_alloc) is logged as a KZMPPImporterException "Not enough memory for this import."; other foreign
    // exceptions pass. The failures raised here are
    //   MSPIXMLException "MSPIXMLImporter.importMSPDIData: Source URL not specified."
    //                    "MSPIXMLImporter.importMSPDIData: Source must be a file system."
    //                    "MSPIXMLImporter.importMSPDIData: Source must be a MS Project XML document."
    //                    "MSPIXMLImporter.importMSPDIData: Destination URL not specified."
    //                    "MSPIXMLImporter.importMSPDIData: Destination must be a file system."
    //                    "MSPIXMLImporter.importMSPDIData: Destination must be a KZ 2 document bundle (.kdzx file)."
    //   MSPCInternalInconsistency "URL of Template kdzx document not specified."
    //   KZMPPImporterException "MSPIMPPImporter importFromMppURL:toKdzxBundleURL:Failed to copy KZ2 Template bundle to
    //                          destination directory.", with the system's description as user info
    //                          "Failed to write '<path>': <the system's description>"
    // Those of loading and mapping are told where they are raised.
    [[nodiscard]] bool importFromMspdiURLToKdzxBundleURL(const std::optional<MSPCURL>& source,
                                                         const std::optional<MSPCURL>& destination);

private:
    struct Documents;

    [[nodiscard]] bool importChecked(const MSPCURL& source, const MSPCURL& destination);
    // False when the plan holds no actual scenario.
    [[nodiscard]] bool fillBundle(const MSPCURL& source, MSPINewBundle& bundle);
    [[nodiscard]] Documents loadDocuments(const MSPCURL& source, const MSPINewBundle& bundle) const;
    // False when the plan holds no such scenario.
    bool importScenario(std::optional<int> baselineNumber, Documents& documents, MSPINewBundle& bundle);

    MSPIImportInfo _info;
    const MSPCServices& _services;
    MSPIScenarioMapping _mapScenario;
    MSPITemplateLoading _loadTemplate;
};
