#include "MSPDILossesReport.h"

#include <fmt/format.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <vector>

#include "MSPCMessage.h"
#include "MSPDIInWords.h"
#include "MSPDIJSON.h"
#include "MSPDIMendForLoss.h"
#include "MSPDIValueWords.h"

namespace {

using JSON = nlohmann::ordered_json;

// Values of a plan in words. There may be hundreds of thousands, and the same dates and durations come over and over.
class ShownValues {
public:
    // Valid until the next one is asked for.
    std::string_view of(const MSPDILoss& loss, const MSPDIPlace& place) {
        // What was mended is told whole: its end says where.
        if (loss.kind == "overwritten-by-repair") {
            return _other = MSPCShownText(place.value).view();
        }
        if (!place.targetUID.empty() || place.value.size() > longestKept) {
            return _other = MSPDIValueInWords(place);
        }
        auto& entry = _entries.at(std::hash<std::string_view>()(place.value) % _entries.size());
        const auto element = std::string_view(place.path).substr(place.path.rfind('/') + 1);
        if (entry.value != place.value || entry.unit != place.unit || entry.element != element) {
            entry = {std::string(element), place.value, place.unit, MSPDIValueInWords(place)};
        }
        return entry.words;
    }

private:
    static constexpr std::size_t longestKept = 32;

    struct Entry {
        std::string element;
        std::string value;
        std::string unit;
        std::string words;
    };
    std::vector<Entry> _entries = std::vector<Entry>(1024);  // no array: the stack may be small
    std::string _other;
};

void writePlace(const MSPDILoss& loss, const MSPDIPlace& place, ShownValues& values, MSPDIUnwrittenBytes& out) {
    out.add("    ");
    if (!place.uid.empty() || !place.name.empty()) {
        out.add(place.name.empty() ? "(no name)" : MSPDIShownValue(place.name), " (UID ", MSPDIShownValue(place.uid),
                "): ");
    }
    out.add(values.of(loss, place), "  ", MSPDIShownPath(place.path), "\n");
}

void writeText(std::string_view key, std::string_view text, MSPDIJSONWriter& writer) {
    writer.member(key, text);
}

// There may be hundreds of thousands.
void writePlace(const MSPDILoss& loss, const MSPDIPlace& place, ShownValues& values, MSPDIJSONWriter& writer) {
    writer.beginObject();
    writeText("path", place.path, writer);
    writeText("uid", place.uid, writer);
    writeText("name", place.name, writer);
    writeText("value", place.value, writer);
    writeText("words", values.of(loss, place), writer);
    writer.endObject();
}

void writeLoss(const MSPDILoss& loss, ShownValues& values, MSPDIJSONWriter& writer) {
    writer.beginObject();
    writeText("kind", loss.kind, writer);
    writer.key("count");
    writer.value(loss.count);
    writeText("element", loss.element, writer);
    writeText("what", loss.what, writer);
    const auto* step = MSPDIMendStepForLoss(loss);
    writer.key("step");
    writer.value(step == nullptr ? JSON(nullptr) : JSON(step->name));
    writer.key("where");
    writer.beginArray();
    for (const auto& place : loss.where) {
        writePlace(loss, place, values, writer);
    }
    writer.endArray();
    writer.endObject();
}

JSON leavesOf(const MSPDIAccount& account) {
    JSON leaves = {{"total", account.total()}};
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        leaves[std::string(MSPDIFateNames[fate])] = account.leaves[fate];
    }
    return leaves;
}

// There may be millions, and nearly all of their paths need no look at their characters.
class FateWriter final : public MSPDIFateReader {
public:
    // Within the object that is to hold them.
    explicit FateWriter(MSPDIJSONWriter& writer)
        : _writer(writer), _start(writer.startOfMember()), _pathStart(_start.size()) {}

    void below(std::string_view path) override {
        _start.replace(_pathStart, std::string::npos, path);
        _isPlain = MSPDIIsPlainInJSON(path);
    }

    void leaf(std::string_view step, std::optional<std::size_t> line, MSPDIFate fate) override {
        if (_isPlain && line) {
            _writer.plainMember(_start, endOf(step, *line, fate));
        } else {
            writeText(_start.substr(_pathStart) + std::string(step), nameOf(fate), _writer);
        }
    }

private:
    static std::string_view nameOf(MSPDIFate fate) { return MSPDIFateNames[MSPDIFateIndex(fate)]; }

    // What stands behind the path of the parent.
    const std::string& endOf(std::string_view step, std::size_t line, MSPDIFate fate) {
        const auto index = line * MSPDIFateNames.size() + MSPDIFateIndex(fate);
        if (index >= _ends.size()) {
            _ends.resize(index + 1);
        }
        if (_ends[index].empty()) {
            _ends[index] = fmt::format(R"({}": "{}")", step, nameOf(fate));
        }
        return _ends[index];
    }

    MSPDIJSONWriter& _writer;
    std::string _start;      // what stands before a member, and the path of the parent
    std::size_t _pathStart;  // in there
    bool _isPlain = false;
    std::vector<std::string> _ends;  // by line and fate
};

void writeFates(const MSPDIFatesByPath& fates, MSPDIJSONWriter& writer) {
    writer.beginObject();
    FateWriter fateWriter(writer);
    fates.read(fateWriter);
    writer.endObject();
}

JSON reasonOf(const MSPDIAccount& account) {
    return account.refusal ? JSON(account.refusal->sentence()) : JSON(nullptr);
}

}  // namespace

void MSPDIWriteLosses(const std::string& plan, const MSPDIAccount& account, MSPDIRun& run) {
    MSPDIUnwrittenBytes out(run.out);
    if (account.refusal) {
        out.add(run.emphasized("Refused by the importer"), ": ", MSPDIReasonInWords(*account.refusal), "\n\n");
    }
    ShownValues values;
    for (const auto& loss : account.losses) {
        out.add(run.emphasized(fmt::format("{} x {}", loss.count, loss.kind)), ": ", loss.what, "\n");
        for (const auto& place : loss.where) {
            writePlace(loss, place, values, out);
        }
        if (loss.where.size() < loss.count) {
            out.add(fmt::format("    ... and {} more (--all shows them)\n", loss.count - loss.where.size()));
        }
        if (const auto* step = MSPDIMendStepForLoss(loss)) {
            out.add(fmt::format("    mspdi mend --only {} saves what it can of it in a copy\n", step->name));
        }
    }
    out.add(fmt::format("{}: {} leaves", MSPCShownText(plan), account.total()));
    for (std::size_t fate = 0; fate < account.leaves.size(); ++fate) {
        out.add(fmt::format(", {} {}", account.leaves[fate], MSPDIFateNames[fate]));
    }
    out.add("\n");
    out.flush();
}

void MSPDIWriteLossesAsJSON(const std::string& plan, const MSPDIAccount& account, const MSPDIFatesByPath* fates,
                            std::ostream& out) {
    MSPDIJSONWriter writer(out);
    writer.beginObject();
    writeText("plan", plan, writer);
    writer.key("importable");
    writer.value(!account.refusal);
    writer.key("reason");
    writer.value(reasonOf(account));
    writer.key("leaves");
    writer.value(leavesOf(account));
    writer.key("losses");
    writer.beginArray();
    ShownValues values;
    for (const auto& loss : account.losses) {
        writeLoss(loss, values, writer);
    }
    writer.endArray();
    if (fates != nullptr) {
        writer.key("fates");
        writeFates(*fates, writer);
    }
    writer.endObject();
    writer.finish();
}
