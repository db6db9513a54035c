#include "KZDXCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <set>
#include <vector>

#include "KZDXRules.h"
#include "KZDXWords.h"
#include "MSPCPath.h"

namespace {

// "task[@id='t3']"; what many findings share must not grow with each of them.
std::string stepOf(const MSPCXMLNode& element) {
    auto step = KZDXShortened(element.name());
    for (const std::string_view name : {"id", "idref", "day-of-week", "name"}) {
        if (const auto value = KZDXAttribute(element, name)) {
            return fmt::format("{}[@{}='{}']", step, name, KZDXShortened(*value));
        }
    }
    return step;
}

// "scenario/task[@id='t3']/prerequisite-task[@idref='t2']"; whose root it is, the file says.
std::string pathOf(MSPCXMLNode element) {
    const auto root = element.rootElement();
    std::string path;
    for (; element && element != root; element = element.parent()) {
        path.insert(0, fmt::format("/{}", stepOf(element)));
    }
    return KZDXShortened(root.name()) + path;
}

// The task or resource that an element is, or is in; empty where it is in none.
MSPCXMLNode ownerOf(MSPCXMLNode element) {
    const auto root = element.rootElement();
    while (element && element.parent() != root) {
        element = element.parent();
    }
    const bool isOwner = element && (element.name() == "task" || element.name() == "resource");
    return isOwner ? element : MSPCXMLNode();
}

// "Baseline3.xml", as an import names the files of scenarios.
bool isNamedAsScenario(std::string_view name) {
    constexpr std::string_view baseline = "Baseline";
    constexpr std::string_view extension = ".xml";
    if (name == KZDXActualName) {
        return true;
    }
    if (!name.starts_with(baseline) || !name.ends_with(extension) || name.size() < baseline.size() + extension.size()) {
        return false;
    }
    name.remove_prefix(baseline.size());
    name.remove_suffix(extension.size());
    return name.find_first_not_of("0123456789") == std::string_view::npos;
}

// Looks at one bundle, and enters what it finds.
class Look {
public:
    Look(KZDXFiles& files, KZDXCheck& check) : _files(files), _check(check) {}

    void look() {
        std::string failure;
        const auto names = _files.names(failure);
        if (!names) {
            _check.obstacle = failure;
            return;
        }
        _names.insert(names->begin(), names->end());
        if (!isThere(KZDXContentsName)) {
            lookWithoutContents();
            return;
        }
        auto file = readFile(std::string(KZDXContentsName), [this] {
            add(KZDXMissingFileRule, std::string(KZDXContentsName), 0, "",
                fmt::format("the table of contents is {}", KZDXIsLink));
        });
        if (!file) {
            return;
        }
        const KZDXContents contents(std::move(*file));
        lookAtContents(contents);
        // First the actual one, from which baselines leave something out.
        for (const bool isActual : {true, false}) {
            for (const auto& entry : contents.entries()) {
                if ((entry.name == KZDXActualScenario) == isActual) {
                    lookAtEntry(contents, entry);
                }
            }
        }
        lookForMissingComments();
        lookForUnnamedFiles();
    }

private:
    // A scenario that does not tell that it was imported, and the place of a finding about it among the others.
    struct Uncommented {
        std::size_t place;
        std::string file;
        int line;
        std::string element;
    };

    [[nodiscard]] bool isThere(std::string_view name) const { return _names.contains(std::string(name)); }

    void add(const KZDXRule& rule, std::string file, int line, std::string element, std::string text,
             std::string name = {}) {
        _check.findings.push_back(
            {rule.name, rule.severity, std::move(file), line, std::move(element), std::move(name), std::move(text)});
    }

    // Asked for the same one after the other, since one task may have very many findings and elements.
    const std::string& nameOf(const MSPCXMLNode& owner) {
        if (owner != _named) {
            _named = owner;
            const auto* const element = owner && owner.name() == "task" ? "title" : "name";
            _name = owner ? KZDXShortened(KZDXChildText(owner, element).value_or("")) : std::string();
        }
        return _name;
    }

    void lookWithoutContents() {
        if (isThere(KZDXActualName)) {
            add(KZDXMissingFileRule, std::string(KZDXContentsName), 0, "", "the table of contents is missing");
        } else {
            _check.obstacle = fmt::format("no bundle: it holds no {}", KZDXContentsName);
        }
    }

    // None where it cannot be opened, which is an obstacle, or is a link or no XML, which is a fault.
    template <typename TellLink>
    std::optional<KZDXXMLFile> readFile(const std::string& name, const TellLink& tellLink) {
        std::string failure;
        auto bytes = _files.read(name, failure);
        if (!bytes && failure == KZDXIsLink) {
            tellLink();
            return std::nullopt;
        }
        if (!bytes) {
            _check.obstacle = name + ": " + failure;
            return std::nullopt;
        }
        KZDXXMLError error;
        auto file = KZDXXMLFile::read(name, std::move(*bytes), error);
        if (!file) {
            add(KZDXXMLRule, name, error.line, "", std::move(error.reason));
        }
        return file;
    }

    // What the rules find in one file comes in the order of its lines.
    template <typename Rules, typename Subject>
    void apply(const Rules& rules, const KZDXXMLFile& file, const Subject& subject) {
        for (const auto& [rule, look] : rules) {
            look(subject, [&, &told = rule](const MSPCXMLNode& element, std::string&& text) {
                add(told, file.name(), file.lineOf(element), pathOf(element), std::move(text),
                    nameOf(ownerOf(element)));
            });
        }
        _named = {};  // the next file may lie in the same memory
    }

