#include "MSPDIMachineChunk.h"

#include <charconv>
#include <utility>

#include "MSPCYear.h"

namespace {

// No path holds a zero byte, so that every text can end with one as it is.
constexpr char end = '\0';

void add(std::string& text, std::string_view field) {
    text.append(field) += end;
}

void add(std::string& text, std::size_t number) {
    add(text, std::to_string(number));
}

// Takes one field after the other; where there is none left, or no number, it is good no more.
class Fields {
public:
    explicit Fields(std::string_view text) : _text(text) {}

    std::string text() {
        const auto size = _text.find(end);
        _isGood = _isGood && size != std::string_view::npos;
        if (!_isGood) {
            return {};
        }
        std::string field(_text.substr(0, size));
        _text.remove_prefix(size + 1);
        return field;
    }
    std::size_t number() {
        const auto field = text();
        std::size_t value = 0;
        const auto result = std::from_chars(field.data(), field.data() + field.size(), value);
        _isGood = _isGood && result.ec == std::errc() && result.ptr == field.data() + field.size();
        return value;
    }
    [[nodiscard]] bool isGood() const { return _isGood; }
    [[nodiscard]] bool isAtEnd() const { return _text.empty(); }

private:
    std::string_view _text;
    bool _isGood = true;
};

}  // namespace

std::size_t MSPDIMigrationBounds::processesHere() const {
    return processes == 0 ? MSPCWorkers::processors() : processes;
}

// A share of four fifths, so that the machine goes on working.
MSPCWorkerBounds MSPDIMigrationBounds::boundsHere() const {
    const auto share = MSPCWorkers::memoryOfMachine() / 5 * 4 / processesHere();
    return {std::chrono::seconds(seconds), bytes == 0 ? share : bytes};
}

std::string MSPDITextOf(const MSPDIMachineChunk& chunk) {
    std::string text;
    add(text, chunk.version);
    add(text, chunk.zone);
    add(text, chunk.outputFolder);
    add(text, chunk.each.templateFolder.value_or(""));
    add(text, static_cast<std::size_t>(chunk.each.mending));
    add(text, chunk.each.tellsLosses ? 1U : 0U);
    add(text, chunk.isAsInWinter ? 1U : 0U);
    add(text, chunk.bounds.processes);
    add(text, chunk.bounds.seconds);
    add(text, chunk.bounds.bytes);
    add(text, chunk.plans.size());
    for (const auto& plan : chunk.plans) {
        add(text, plan.number);
        add(text, plan.plan.path);
        add(text, plan.plan.folder);
        add(text, plan.plan.log);
    }
    return text;
}

std::optional<MSPDIMachineChunk> MSPDIChunkFrom(std::string_view text) {
    Fields fields(text);
    MSPDIMachineChunk chunk;
    chunk.version = fields.text();
    chunk.zone = fields.text();
    chunk.outputFolder = fields.text();
    if (auto folder = fields.text(); !folder.empty()) {
        chunk.each.templateFolder = std::move(folder);
    }
    chunk.each.mending = static_cast<MSPDIMending>(fields.number());
    chunk.each.tellsLosses = fields.number() != 0;
    chunk.isAsInWinter = fields.number() != 0;
    chunk.bounds.processes = fields.number();
    chunk.bounds.seconds = fields.number();
    chunk.bounds.bytes = fields.number();
    for (auto count = fields.number(); count > 0 && fields.isGood(); --count) {
        MSPDIMachineChunk::Plan plan;
        plan.number = fields.number();
        plan.plan.path = fields.text();
        plan.plan.folder = fields.text();
        plan.plan.log = fields.text();
        chunk.plans.push_back(std::move(plan));
    }
    return fields.isGood() && fields.isAtEnd() ? std::optional(std::move(chunk)) : std::nullopt;
}

std::string MSPDIVersionOfChunk(std::string_view text) {
    return Fields(text).text();
}

std::string MSPDIOffsetsOf(const MSPCTimeZone& timeZone) {
    constexpr int first = 1980;
    constexpr int last = 2049;
    constexpr MSPCTimeInterval halfYear = 182.0 * MSPCSecondsPerDay;
    std::string text;
    for (int year = first; year <= last; ++year) {
        const MSPCInstant winter{static_cast<double>(MSPCSecondsAtStartOfYear(year))};
        for (const auto instant : {winter, winter + halfYear}) {
            text += std::to_string(timeZone.secondsFromGMT(instant)) + ' ';
        }
    }
    return text;
}
