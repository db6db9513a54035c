#include "MSPDIMend.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "MSPCException.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPDIElementsMended.h"
#include "MSPDIMarkup.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"

namespace {

constexpr std::string_view planRoot = "Project";
constexpr std::string_view embedded = "embedded";
constexpr std::string_view namespaceStep = "namespace";
// One tells why the plan is refused, one whether mending it helped. The third one is for what only shows then.
constexpr int mostImports = 3;

bool asksForImprovement(const MSPDIMendOptions& options) {
    return options.isAll || !options.only.empty();
}

// Of a failed load the importer's words say little.
std::string obstacleOf(const MSPDIRefusal& refusal) {
    if (refusal.name == "MSPEXMLException") {
        return "It is no XML document, and none that is a plan lies inside it.";
    }
    if (refusal.name == "MSPIMapperException") {
        return "It is an XML document, but no plan that Microsoft Project saved (MSPDI).";
    }
    return refusal.sentence();
}

// With a prefix or without.
bool isPlansRoot(std::string_view name) {
    return name == planRoot || name.ends_with(":Project");
}

// Bytes that are read again as what they are.
std::string utf8Of(MSPCXMLWithBytes loaded) {
    return loaded.isConverted ? MSPDIWithUtf8Declared(std::move(loaded.utf8)) : std::move(loaded.utf8);
}

class Mending {
public:
    Mending(std::string_view name, const MSPCServices& services, const MSPDIMendOptions& options)
        : _name(name), _services(services), _options(options) {}

    MSPDIMended mended(std::string copy) {
        _result.refusal = refusalOf(copy);
        if (!_result.refusal && !asksForImprovement(_options)) {
            return std::move(_result);
        }
        auto refusal = _result.refusal;
        for (int import = 2; import <= mostImports; ++import) {
            if (!treat(copy, refusal)) {
                break;
            }
            refusal = refusalOf(copy);
            if (!refusal) {
                break;
            }
        }
        return concluded(std::move(copy), refusal);
    }

    // What no import has told stands in the way.
    MSPDIMended endedBy(const std::string& reason) { return concluded({}, MSPDIRefusal{"", reason, ""}); }

private:
    [[nodiscard]] std::optional<MSPDIRefusal> refusalOf(const std::string& bytes) {
        ++_result.imports;
        return MSPDIImportBytesInMemory(_name, bytes, _services, MSPDIMemoryKeeping::Names).refusal;
    }

    MSPDIMended concluded(std::string copy, const std::optional<MSPDIRefusal>& refusal) {
        if (refusal) {
            // What imports stays as it is, where an improvement would keep it from that.
            const bool isInTheWay = _result.refusal.has_value();
            _result.verdict = isInTheWay ? MSPDIMendVerdict::NotMendable : MSPDIMendVerdict::ImportsAsIs;
            _result.obstacle = isInTheWay ? obstacleOf(*refusal) : std::string();
            _result.steps.clear();
            _result.isConverted = _result.isRepaired = false;
        } else if (!_result.steps.empty()) {
            _result.verdict = MSPDIMendVerdict::Mended;
            _result.bytes = std::move(copy);
        }
        return std::move(_result);
    }

    // Does all that can be done to the copy at once; false when that is nothing. `refusal` is the copy's.
    bool treat(std::string& copy, const std::optional<MSPDIRefusal>& refusal) {
        auto loaded = refusal ? readWithoutWhatHidesIt(copy, *refusal) : std::nullopt;
        if (loaded) {
            treatPlan(std::move(*loaded), copy, true);
            return true;
        }
        loaded = read(copy);
        bool isTreated = _options.allows(embedded) && takeOut(loaded, copy);
        // What was just taken out has not been refused yet.
        if (loaded && refusal && refusal->name == "MSPIMapperException" && !isTreated && !_isNamespaceMended) {
            if (!_options.allows(namespaceStep) || !mendNamespace(*loaded, copy)) {
                copy = utf8Of(std::move(*loaded));
                return false;
            }
            isTreated = true;
            loaded = read(copy);
        }
        if (!loaded) {
            return isTreated;
        }
        if (loaded->document.root().name() != planRoot) {
            copy = utf8Of(std::move(*loaded));
            return isTreated;
        }
        return treatPlan(std::move(*loaded), copy, refusal.has_value()) || isTreated;
    }

    [[nodiscard]] std::optional<MSPCXMLWithBytes> read(std::string& bytes) const {
        return MSPCXMLLoadWithBytes(bytes, planRoot,
                                    asksForImprovement(_options) ? MSPDIElementsImproved() : MSPDIElementsMended());
    }

