#include "MSPDIMend.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "MSPCException.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLRepair.h"
#include "MSPDICulprit.h"
#include "MSPDIElementsMended.h"
#include "MSPDIMarkup.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDIRepairWarning.h"

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

// The name of the start tag at an offset; empty where something else begins there.
std::string_view nameOfTagAt(std::string_view bytes, std::size_t offset) {
    const auto tag = bytes.substr(std::min(offset, bytes.size()));
    const auto behind = tag.starts_with('<') ? tag.substr(1) : std::string_view();
    return behind.substr(0, MSPCXMLLexis::endOfName(behind));
}

// Whether bytes begin like those of an encoding of more than one byte for each character, whatever it is.
bool isWide(std::string_view bytes) {
    constexpr std::size_t widest = 4;
    const auto first = bytes.substr(0, widest);
    return first.starts_with("\xFF\xFE") || first.starts_with("\xFE\xFF") || !MSPCXMLLexis::hasNoNul(first);
}

bool beginsWithText(std::string_view bytes) {
    const auto mark = bytes.starts_with(MSPCXMLLexis::ByteOrderMark) ? MSPCXMLLexis::ByteOrderMark.size() : 0;
    const auto first = bytes.find_first_not_of(MSPCXMLLexis::Blanks, mark);
    return first != std::string_view::npos && bytes[first] != '<';
}

// What a plan is made of, and the lists that hold it.
constexpr std::pair<std::string_view, std::string_view> lists[] = {
    {"Calendars", "Calendar"}, {"Tasks", "Task"}, {"Resources", "Resource"}, {"Assignments", "Assignment"}};

// How many the bytes begin, wherever.
std::size_t itemsBegunIn(std::string_view bytes) {
    std::size_t count = 0;
    for (auto tag = bytes.find('<'); tag != std::string_view::npos; tag = bytes.find('<', tag + 1)) {
        const auto name = nameOfTagAt(bytes, tag);
        count += std::any_of(std::begin(lists), std::end(lists), [&](const auto& list) { return list.second == name; })
                     ? 1U
                     : 0U;
    }
    return count;
}

