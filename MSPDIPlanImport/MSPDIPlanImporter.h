#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "MSPCServices.h"
#include "MSPCURL.h"
#include "MSPDIAccount.h"
#include "MSPDIDocumentCounts.h"
#include "MSPDIMend.h"
#include "MSPDIRefusal.h"
#include "MSPDITemplateDocuments.h"
#include "MSPIImportInfo.h"

class MSPDIMemoryFileSystem;

// What is done to plans before they are imported, in memory; the plans themselves stay as they are.
enum class MSPDIMending : std::uint8_t {
    None,
    OfRefused,  // those that are refused are mended by the necessary steps
    All,        // all plans are mended by all steps, the improvements too
};

// How plans are to be imported. Paths may be relative.
struct MSPDIPlanImportOptions {
    std::optional<std::string> outputFolder;    // made where there is none; without it each plan's own
    std::optional<std::string> templateFolder;  // without it the empty document that is part of the program
    std::optional<std::string> documentName;    // without ".kdzx"; without it that of the plan's file
    bool overwrites = false;  // a document of that name is replaced, at the end; so is an empty folder
    bool tellsLosses = true;  // costs one more reading of the plan
    MSPDIMending mending = MSPDIMending::None;
    bool tellsMending = true;  // what mending would do to a plan that is refused, which takes up to three imports
};

enum class MSPDIVerdict : std::uint8_t {
    Imported,
    Refused,     // a plan, but the importer does not take it
    Unreadable,  // no such file, or no plan
    Failed,      // the plan is not to blame: the disk, the memory, the template
};

// "imported", "refused", "unreadable", "failed".
[[nodiscard]] std::string_view MSPDIVerdictName(MSPDIVerdict verdict);

// What became of a plan.
struct MSPDIImportedPlan {
    MSPDIVerdict verdict = MSPDIVerdict::Imported;
    std::string reason;                   // in one line; empty of an imported plan
    std::optional<MSPDIRefusal> refusal;  // the importer's own words, where it has said something
    std::string document;                 // absolute path; empty unless it was imported
    bool isNumbered = false;              // the document's own name was taken
    bool isCutOff = false;       // the plan's file ends before the plan does, so that nobody can tell what is lost
    MSPDIDocumentCounts counts;  // of an imported plan
    std::vector<std::string> warnings;    // in words, each once
    std::optional<MSPDIAccount> account;  // none where it was not asked for, or cannot be told; of the mended plan
    std::vector<MSPDIMendDone> mending;   // what was done to the plan; of a refused one, what mending would do
    std::string mendingObstacle;          // why mending does not help a refused plan, as far as it was asked for
};

// Imports plans one after another, each by an importer of its own, exactly as MSPDIImport does, but for this: of a plan
// that is refused, or fails, nothing stays behind, and what it was to replace stands. Settings of the user play no
// part.
class MSPDIPlanImporter {
public:
    // The services outlive the importer; the log gets what the importer says. Importers that follow one another may
    // share what is known of the template's documents.
    MSPDIPlanImporter(const MSPCServices& services, MSPDIPlanImportOptions options,
                      std::shared_ptr<MSPDITemplateDocuments> templateDocuments = nullptr);

    // What is wrong with the options, in one line that names the file first; none when all is well.
    [[nodiscard]] std::optional<std::string> obstacle() const;
    // Imports the plan at a path. Raises nothing that the plan is to blame for. A document of this run is never
    // replaced by another one of it.
    [[nodiscard]] MSPDIImportedPlan import(const std::string& plan);
    // After the last plan: brings the documents to the disk, and takes away folders that were made for nothing. Gives
    // the reason where the disk fails.
    [[nodiscard]] std::optional<std::string> finish();

private:
    [[nodiscard]] std::optional<std::string> makeFolder(const std::string& folder);
    [[nodiscard]] MSPCURL destinationFor(const std::string& path, const std::string& folder) const;
    [[nodiscard]] MSPIImportInfo infoFor(const std::string& path, const MSPCURL& destination,
                                         MSPDIMemoryFileSystem& memory) const;
    [[nodiscard]] std::optional<std::string> mendedBytes(const std::string& path, std::optional<std::string> bytes,
                                                         bool isAll, MSPDIImportedPlan& result) const;
    void importInto(const std::string& folder, const std::string& path, MSPDIImportedPlan& result);
    // `bytes` stand for the content of the plan's file, where they are given.
    void importOnce(const std::string& folder, const std::string& path, std::optional<std::string> bytes,
                    MSPDIImportedPlan& result);

    const MSPCServices& _services;
    MSPDIPlanImportOptions _options;
    std::shared_ptr<MSPDITemplateDocuments> _templateDocuments;
    std::set<std::string> _documents;      // of this run
    std::set<std::string> _folders;        // that hold them
    std::vector<std::string> _newFolders;  // made by this run, the outermost first
    std::shared_ptr<std::map<std::string, std::uint64_t>> _bundleNumbers =
        std::make_shared<std::map<std::string, std::uint64_t>>();
};
