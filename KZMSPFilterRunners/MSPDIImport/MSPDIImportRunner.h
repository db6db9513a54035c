#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "MSPCServices.h"
#include "MSPCURL.h"
#include "MSPDIImportArguments.h"
#include "MSPIImportInfo.h"

// Imports one file (source, destination bundle); true when it succeeded.
using MSPDIFileImport = std::function<bool(const MSPIImportInfo&, const MSPCServices&, const MSPCURL&, const MSPCURL&)>;

// Imports one file with an importer of its own.
[[nodiscard]] bool MSPDIImportFile(const MSPIImportInfo& info, const MSPCServices& services, const MSPCURL& source,
                                   const MSPCURL& destination);

// One run of the program: settings, command line, template, input list, then one import per input file.
//
// Settings: `IncludeInputExtension` puts the input's extension in front of the bundle's (Plan.xml.kdzx),
// `OverwriteFilterTarget` lets the new bundle replace an existing destination, unless that would take the template or
// the input away. Both are off when absent.
//
// Where neither the list nor the argument names a plan (it is empty, or there are only comments) no import runs, and
// the log says "WARNING: Nothing to import: '<argument>' names no plan.".
//
// The first failed check ends the run with the log line "Exception: <name>\n<reason>". A failed import does not: the
// run goes on with the next file. Foreign exceptions pass, after everything that the run holds has been released.
// When all files are done, what was written is brought to the disk, once for the whole run. Where that fails the log
// says "WARNING: Failed to bring the bundles to the disk: '<folder>': <the system's description>" and the run has not
// succeeded.
//
// Failures raised here (the others are told where they are raised):
//   CommandLineArgumentException "Template is not a valid KDZX doc folder: '<argument>'"
//                                "No input list found in command line."
//                                "Input file is not XML: '<entry>'"
//   FileNotFoundException "KDZX template doc folder not found: <path>"
//                         "Input file not found: <path>"
//                         "Input file is a directory: <path>"
class MSPDIImportRunner {
public:
    // The services outlive the runner. Tests replace `importFile`.
    explicit MSPDIImportRunner(const MSPCServices& services, MSPDIFileImport importFile = MSPDIImportFile);

    // Runs with all arguments of the command line, the program's own path first. Returns the exit status: 0 when the
    // last import that ran succeeded, 1 when it failed or none ran. Deliberate: a later entry that fails its checks
    // leaves the status of an earlier import that succeeded.
    [[nodiscard]] int run(const std::vector<std::string>& arguments);

private:
    void readSettings();
    void importAll(const MSPDIImportArguments& arguments);
    [[nodiscard]] MSPCURL checkedTemplateURL(const std::string& templatePath) const;
    [[nodiscard]] std::vector<std::string> inputFiles(const MSPDIImportArguments& arguments) const;
    [[nodiscard]] std::vector<std::string> listedInputFiles(const MSPDIImportArguments& arguments) const;
    void importEntry(const std::string& entry, const MSPCURL& templateURL, const MSPDIImportArguments& arguments);
    [[nodiscard]] std::string checkedInputPath(const std::string& entry) const;
    void bringToDisk();

    const MSPCServices& _services;
    MSPDIFileImport _importFile;
    bool _includesInputExtension = false;
    bool _overwritesTarget = false;
    bool _lastResult = false;
    std::set<std::string> _outputFolders;  // of the imports so far
    std::shared_ptr<std::map<std::string, std::uint64_t>> _bundleNumbers =
        std::make_shared<std::map<std::string, std::uint64_t>>();
};