    // What the refusal says tells that the plan is not where an import looks, or not declared as one, and the bytes
    // show where and what it is: then what is around it need not be read first, which takes long where its markup is
    // broken. None where this does not lead to a plan.
    [[nodiscard]] std::optional<MSPCXMLWithBytes> readWithoutWhatHidesIt(const std::string& copy,
                                                                         const MSPDIRefusal& refusal) {
        const auto prolog = MSPCXMLLexis::prologOf(copy);
        const bool isXML = refusal.name == "MSPIMapperException";
        if ((!isXML && refusal.name != "MSPEXMLException") || prolog.hasInternalSubset ||
            !isDeclaredUtf8(std::string_view(copy).substr(0, prolog.end))) {
            return std::nullopt;
        }
        const auto behind = std::string_view(copy).substr(std::min(prolog.end + 1, copy.size()));
        const bool isPlan = isXML && isPlansRoot(behind.substr(0, MSPCXMLLexis::endOfName(behind)));
        const auto step = isPlan ? namespaceStep : embedded;
        if (!_options.allows(step) || (isPlan && _isNamespaceMended)) {
            return std::nullopt;
        }
        auto plan = isPlan ? declaredPlanIn(copy) : MSPDIEmbeddedPlan(copy);
        auto loaded = plan ? read(plan->bytes) : std::nullopt;
        if (!loaded || loaded->document.root().name() != planRoot) {
            return std::nullopt;
        }
        add(MSPDIMendDone{step, 1, {}});
        tellRewriting(loaded);
        _result.isConverted = _result.isConverted || plan->isConverted;
        _isNamespaceMended = _isNamespaceMended || isPlan;
        return loaded;
    }

    static std::optional<MSPDITakenOutPlan> declaredPlanIn(const std::string& copy) {
        auto plan = MSPDIPlanOfOneNamespace(copy);
        return plan ? std::optional(MSPDITakenOutPlan{std::move(*plan)}) : std::nullopt;
    }

    // Puts the plan that lies inside the copy in its place; false where there is none, or all of it is a plan.
    bool takeOut(std::optional<MSPCXMLWithBytes>& loaded, std::string& copy) {
        if (loaded && isPlansRoot(loaded->document.root().name())) {
            return false;
        }
        auto inner = MSPDIEmbeddedPlan(loaded ? loaded->utf8 : copy);
        if (!inner) {
            return false;
        }
        add(MSPDIMendDone{embedded, 1, {}});
        tellRewriting(loaded);
        _result.isConverted = _result.isConverted || inner->isConverted;
        copy = std::move(inner->bytes);
        loaded = read(copy);
        tellRewriting(loaded);
        return true;
    }

    void tellRewriting(const std::optional<MSPCXMLWithBytes>& loaded) {
        _result.isConverted = _result.isConverted || (loaded && loaded->isConverted);
        _result.isRepaired = _result.isRepaired || (loaded && loaded->isWrittenAnew);
    }

    bool mendNamespace(const MSPCXMLWithBytes& loaded, std::string& copy) {
        auto plain = MSPDIPlanOfOneNamespace(loaded.isConverted ? MSPDIWithUtf8Declared(loaded.utf8) : loaded.utf8);
        if (!plain) {
            return false;
        }
        add(MSPDIMendDone{namespaceStep, 1, {}});
        _result.isConverted = _result.isConverted || loaded.isConverted;
        _result.isRepaired = _result.isRepaired || loaded.isWrittenAnew;
        copy = std::move(*plain);
        _isNamespaceMended = true;
        return true;
    }

    // The keys of fields come behind the fields, and what cannot be mapped behind all that is new.
    bool treatPlan(MSPCXMLWithBytes loaded, std::string& copy, bool isRefused) {
        MSPDIPatient patient(std::move(loaded), _options);
        MSPDIMendMissingUIDs(patient);
        MSPDIMendDuplicateRoots(patient);
        MSPDIMendRootTask(patient);
        MSPDIMendOutline(patient);
        MSPDIMendCalendarOrder(patient);
        MSPDIMendProjectCalendar(patient);
        MSPDIMendStandardCalendar(patient);
        MSPDIMendResourceTypes(patient);
        MSPDIMendResourceWeeks(patient);
        MSPDIMendExceptionsOf2003(patient);
        MSPDIMendRecurringExceptions(patient);
        MSPDIMendWorkWeeks(patient);
        MSPDIMendDeadlines(patient);
        MSPDIMendLags(patient);
        MSPDIMendUnits(patient);
        MSPDIMendTaskDetails(patient);
        MSPDIMendFieldKeys(patient);
        if (isRefused) {
            MSPDIMendWhatCannotBeMapped(patient, _services);
        }
        for (const auto& done : patient.done()) {
            add(done);
        }
        _result.isConverted = _result.isConverted || (patient.isChanged() && patient.isConverted());
        _result.isRepaired = _result.isRepaired || (patient.isChanged() && patient.isWrittenAnew());
        const bool isTreated = patient.isChanged();
        copy = patient.takeBytes();
        return isTreated;
    }

    void add(const MSPDIMendDone& done) {
        auto known = std::find_if(_result.steps.begin(), _result.steps.end(),
                                  [&](const auto& step) { return step.step == done.step; });
        if (known == _result.steps.end()) {
            _result.steps.push_back(done);
            return;
        }
        known->count += done.count;
        for (const auto& place : done.where) {
            if (known->where.size() < _options.mostPlaces) {
                known->where.push_back(place);
            }
        }
    }

    std::string_view _name;
    const MSPCServices& _services;
    const MSPDIMendOptions& _options;
    MSPDIMended _result;
    bool _isNamespaceMended = false;
};

}  // namespace

MSPDIMended MSPDIMendPlan(std::string_view name, std::string bytes, const MSPCServices& services,
                          const MSPDIMendOptions& options) {
    Mending mending(name, services, options);
    try {
        return mending.mended(std::move(bytes));
    } catch (const MSPCException& exception) {
        return mending.endedBy(exception.reason());
    }
}
