#include "MSPDIImportRunner.h"
#include "MSPIXMLImporter.h"

bool MSPDIImportFile(const MSPIImportInfo& info, const MSPCServices& services, const MSPCURL& source,
                     const MSPCURL& destination) {
    return MSPIXMLImporter(info, services).importFromMspdiURLToKdzxBundleURL(source, destination);
}
