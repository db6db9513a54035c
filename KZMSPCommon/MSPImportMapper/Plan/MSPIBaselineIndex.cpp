#include "MSPIBaselineIndex.h"

#include <algorithm>
#include <string>

#include "MSPCExtensions.h"
#include "MSPCFields.h"

namespace {

std::size_t childCountOf(const MSPCXMLNode& parent) {
    std::size_t count = 0;
    for (auto child = parent.firstChild(); child; child = child.nextSibling()) {
        ++count;
    }
    return count;
}

}  // namespace

std::span<const MSPIBaselineValue> MSPIBaselineValues::append(const MSPCFields& element, const MSPCXMLNode& baseline) {
    const auto fields = element.elements();
    if (_positionByField.size() < fields.size()) {
        _positionByField.resize(fields.size(), None);
    }
    auto& values = blockWithRoomFor(std::min(fields.size(), childCountOf(baseline)));
    const auto start = values.size();
    for (auto child = baseline.firstChild(); child; child = child.nextSibling()) {
        const auto name = child.name();
        const auto field = element.lastPosition(name);
        if (field == fields.size() || name == "Number" || !child.isElement()) {
            continue;
        }
        // Of several of one name, which timephased data gives by the hundred, the last one is what shows.
        auto& position = _positionByField[field];
        if (position == None) {
            position = values.size();
            values.push_back({fields[field].element, {}});
            _shown.push_back({field, child});
            _showUID = _showUID || name.ends_with("UID");
        } else {
            _shown[position - start].value = child;
        }
    }
    std::string buffer;
    for (std::size_t index = 0; index < _shown.size(); ++index) {
        values[start + index].text = kept(_shown[index].value.stringValue(buffer));
        _positionByField[_shown[index].field] = None;
    }
    _shown.clear();
    return std::span(values).subspan(start);
}

std::vector<MSPIBaselineValue>& MSPIBaselineValues::blockWithRoomFor(std::size_t count) {
    constexpr std::size_t blockSize = 4096;
    if (_blocks.empty() || _blocks.back().capacity() - _blocks.back().size() < count) {
        _blocks.emplace_back().reserve(std::max(blockSize, count));
    }
    return _blocks.back();
}

std::string_view MSPIBaselineValues::kept(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* const copy = static_cast<char*>(_texts.allocate(text.size(), 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}

MSPIBaselineIndex::MSPIBaselineIndex(const MSPCXMLDocument& mspDocument, MSPCXMLDeferredElements deferred) {
    const auto project = mspDocument.root();
    addList(project, deferred, "Assignments/Assignment", &MSPIBaselineCounts::assignments);
    addList(project, deferred, "Resources/Resource", &MSPIBaselineCounts::resources);
    addList(project, deferred, "Tasks/Task", &MSPIBaselineCounts::tasks);
}

void MSPIBaselineIndex::addList(const MSPCXMLNode& mspProject, MSPCXMLDeferredElements& deferred,
                                const std::string& path, std::size_t MSPIBaselineCounts::*count) {
    auto walk = deferred.take(path);
    for (const auto& element : nodesForXQuery(mspProject, path)) {
        _elements.push_back(element);
        ++(_elementCounts.*count);
        // A document has its baselines in one place or the other.
        const auto children = walk.next();
        const auto& parent = children ? children->root() : element;
        if (const auto baseline = parent.firstChildElement("Baseline")) {
            addBaselines(baseline, MSPCFields(element), count);
        }
    }
}

void MSPIBaselineIndex::addBaselines(const MSPCXMLNode& firstBaseline, const MSPCFields& element,
                                     std::size_t MSPIBaselineCounts::*count) {
    const auto position = _elements.size() - 1;
    const auto last = MSPILastBaselines(firstBaseline);
    for (std::size_t number = 0; number < last.size(); ++number) {
        if (!last[number]) {
            continue;
        }
        auto& [counts, entries, showsUID, values] = _byNumber[number];
        ++(counts.*count);
        // One with several numbers is read for the first of them.
        const auto* const first = std::find(last.begin(), last.end(), last[number]);
        const auto& reader = _byNumber[static_cast<std::size_t>(first - last.begin())];
        const auto shown =
            &reader != &_byNumber[number] ? reader.entries.back().values : values.append(element, last[number]);
        entries.push_back({position, shown});
        showsUID = showsUID || reader.values.showUID();
    }
}

MSPIUnchangedLists MSPIBaselineIndex::unchangedLists(std::int32_t number) const {
    const auto& baseline = of(number);
    return {.tasks = !baseline.showsUID && baseline.counts.tasks == _elementCounts.tasks,
            .assignments = !baseline.showsUID && baseline.counts.assignments == _elementCounts.assignments};
}

std::vector<MSPIBaselineIndex::Target> MSPIBaselineIndex::targets(std::int32_t number) const {
    std::vector<Target> targets;
    targets.reserve(_elements.size());
    for (const auto& element : _elements) {
        targets.push_back({element, false, {}});
    }
    for (const auto& entry : of(number).entries) {
        auto& target = targets[entry.elementPosition];
        target.hasBaseline = true;
        target.values = entry.values;
    }
    return targets;
}
