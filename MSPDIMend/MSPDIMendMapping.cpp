#include <algorithm>
#include <deque>

#include "MSPCLog.h"
#include "MSPDIEmptyDocument.h"
#include "MSPDIMappingTrial.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPIBaselinePatch.h"

namespace {

class NoLog final : public MSPCLog {
protected:
    void write(std::string_view /*message*/) override {}
};

// Shows a baseline in the plan, as an import does, as long as this object lives.
class ShownBaseline {
public:
    ShownBaseline(MSPIPlan& plan, std::int32_t number) {
        for (const auto& target : plan.baselines().targets(number)) {
            _patches.emplace_back(target, _journal);
        }
        for (auto patch = _patches.rbegin(); patch != _patches.rend(); ++patch) {
            patch->apply();
        }
    }
    ~ShownBaseline() {
        for (auto& patch : _patches) {
            patch.revert();
        }
    }
    ShownBaseline(const ShownBaseline&) = delete;
    ShownBaseline& operator=(const ShownBaseline&) = delete;

private:
    MSPIBaselineJournal _journal;
    std::deque<MSPIBaselinePatch> _patches;
};

}  // namespace

void MSPDIMendWhatCannotBeMapped(MSPDIPatient& patient, const MSPCServices& services) {
    NoLog log;
    const MSPCServices quiet{services.clock,        services.timeZone, log, services.userDefaults, services.fileSystem,
                             services.randomSource, MSPCNoProgress()};
    const auto& actual = MSPDIEmptyDocument();
    const auto file = std::find_if(actual.begin(), actual.end(),
                                   [](const auto& candidate) { return candidate.name == "Actual.xml"; });
    const auto kdzxTemplate = MSPCXMLDocument::read(std::string(file->content));
    constexpr std::int32_t ofPlan = -1;
    MSPIGrowthBounds grown;
    MSPDIMappingTrial ofActual(patient, quiet, ofPlan, *kdzxTemplate, grown);
    ofActual.run();
    bool isBeyondMeasure = ofActual.isBeyondMeasure();
    for (std::int32_t number = 0; number < MSPIBaselineCount && !isBeyondMeasure; ++number) {
        if (patient.plan().baselines().counts(number).areZero()) {
            continue;
        }
        std::vector<std::pair<MSPCXMLNode, std::string>> condemned;
        {
            const ShownBaseline shown(patient.plan(), number);
            MSPDIMappingTrial trial(patient, quiet, number, *kdzxTemplate, grown);
            trial.run();
            isBeyondMeasure = trial.isBeyondMeasure();
            condemned = trial.condemned();
        }
        for (const auto& [baseline, name] : condemned) {
            if (const auto value = baseline.lastChildElement(name).element) {
                patient.remove(value);
            }
        }
    }
}
