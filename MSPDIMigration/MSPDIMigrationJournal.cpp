#include "MSPDIMigrationJournal.h"

#include <utility>

std::optional<std::string> MSPDIMigrationJournal::read(std::unique_ptr<MSPCJournal> file) {
    _file = std::move(file);
    return _file->forEachLine([this](MSPCJournal::Place place, std::string_view line) {
        if (const auto record = MSPDIRecordFrom(line, _outputFolder)) {
            _places.set(record->plan, 2 * place);
        }
    });
}

std::optional<MSPDIMigrationRecord> MSPDIMigrationJournal::recordAt(std::uint64_t number) const {
    return MSPDIRecordFrom(_file->lineAt(number / 2), _outputFolder);
}

std::optional<MSPDIMigrationRecord> MSPDIMigrationJournal::recordOf(const std::string& plan) {
    const auto* const number = _places.find(plan);
    return number == nullptr ? std::nullopt : recordAt(*number);
}

std::optional<std::string> MSPDIMigrationJournal::keep(const MSPDIMigrationRecord& record) {
    const auto place = _file->end();
    auto failure = _file->append(MSPDILineOf(record, _outputFolder));
    if (!failure) {
        _places.set(record.plan, 2 * place);
    }
    return failure;
}

std::optional<MSPDIMigrationRecord> MSPDIMigrationJournal::takeRecordOf(const std::string& plan) {
    auto* const number = _places.find(plan);
    if (number == nullptr) {
        return std::nullopt;
    }
    *number |= 1U;
    return recordAt(*number);
}

void MSPDIMigrationJournal::forEachOther(const std::function<void(const MSPDIMigrationRecord&)>& take) {
    if (!_file) {
        return;
    }
    // What cannot be read any more is missing from what is told; that it was readable when the run began is all that is
    // known.
    static_cast<void>(_file->forEachLine([&](MSPCJournal::Place place, std::string_view line) {
        const auto record = MSPDIRecordFrom(line, _outputFolder);
        const auto* const number = record ? _places.find(record->plan) : nullptr;
        if (number != nullptr && *number == 2 * place) {
            take(*record);
        }
    }));
}
