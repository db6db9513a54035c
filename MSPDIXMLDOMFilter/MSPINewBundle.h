#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "MSPCServices.h"
#include "MSPCURL.h"
#include "MSPIBundleNaming.h"
#include "MSPIImportInfo.h"

class MSPCFileReader;
class MSPCNewFolder;
class MSPCXMLDocument;

// The bundle of one import while it is made: a copy of the template, out of sight until it appears under its name. What
// has not appeared goes with this object.
class MSPINewBundle {
public:
    // Takes the destination's name, or the first free one of those that follow it where something exists that `info`
    // does not let replace. Info and services outlive this object.
    MSPINewBundle(const MSPIImportInfo& info, const MSPCServices& services, const MSPCURL& destination);
    ~MSPINewBundle();
    MSPINewBundle(const MSPINewBundle&) = delete;
    MSPINewBundle& operator=(const MSPINewBundle&) = delete;

    [[nodiscard]] const std::string& path() const { return _naming.path(); }
    // Fills the bundle with the template's content. Raises the failures of copying and of a missing template that
    // MSPIXMLImporter tells of.
    void copyTemplate();
    // The path that a document of the bundle will have, and what reads it by this path.
    [[nodiscard]] std::string pathOf(std::string_view fileName) const;
    [[nodiscard]] const MSPCFileReader& files() const;
    // Writes a document in the place of the template's, if there is one. Raises KZMPPImporterException
    // "Failed to write '<path>': <the system's description>".
    void write(const MSPCXMLDocument& document, std::string_view fileName);
    // Gives the bundle its name, or the next free one where somebody took that since, which the log says. Raises
    // KZMPPImporterException "Failed to write '<path>': <the system's description>".
    void appear();

private:
    void advance();

    const MSPIImportInfo& _info;
    const MSPCServices& _services;
    std::string _wantedPath;
    MSPIBundleNaming _naming;
    std::unique_ptr<MSPCNewFolder> _folder;
};
