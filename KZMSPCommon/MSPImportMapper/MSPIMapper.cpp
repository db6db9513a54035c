#include "MSPIMapper.h"

#include <fmt/format.h>

#include "MSPCClock.h"
#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPIIdentifiers.h"
#include "MSPIProjectMapper.h"
#include "MSPITOCUpdater.h"
#include "MSPITOCUserData.h"

namespace {

// The namespace that Microsoft publishes for MSPDI.
constexpr std::string_view mspdiNamespace = "http://schemas.microsoft.com/project";
constexpr std::string_view importedFormat = "MSPDI";
constexpr std::string_view importerVersion = "2.x";

std::string_view productYearOfSaveVersion(std::int64_t saveVersion) {
    switch (saveVersion) {
        case 9:
            return "2003";
        case 12:
            return "2007";
        case 14:
            return "2010";
        default:
            return "";
    }
}

}  // namespace

MSPIMapper::MSPIMapper(MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplateXmlDoc, MSPCXMLDocument& kdzxTOCXmlDoc,
                       const MSPIImportInfo& info, const MSPCServices& services)
    : MSPIMappingContext(plan, services), _kdzxTOCXmlDoc(kdzxTOCXmlDoc), _info(info) {
    setKdzxTemplateRoot(kdzxTemplateXmlDoc.root());
    if (info.mspdiBaselineNumber) {
        const auto number = *info.mspdiBaselineNumber;
        if (number < 0 || number >= MSPIBaselineCount) {
            throw MSPCInternalInconsistency(fmt::format("Unexpected baseline number in info dictionary: {}", number));
        }
        setBaselineNumber(number);
    }
}

void MSPIMapper::map() {
    validateSource();
    if (isBaselineScenario()) {
        if (!applyBaseline()) {
            return;
        }
    } else {
        log().log("Mapping active scenario ...");
    }
    // From here until the patches are reverted the input shows the baseline.
    setImportedProjectName(_info.mspdiProjectName.value_or("MS Project project"));
    _settings = MSPIProjectSettings::ofProject(mspProject());
    setMspSaveVersion(_settings.saveVersion);
    const auto currency = isBaselineScenario()
                              ? MSPICurrencySettings()
                              : MSPICurrencySettings::ofProject(mspProject(), isSavedBy2007OrLater(), log());
    if (auto newScenario = newScenarioElement()) {
        const auto scenarioId = makeScenarioDocument(std::move(newScenario));
        updateTOC(scenarioId, currency);
        // What these still hold belongs to the document that is handed over.
        _userDataTOCElements.clear();
        calendarSchedules().clear();
        _kdzxXmlDoc.emplace(std::move(kdzxDocument()));
    }
    revertBaseline();
}

void MSPIMapper::validateSource() const {
    const auto root = mspProject();
    const auto namespaces = root.namespaceDeclarations();
    if (root.name() != "Project" || namespaces.size() != 1 || namespaces.front().uri != mspdiNamespace) {
        throw MSPIMapperException("MSPIMapper.map: Source XML DOM is not a valid MSPDI document.");
    }
}

bool MSPIMapper::applyBaseline() {
    const auto& baselines = plan().baselines();
    const auto& counts = baselines.counts(baselineNumber());
    if (counts.areZero()) {
        return false;
    }
    log().log("Searching for data for baseline {}", baselineNumber());
    log().log("  Baseline Tasks: {}", counts.tasks);
    log().log("  Baseline Resources: {}", counts.resources);
    log().log("  Baseline Assignments: {}", counts.assignments);
    for (const auto& target : baselines.targets(baselineNumber())) {
        _patches.emplace_back(target, _journal);
    }
    setUnchangedLists(baselines.unchangedLists(baselineNumber()));
    setHiddenElements([this] { return hiddenElementsOfBaseline(); });
    // From the last to the first, and back the other way: each removed element finds its place again.
    for (auto patch = _patches.rbegin(); patch != _patches.rend(); ++patch) {
        patch->apply();
    }
    return true;
}

std::vector<MSPCXMLNode> MSPIMapper::hiddenElementsOfBaseline() {
    std::vector<MSPCXMLNode> hidden;
    for (const auto& target : plan().baselines().targets(baselineNumber())) {
        if (!target.hasBaseline) {
            hidden.push_back(target.element);
        }
    }
    return hidden;
}

void MSPIMapper::revertBaseline() {
    for (auto& patch : _patches) {
        patch.revert();
    }
    _patches.clear();
}

MSPCXMLNewElement MSPIMapper::newScenarioElement() {
    MSPIProjectMapper projectMapper(*this, _mspTaskMaxId, _mspResourceMaxId, _userDataTOCElements);
    auto newScenario = projectMapper.newScenarioFromMSPProject(mspProject());
    _userDataChanged = projectMapper.userDataChanged();
    _mspProjectName = projectMapper.mspProjectName();
    return newScenario;
}

// Makes the scenario the root of the document under construction and gives its new id.
std::string MSPIMapper::makeScenarioDocument(MSPCXMLNewElement&& newScenario) {
    const auto scenario = kdzxDocument().setRoot(std::move(newScenario));
    if (!scenario) {
        throw MSPIMapperException("MSPIMapper.map: Failed to create empty XML DOM for target model.");
    }
    addHeaderComments(scenario);
    auto scenarioId = VFXMLCreateID(services().randomSource);
    setAttributeWithNameStringValue(scenario, "id", scenarioId);
    return scenarioId;
}

void MSPIMapper::addHeaderComments(const MSPCXMLNode& scenario) const {
    const auto baselineSuffix = isBaselineScenario() ? fmt::format(" (Baseline {})", baselineNumber()) : std::string();
    insertCommentAtIndex(scenario,
                         fmt::format("  Imported MS Project {}: '{}'{}  ", productYearOfSaveVersion(mspSaveVersion()),
                                     importedProjectName(), baselineSuffix),
                         0);
    insertCommentAtIndex(
        scenario,
        fmt::format("  {}: Kadenza {} {} Importer.  ", MSPCGregorianCalendar::utc().displayText(services().clock.now()),
                    importerVersion, importedFormat),
        0);
}

void MSPIMapper::updateTOC(const std::string& scenarioId, const MSPICurrencySettings& currency) {
    MSPITOCUpdater toc(_kdzxTOCXmlDoc.root());
    if (_info.kdzxScenarioName.value_or("").empty()) {
        throw MSPCInternalInconsistency("No scenario name provided in info dictionary.");
    }
    toc.setScenarioEntry(*_info.kdzxScenarioName, scenarioId);
    toc.raiseNextIds(_mspTaskMaxId, _mspResourceMaxId);
    if (isBaselineScenario()) {
        // Deliberate: every baseline in turn becomes the comparison scenario, so the last one mapped stays it.
        toc.setComparisonScenario(scenarioId);
        return;
    }
    toc.setTitle(_mspProjectName);
    toc.setCurrencyFormat(currency.sampleAmount());
    toc.setEditingScenario(scenarioId);
    if (_userDataChanged) {
        updateTOCUserData(_kdzxTOCXmlDoc.root(), _userDataTOCElements);
    }
    toc.setWorkingTimeUnits(MSPIWorkingTimeUnits::ofSettings(_settings));
}
