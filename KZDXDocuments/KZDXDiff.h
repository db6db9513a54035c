#pragma once

#include <memory>
#include <optional>
#include <string>

#include "KZDXBundle.h"
#include "KZDXDifference.h"
#include "KZDXScenario.h"

// A document that is open for comparison: its table of contents, and one scenario.
class KZDXOpenDocument {
public:
    // Opens the scenario of that name; without a name the actual one, or the first there is. None where the files are
    // no bundle, cannot be read, are not well-formed or have no such scenario, with the reason.
    [[nodiscard]] static std::optional<KZDXOpenDocument> open(KZDXFiles& files, const std::string& scenario,
                                                              std::string& failure);

    // The same document with another scenario of that name, under the same conditions.
    [[nodiscard]] std::optional<KZDXOpenDocument> another(KZDXFiles& files, const std::string& scenario,
                                                          std::string& failure) const;

    [[nodiscard]] const KZDXContents& contents() const { return *_contents; }
    [[nodiscard]] const KZDXScenario& scenario() const { return *_scenario; }
    [[nodiscard]] const std::string& scenarioName() const { return _scenarioName; }

private:
    std::shared_ptr<const KZDXContents> _contents;
    std::unique_ptr<KZDXXMLFile> _file;
    std::unique_ptr<KZDXScenario> _scenario;
    std::string _scenarioName;
};

struct KZDXDiffOptions {
    bool comparesTitles = true;     // of the projects
    bool comparesScenarios = true;  // which scenarios there are
    bool comparesContents = true;   // anything of the tables of contents
};

// What differs between two documents, for people: the project first, then the resources, then the tasks in the order of
// the new document, and what is gone last. Ids of scenarios and times of imports never count.
[[nodiscard]] KZDXDifferences KZDXDiff(const KZDXOpenDocument& old, const KZDXOpenDocument& now,
                                       const KZDXDiffOptions& options = {});
