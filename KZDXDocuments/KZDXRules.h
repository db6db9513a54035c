#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KZDXBundle.h"
#include "KZDXFinding.h"
#include "KZDXScenario.h"

// The name of a rule, what breaking it means, and the rule in words.
struct KZDXRule {
    std::string_view name;
    KZDXSeverity severity;
    std::string_view what;  // "Every task and every resource has an id"
};

// The ids of all tasks, and of all resources, of a scenario.
struct KZDXIds {
    std::set<std::string, std::less<>> tasks;
    std::set<std::string, std::less<>> resources;
};

// One scenario of a bundle.
struct KZDXSubject {
    const KZDXContents& contents;
    const KZDXEntry& entry;  // the scenario in the contents
    const KZDXXMLFile& file;
    const KZDXScenario& scenario;
    const KZDXIds& idsOfActual;  // for what baselines leave out
};

// Which of the comments a scenario has that every import writes: two at its beginning, and the names of its sections.
struct KZDXImportComments {
    bool tellImporter = false;  // and when it was
    bool tellPlan = false;
    bool nameSections = false;

    // One of them is enough to tell that the scenario is of an import.
    [[nodiscard]] bool areOfImport() const { return tellImporter || tellPlan || nameSections; }

    explicit KZDXImportComments(const MSPCXMLNode& root);
};

// Takes what a rule finds: the element, and what is wrong with it.
using KZDXTell = std::function<void(const MSPCXMLNode& element, std::string text)>;

// A rule about the table of contents alone, or about one scenario. Each costs at most a sorting of what it looks at.
struct KZDXContentsRule {
    KZDXRule rule;
    void (*look)(const KZDXContents& contents, const KZDXTell& tell);
};
struct KZDXScenarioRule {
    KZDXRule rule;
    void (*look)(const KZDXSubject& subject, const KZDXTell& tell);
};

// The rules about the files themselves, which whoever reads them applies.
inline constexpr KZDXRule KZDXXMLRule = {"xml", KZDXSeverity::Fault, "Every file is well-formed XML"};
inline constexpr KZDXRule KZDXMissingFileRule = {"missing-file", KZDXSeverity::Fault,
                                                 "The table of contents and every scenario named there have a file"};
inline constexpr KZDXRule KZDXUnnamedFileRule = {"unnamed-file", KZDXSeverity::Fault,
                                                 "Every scenario file is named in the table of contents"};

// Nobody asks for such a file, so that it is no fault of the document.
inline constexpr KZDXRule KZDXUnreadableFileRule = {
    "unreadable-file", KZDXSeverity::Note, "A file beside the scenarios has their extension, but cannot be read"};

// Where one scenario tells the importer, or names its sections as imports do, the others are of an import as well:
// whoever reads all of them applies it.
inline constexpr KZDXRule KZDXImportCommentRule = {"import-comment", KZDXSeverity::Fault,
                                                   "Every scenario of an import tells the importer and the plan"};

[[nodiscard]] std::span<const KZDXContentsRule> KZDXContentsRules();

// The rules about a scenario, by what they are about.
[[nodiscard]] std::span<const KZDXScenarioRule> KZDXReferenceRules();  // ids, and elements that name them
[[nodiscard]] std::span<const KZDXScenarioRule> KZDXOutlineRules();    // groups and circles
[[nodiscard]] std::span<const KZDXScenarioRule> KZDXValueRules();      // dates, numbers and words
[[nodiscard]] std::span<const KZDXScenarioRule> KZDXScheduleRules();   // working times

// All of them in the order in which they are looked at, those about files first.
[[nodiscard]] std::vector<KZDXRule> KZDXRules();
