#include "MSPINewBundle.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCLog.h"
#include "MSPCPath.h"
#include "MSPCXMLDocument.h"

MSPINewBundle::MSPINewBundle(const MSPIImportInfo& info, const MSPCServices& services, const MSPCURL& destination)
    : _info(info), _services(services), _wantedPath(destination.path()), _naming(_wantedPath) {
    _folder = _services.fileSystem.newFolder(_naming.path(), _info.replacesOldBundle);
    while (!_folder) {
        advance();
        _folder = _services.fileSystem.newFolder(_naming.path(), false);
    }
}

MSPINewBundle::~MSPINewBundle() = default;

// Plans of one name come by the thousand; each goes on where the one before it ended, instead of at number 1.
void MSPINewBundle::advance() {
    if (!_info.bundleNumbers) {
        _naming.advance();
        return;
    }
    auto& reached = (*_info.bundleNumbers)[_wantedPath];
    _naming.advanceTo(reached);
    reached = _naming.number();
}

void MSPINewBundle::copyTemplate() {
    if (!_info.kdzxTemplateURL) {
        throw MSPCInternalInconsistency("URL of Template kdzx document not specified.");
    }
    if (const auto failure = _folder->copyContent(_info.kdzxTemplateURL->path())) {
        throw KZMPPImporterException(
            "MSPIMPPImporter importFromMppURL:toKdzxBundleURL:Failed to copy KZ2 Template bundle to destination "
            "directory.",
            *failure);
    }
}

std::string MSPINewBundle::pathOf(std::string_view fileName) const {
    return pathByAppendingComponent(path(), fileName);
}

const MSPCFileReader& MSPINewBundle::files() const {
    return *_folder;
}

void MSPINewBundle::write(const MSPCXMLDocument& document, std::string_view fileName) {
    const auto path = pathOf(fileName);
    std::size_t replacedCount = 0;
    const auto failure =
        _folder->writeAtomically(path, [&](MSPCByteWriter& writer) { replacedCount = document.write(writer); });
    if (failure) {
        throw KZMPPImporterException(fmt::format("Failed to write '{}': {}", path, *failure));
    }
    if (replacedCount > 0) {
        _services.log.log("WARNING: Replaced {} characters that XML cannot hold in '{}'.", replacedCount, path);
    }
}

void MSPINewBundle::appear() {
    bool isTaken = false;
    while (const auto failure = _folder->appear(isTaken)) {
        if (!isTaken) {
            throw KZMPPImporterException(fmt::format("Failed to write '{}': {}", path(), *failure));
        }
        // Somebody took the name since it was found free.
        advance();
        _folder->setPath(path());
        _services.log.log("Output: '{}'", path());
    }
    if (const auto remains = _folder->remainsOfReplaced(); !remains.empty()) {
        _services.log.log("WARNING: Failed to remove all of the document that was replaced: '{}' is left.", remains);
    }
}