    void sortFrom(std::size_t first) {
        std::stable_sort(_check.findings.begin() + static_cast<std::ptrdiff_t>(first), _check.findings.end(),
                         [](const auto& one, const auto& other) { return one.line < other.line; });
    }

    void lookAtContents(const KZDXContents& contents) {
        const auto first = _check.findings.size();
        apply(KZDXContentsRules(), contents.file(), contents);
        sortFrom(first);
    }

    // A file that two entries name is looked at once.
    void lookAtEntry(const KZDXContents& contents, const KZDXEntry& entry) {
        const std::string name(entry.filename);
        if (!entry.staysInBundle() || !_seen.insert(name).second) {
            return;
        }
        const auto addMissing = [&](std::string text) {
            add(KZDXMissingFileRule, std::string(KZDXContentsName), contents.file().lineOf(entry.element),
                pathOf(entry.element), std::move(text));
        };
        if (!isThere(name)) {
            addMissing(fmt::format("there is no file '{}'", name));
            return;
        }
        const auto file = readFile(name, [&] { addMissing(fmt::format("'{}' is {}", name, KZDXIsLink)); });
        if (!file) {
            return;
        }
        const auto first = _check.findings.size();
        const KZDXScenario scenario(file->root());
        if (entry.name == KZDXActualScenario) {
            rememberIds(scenario);
        }
        const KZDXSubject subject{contents, entry, *file, scenario, _idsOfActual};
        for (const auto rules : {KZDXReferenceRules(), KZDXOutlineRules(), KZDXValueRules(), KZDXScheduleRules()}) {
            apply(rules, *file, subject);
        }
        sortFrom(first);
        rememberComments(*file, first);
    }

    void rememberComments(const KZDXXMLFile& file, std::size_t place) {
        const KZDXImportComments comments(file.root());
        _isOfImport = _isOfImport || comments.tellImporter || comments.nameSections;
        _isImporterTold = _isImporterTold || comments.tellImporter;
        if (!comments.tellImporter && !comments.tellPlan) {
            _uncommented.push_back({place, file.name(), file.lineOf(file.root()), pathOf(file.root())});
        }
    }

    void lookForMissingComments() {
        if (!_isOfImport) {
            return;
        }
        std::vector<KZDXFinding> found;
        found.swap(_check.findings);
        auto taken = found.begin();
        const auto takeUpTo = [&](auto end) {
            std::move(taken, end, std::back_inserter(_check.findings));
            taken = end;
        };
        for (auto& [place, file, line, element] : _uncommented) {
            takeUpTo(found.begin() + static_cast<std::ptrdiff_t>(place));
            add(KZDXImportCommentRule, std::move(file), line, std::move(element),
                fmt::format("no comments tell the importer and the plan, {}",
                            _isImporterTold ? "as those of other scenarios do"
                                            : "though sections are named as imports name them"));
        }
        takeUpTo(found.end());
    }

    void rememberIds(const KZDXScenario& scenario) {
        const auto remember = [](const KZDXItems& items, auto& ids) {
            for (const auto index : items.byId()) {
                ids.emplace_hint(ids.end(), items[index].id);
            }
        };
        remember(scenario.tasks(), _idsOfActual.tasks);
        remember(scenario.resources(), _idsOfActual.resources);
    }

    // So that pictures and the like are not read as a whole.
    [[nodiscard]] bool beginsAsXML(const std::string& name) const {
        return KZDXBeginsAsXML(_files.beginning(name, KZDXBeginningSize));
    }

    // Files of other kinds may lie beside the scenarios, whatever they hold; whatever it is called, a scenario is one.
    void lookForUnnamedFiles() {
        for (const auto& name : _names) {
            const bool isXMLByName = lowerCased(name).ends_with(".xml");
            if (name == KZDXContentsName || _seen.contains(name) || !(isXMLByName || beginsAsXML(name))) {
                continue;
            }
            std::string failure;
            auto bytes = _files.read(name, failure);
            KZDXXMLError error;
            const auto file = bytes ? KZDXXMLFile::read(name, std::move(*bytes), error) : std::nullopt;
            if (file ? file->root().name() == "scenario" : isNamedAsScenario(name)) {
                add(KZDXUnnamedFileRule, name, file ? file->lineOf(file->root()) : 0, file ? "scenario" : "",
                    "the table of contents does not name this scenario");
            } else if (!file && isXMLByName) {
                add(KZDXUnreadableFileRule, name, bytes ? error.line : 0, "",
                    fmt::format("it may be a scenario that the table of contents does not name: {}",
                                bytes ? error.reason : failure));
            }
        }
    }

    KZDXFiles& _files;
    KZDXCheck& _check;
    std::set<std::string> _names;
    std::set<std::string> _seen;  // files that an entry names
    KZDXIds _idsOfActual;
    std::vector<Uncommented> _uncommented;
    bool _isOfImport = false;  // one scenario tells the importer, or has the sections of an import
    bool _isImporterTold = false;
    MSPCXMLNode _named;  // whose name was asked for last, and the name
    std::string _name;
};

}  // namespace

std::size_t KZDXCheck::count(KZDXSeverity severity) const {
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(), [severity](const auto& finding) { return finding.severity == severity; }));
}

KZDXCheck KZDXCheckBundle(KZDXFiles& files) {
    KZDXCheck check;
    try {
        Look(files, check).look();
    } catch (const std::bad_alloc&) {
        check.obstacle = "not enough memory";
    }
    if (check.obstacle) {
        check.findings.clear();
    }
    return check;
}
