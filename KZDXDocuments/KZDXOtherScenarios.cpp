#include "KZDXOtherScenarios.h"

#include <fmt/format.h>

#include <map>
#include <utility>

#include "KZDXWords.h"

namespace {

// A document whose scenarios are opened one after the other. Any number of them may name one file, which is not to be
// read as often.
class Scenarios {
public:
    Scenarios(const KZDXOpenDocument& document, KZDXFiles& files) : _document(document), _files(files) {}

    std::optional<KZDXOpenDocument> open(const KZDXEntry& entry, std::string& failure) {
        constexpr int most = 2;
        if (++_readings[entry.filename] > most) {
            failure = fmt::format("{}: too many scenarios share this file", entry.filename);
            return std::nullopt;
        }
        return _document.another(_files, std::string(entry.name), failure);
    }

private:
    const KZDXOpenDocument& _document;
    KZDXFiles& _files;
    std::map<std::string_view, int> _readings;
};

class OtherScenarios {
public:
    OtherScenarios(const KZDXOpenDocument& old, KZDXFiles& oldFiles, const KZDXOpenDocument& now, KZDXFiles& newFiles)
        : _old(old), _now(now), _oldScenarios(old, oldFiles), _newScenarios(now, newFiles) {}

    KZDXOtherScenarios compare() {
        for (const auto& entry : _old.contents().entries()) {
            const auto* const other = _now.contents().entryNamed(entry.name);
            const bool isFirst = _old.contents().entryNamed(entry.name) == &entry;
            if (other == nullptr || !isFirst || entry.name == _old.scenarioName() || _result.obstacle) {
                continue;
            }
            if (const auto count = differencesBetween(entry, *other); count > 0) {
                tell(entry.name, count);
            }
        }
        return std::move(_result);
    }

private:
    void tell(std::string_view name, std::size_t count) {
        _result.differences.push_back({"scenario",
                                       "scenario",
                                       {},
                                       {},
                                       fmt::format("the scenario {} differs, {} difference{}: --scenario {} tells",
                                                   KZDXQuoted(name), count, count == 1 ? "" : "s", KZDXShortened(name)),
                                       {},
                                       {}});
    }

    std::size_t differencesBetween(const KZDXEntry& before, const KZDXEntry& after) {
        const auto [found, isNew] = _counts.try_emplace({before.filename, after.filename}, 0);
        if (isNew) {
            found->second = count(before, after);
        }
        return found->second;
    }

    std::size_t count(const KZDXEntry& before, const KZDXEntry& after) {
        std::string failure;
        const auto old = _oldScenarios.open(before, failure);
        const auto now = old ? _newScenarios.open(after, failure) : std::nullopt;
        if (!now) {
            _result.obstacle = KZDXScenarioObstacle{old.has_value(), std::move(failure)};
            return 0;
        }
        KZDXDiffOptions options;
        options.comparesContents = false;
        return KZDXDiff(*old, *now, options).size();
    }

    const KZDXOpenDocument& _old;
    const KZDXOpenDocument& _now;
    Scenarios _oldScenarios;
    Scenarios _newScenarios;
    std::map<std::pair<std::string_view, std::string_view>, std::size_t> _counts;  // of differences, by the files
    KZDXOtherScenarios _result;
};

}  // namespace

KZDXOtherScenarios KZDXDiffOtherScenarios(const KZDXOpenDocument& old, KZDXFiles& oldFiles, const KZDXOpenDocument& now,
                                          KZDXFiles& newFiles) {
    return OtherScenarios(old, oldFiles, now, newFiles).compare();
}