std::size_t itemsOf(const MSPCXMLNode& project) {
    std::size_t count = 0;
    for (const auto& [list, item] : lists) {
        for (const auto& holder : project.childElements(list)) {
            count += holder.childElements(item).size();
        }
    }
    return count;
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
        bool isUncovered = uncoverWithoutImport(copy);
        if (!isUncovered) {
            _result.refusal = refusalOf(copy);
        }
        if (!_result.refusal && !asksForImprovement(_options)) {
            return std::move(_result);
        }
        auto refusal = _result.refusal;
        for (int import = 2; import <= mostImports; ++import) {
            if (!treat(copy, refusal, std::exchange(isUncovered, false))) {
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
        auto import = MSPDIImportBytesInMemory(_name, bytes, _services, MSPDIMemoryKeeping::Names);
        const auto repair = std::find_if(import.warnings.begin(), import.warnings.end(), MSPDIIsRepairWarning);
        if (repair != import.warnings.end() && _result.damage.empty()) {
            _result.damage = std::move(*repair);
        }
        return std::move(import.refusal);
    }

    MSPDIMended concluded(std::string copy, const std::optional<MSPDIRefusal>& refusal) {
        if (refusal) {
            // What imports stays as it is, where an improvement would keep it from that.
            const bool isInTheWay = _result.refusal.has_value();
            _result.verdict = isInTheWay ? MSPDIMendVerdict::NotMendable : MSPDIMendVerdict::ImportsAsIs;
            _result.obstacle = !isInTheWay ? std::string() : _obstacle.empty() ? obstacleOf(*refusal) : _obstacle;
            _result.steps.clear();
            _result.left.clear();
            _result.isConverted = _result.isRepaired = false;
        } else if (!_result.steps.empty()) {
            _result.verdict = MSPDIMendVerdict::Mended;
            _result.bytes = std::move(copy);
        }
        return std::move(_result);
    }

    // A root that is none of a plan's ends an import whatever it holds: where the bytes show that a plan lies inside,
    // or behind prefixes, it is brought to light before anything is read, and only what was around it is imported to
    // learn what the importer says. False where nothing was done.
    bool uncoverWithoutImport(std::string& copy) {
        const auto prolog = MSPCXMLLexis::prologOf(copy);
        const auto root = nameOfTagAt(copy, prolog.end);
        if (isWide(copy) || prolog.hasInternalSubset || root == planRoot || (root.empty() && !beginsWithText(copy)) ||
            !isDeclaredUtf8(std::string_view(copy).substr(0, prolog.end))) {
            return false;
        }
        const auto step = isPlansRoot(root) ? namespaceStep : embedded;
        auto around = step == embedded ? std::string()
                                       : fmt::format("{}</{}>", copy.substr(0, MSPDIEndOfTag(copy, prolog.end)), root);
        if (!uncover(copy, step, around)) {
            _isHopeless = step == embedded;
            return false;
        }
        _loaded = read(copy);
        tellRewriting(_loaded);
        if (!_loaded || _loaded->isWrittenAnew) {
            around += '<';  // with what is broken inside it, too, it is broken
        }
        _result.refusal = refusalOf(around);
        return true;
    }

    // Does one of these steps to bytes in UTF-8; false where it does nothing, or is not allowed. `around` becomes what
    // a plan was taken out of.
    bool uncover(std::string& copy, std::string_view step, std::string& around) {
        if (!_options.allows(step)) {
            return false;
        }
        if (step == namespaceStep) {
            _isNamespaceMended = MSPDIGiveOneNamespace(copy);
        }
        auto plan = step == embedded ? MSPDIEmbeddedPlan(copy) : std::nullopt;
        if (plan) {
            copy = std::move(plan->bytes);
            around = std::move(plan->around);
            _result.isConverted = _result.isConverted || plan->isConverted;
        }
        const bool isDone = plan || (step == namespaceStep && _isNamespaceMended);
        if (isDone) {
            add(MSPDIMendDone{step, 1, {}});
        }
        return isDone;
    }

    // Does all that can be done to the copy at once; false when that is nothing. `refusal` is the copy's, unless it was
    // uncovered since.
    bool treat(std::string& copy, const std::optional<MSPDIRefusal>& refusal, bool isUncovered) {
        if (_isHopeless) {
            return false;
        }
        bool isTreated = isUncovered || (refusal && uncoverRefused(copy, *refusal));
        auto loaded = isUncovered ? std::exchange(_loaded, std::nullopt) : read(copy);
        if (isTreated) {
            tellRewriting(loaded);
        } else if (_options.allows(embedded) && takeOut(loaded, copy)) {
            isTreated = true;
        }
        // What was just taken out has not been refused yet.
        if (loaded && refusal && refusal->name == "MSPIMapperException" && !isTreated && !_isNamespaceMended) {
            if (!_options.allows(namespaceStep) || !mendNamespace(std::move(*loaded), copy)) {
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
        if (isLostByRepair(*loaded, copy)) {
            return false;
        }
        return treatPlan(std::move(*loaded), copy, refusal) || isTreated;
    }

    [[nodiscard]] std::optional<MSPCXMLWithBytes> read(std::string& bytes) const {
        return MSPCXMLLoadWithBytes(bytes, planRoot,
                                    asksForImprovement(_options) ? MSPDIElementsImproved() : MSPDIElementsMended());
    }

    // The same of a plan that only an import has shown to be refused: then what is around it need not be read first,
    // which takes long where its markup is broken; and behind a broken root a repair would leave nothing.
    bool uncoverRefused(std::string& copy, const MSPDIRefusal& refusal) {
        const auto prolog = MSPCXMLLexis::prologOf(copy);
        if (prolog.hasInternalSubset || isWide(copy) || !isDeclaredUtf8(std::string_view(copy).substr(0, prolog.end))) {
            return false;
        }
        std::string around;
        const bool mayBeDeclared = !_isNamespaceMended && isPlansRoot(nameOfTagAt(copy, prolog.end)) &&
                                   (refusal.name == "MSPIMapperException" || !MSPDIIsRootTagSound(copy));
        return (mayBeDeclared && uncover(copy, namespaceStep, around)) ||
               (refusal.name == "MSPEXMLException" && uncover(copy, embedded, around));
    }

    // Puts the plan that lies inside the copy in its place; false where there is none, or all of it is a plan.
    bool takeOut(std::optional<MSPCXMLWithBytes>& loaded, std::string& copy) {
        if (loaded && isPlansRoot(loaded->document.root().name())) {
            return false;
        }
        auto inner = !loaded && dropUnknownDeclaration(copy)
                         ? std::optional(MSPDITakenOutPlan{std::move(copy), {}, false})
                         : MSPDIEmbeddedPlan(loaded ? loaded->utf8 : copy);
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

    // A declaration that names an encoding that nobody knows, or names it in a way that nobody can read, hides a plan
    // whose bytes are UTF-8 all the same.
    static bool dropUnknownDeclaration(std::string& copy) {
        const auto end = copy.starts_with("<?xml") ? copy.find("?>") : std::string::npos;
        const auto root = end == std::string::npos ? end : copy.find_first_not_of(MSPCXMLLexis::Blanks, end + 2);
        const bool isPlan = root != std::string::npos && isPlansRoot(nameOfTagAt(copy, root));
        if (!isPlan || isDeclaredUtf8(copy) || !isWellFormedXML(std::string_view(copy).substr(root))) {
            return false;
        }
        copy.erase(0, root);
        return true;
    }

    void tellRewriting(const std::optional<MSPCXMLWithBytes>& loaded) {
        _result.isConverted = _result.isConverted || (loaded && loaded->isConverted);
        _result.isRepaired = _result.isRepaired || (loaded && loaded->isWrittenAnew);
    }

    // Of a document that only reading shows as it is; the copy is what was read then.
    bool mendNamespace(MSPCXMLWithBytes loaded, std::string& copy) {
        const bool isConverted = loaded.isConverted;
        const bool isWrittenAnew = loaded.isWrittenAnew;
        copy = utf8Of(std::move(loaded));
        if (!MSPDIGiveOneNamespace(copy)) {
            return false;
        }
        add(MSPDIMendDone{namespaceStep, 1, {}});
        _result.isConverted = _result.isConverted || isConverted;
        _result.isRepaired = _result.isRepaired || isWrittenAnew;
        _isNamespaceMended = true;
        return true;
    }

    // A repair that loses most of a plan leaves something that may well import; nobody would call that mended.
    bool isLostByRepair(const MSPCXMLWithBytes& loaded, const std::string& copy) {
        const auto begun = loaded.isWrittenAnew && !isWide(copy) ? itemsBegunIn(copy) : 0;
        const auto left = begun == 0 ? 0 : itemsOf(loaded.document.root());
        const bool isLost = 2 * left < begun;
        if (isLost) {
            _obstacle = fmt::format(
                "Its markup is broken so that a repair would lose most of it: {} of {} calendars, "
                "tasks, resources and assignments are left.",
                left, begun);
        }
        return isLost;
    }

    // The keys of fields come behind the fields, and what cannot be mapped behind all that is new; nothing is tried
    // where a plan grows beyond all measure, which takes as long as an import each time.
    bool treatPlan(MSPCXMLWithBytes loaded, std::string& copy, const std::optional<MSPDIRefusal>& refusal) {
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
        if (refusal && !MSPDIIsBeyondMeasure(refusal->reason)) {
            MSPDIMendWhatCannotBeMapped(patient, _services);
        }
        for (const auto& done : patient.done()) {
            add(done);
        }
        _result.left = patient.left();
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
    bool _isHopeless = false;                 // no plan, and none inside
    std::string _obstacle;                    // beside what an import says
    std::optional<MSPCXMLWithBytes> _loaded;  // what was uncovered
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
