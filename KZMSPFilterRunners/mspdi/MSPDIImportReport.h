#pragma once

#include <memory>
#include <optional>
#include <string>

#include "MSPDIPlanImporter.h"
#include "MSPDIRun.h"

// Tells people, or programs, what became of plans that were imported.
class MSPDIImportReport {
public:
    // `outputFolder` as it was named, for documents to be told the same way.
    MSPDIImportReport(std::optional<std::string> outputFolder, MSPDIRun& run);
    ~MSPDIImportReport();
    MSPDIImportReport(const MSPDIImportReport&) = delete;
    MSPDIImportReport& operator=(const MSPDIImportReport&) = delete;

    // Writes a few lines of a plan, as it was named. Nothing of one that could not be read: that is told elsewhere.
    void tell(const std::string& plan, const MSPDIImportedPlan& imported);
    // Writes the document of JSON, in the form of share/mspdi/import.schema.json, where one is wanted.
    void finish();

private:
    struct Told;

    [[nodiscard]] std::string shownDocument(const std::string& plan, const MSPDIImportedPlan& imported) const;
    void tellImported(const std::string& plan, const MSPDIImportedPlan& imported);
    void tellRefused(const std::string& plan, const MSPDIImportedPlan& imported);
    void tellWarnings(const MSPDIImportedPlan& imported);
    void tellSummerDates(const MSPDIAccount& account);

    std::optional<std::string> _outputFolder;
    MSPDIRun& _run;
    std::unique_ptr<Told> _told;  // for JSON
};

// A word of a command line as bash and zsh take it: in quotes where it needs them. It holds nothing that must not be
// shown: control characters and bytes that are no UTF-8 stand in it as escapes of the shell, $'a\012b'.
[[nodiscard]] std::string MSPDIShellWord(const std::string& text);
