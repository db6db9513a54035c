#include "MSPDIFatesByPath.h"

#include <fmt/format.h>

#include <array>
#include <vector>

#include "MSPCCharacters.h"
#include "MSPCMessage.h"
#include "MSPDIElementTable.h"

namespace {

// What is kept of each element, leaf, and end of an element is a number, with others behind it where it says so: which
// line of the table (0 for none: the name follows) and what happens there. Nearly all take two bytes.
constexpr std::size_t entering = MSPDIFateNames.size();
constexpr std::size_t leaving = entering + 1;
constexpr std::size_t numbered = 8;  // another number than 1 follows
constexpr std::size_t lineStep = 16;

constexpr std::size_t pieceSize = std::size_t(1) << 18U;
// The longest form of a number, seven bits a byte.
constexpr std::size_t longestNumber = 10;
static_assert(2 * longestNumber <= MSPDIFatesByPath::LongestPut);

// The lower seven bits first; the eighth says that more follow.
char* putNumber(std::size_t number, char* at) {
    constexpr std::size_t bits = 7;
    constexpr std::size_t more = 1U << bits;
    for (; number >= more; number >>= bits) {
        *at++ = static_cast<char>(number % more + more);
    }
    *at++ = static_cast<char>(number);
    return at;
}

void appendNumber(std::size_t number, std::string& bytes) {
    std::array<char, longestNumber> put{};
    bytes.append(put.data(), static_cast<std::size_t>(putNumber(number, put.data()) - put.data()));
}

std::size_t takeNumber(const char*& at) {
    constexpr std::size_t bits = 7;
    constexpr std::size_t more = 1U << bits;
    std::size_t number = 0;
    for (std::size_t shift = 0;; shift += bits) {
        const std::size_t byte = static_cast<unsigned char>(*at++);
        number |= (byte % more) << shift;
        if (byte < more) {
            return number;
        }
    }
}

char* putKnown(const MSPDIElementTree& known, std::size_t number, std::size_t what, char* at) {
    at = putNumber((known.index() + 1) * lineStep + (number == 1 ? 0 : numbered) + what, at);
    return number == 1 ? at : putNumber(number, at);
}

// Puts the paths together again.
class Reading {
public:
    explicit Reading(MSPDIFateReader& reader) : _reader(reader), _firsts(MSPDIProjectElements().size()) {}

    void read(std::string_view bytes) {
        const auto* at = bytes.data();
        const auto* const end = at + bytes.size();
        while (at != end) {
            const auto entry = takeNumber(at);
            const auto what = entry % numbered;
            const auto line = entry / lineStep;
            const bool isNumbered = entry % lineStep >= numbered;
            if (what == leaving) {
                leave();
            } else if (what == entering) {
                enter(takeStep(line, isNumbered, at));
            } else if (line > 0 && !isNumbered) {  // nearly all of them
                tell(firstOf(line), line, static_cast<MSPDIFate>(what));
            } else {
                tell(takeStep(line, isNumbered, at), std::nullopt, static_cast<MSPDIFate>(what));
            }
        }
    }

private:
    // Valid until the next one is taken.
    std::string_view takeStep(std::size_t line, bool isNumbered, const char*& at) {
        const auto number = isNumbered ? takeNumber(at) : 1;
        if (line > 0) {
            return number == 1 ? firstOf(line) : _step = stepOf(MSPDIProjectElements().nameAt(line - 1), number);
        }
        const auto size = takeNumber(at);
        _step = stepOf({at, size}, number);
        at += size;
        return _step;
    }

    const std::string& firstOf(std::size_t line) {
        auto& first = _firsts[line - 1];
        if (first.empty()) {
            first = stepOf(MSPDIProjectElements().nameAt(line - 1), 1);
        }
        return first;
    }

    // The project has no name in the table, and no number.
    static std::string stepOf(std::string_view name, std::size_t number) {
        return name.empty() ? "Project" : fmt::format("{}[{}]", name, number);
    }

    void enter(std::string_view step) {
        _starts.push_back(_path.size());
        _path += step;
        _path += '/';
        _isTold = false;
    }

    void leave() {
        _path.resize(_starts.back());
        _starts.pop_back();
        _isTold = false;
    }

    void tell(std::string_view step, std::optional<std::size_t> line, MSPDIFate fate) {
        if (!_isTold) {
            _reader.below(_path);
            _isTold = true;
        }
        _reader.leaf(step, line, fate);
    }

    MSPDIFateReader& _reader;
    std::vector<std::string> _firsts;  // steps with the number 1, by the line of the table
    std::string _step;
    std::string _path = "/";
    bool _isTold = false;
    std::vector<std::size_t> _starts;
};

class WholePaths final : public MSPDIFateReader {
public:
    explicit WholePaths(const std::function<void(const std::string& path, MSPDIFate fate)>& visit) : _visit(visit) {}
    void below(std::string_view path) override { _path = path; }
    void leaf(std::string_view step, std::optional<std::size_t> /*line*/, MSPDIFate fate) override {
        _visit(_path + std::string(step), fate);
    }

private:
    const std::function<void(const std::string& path, MSPDIFate fate)>& _visit;
    std::string _path;
};

}  // namespace

std::string MSPDINameInPath(std::string_view name) {
    return std::string(MSPCIsUTF8(name) ? name : MSPCShownText(name).view());
}

void MSPDIFatesByPath::enter(const MSPDIPathStep& step) {
    addStep(step, entering);
}

void MSPDIFatesByPath::leave() {
    _pieces.back() += static_cast<char>(leaving);
}

void MSPDIFatesByPath::add(const MSPDIPathStep& leaf, MSPDIFate fate) {
    addStep(leaf, MSPDIFateIndex(fate));
}

void MSPDIFatesByPath::addAll(std::string_view leaves) {
    roomFor(leaves.size()) += leaves;
}

char* MSPDIFatesByPath::put(const MSPDIElementTree& known, std::size_t number, MSPDIFate fate, char* at) {
    return putKnown(known, number, MSPDIFateIndex(fate), at);
}

void MSPDIFatesByPath::addStep(const MSPDIPathStep& step, std::size_t what) {
    if (step.known == nullptr) {
        addUnknown(step, what);
        return;
    }
    std::array<char, LongestPut> bytes{};
    const auto size = putKnown(*step.known, step.number, what, bytes.data()) - bytes.data();
    roomFor(LongestPut).append(bytes.data(), static_cast<std::size_t>(size));
}

void MSPDIFatesByPath::addUnknown(const MSPDIPathStep& step, std::size_t what) {
    const auto name = MSPDINameInPath(step.name);
    auto& bytes = roomFor(3 * longestNumber + name.size());
    appendNumber(numbered + what, bytes);
    appendNumber(step.number, bytes);
    appendNumber(name.size(), bytes);
    bytes += name;
}

std::string& MSPDIFatesByPath::roomFor(std::size_t size) {
    if (_pieces.empty() || _pieces.back().size() + size > pieceSize) {
        _pieces.emplace_back().reserve(pieceSize);
    }
    return _pieces.back();
}

void MSPDIFatesByPath::clear() {
    _pieces.clear();
}

void MSPDIFatesByPath::read(MSPDIFateReader& reader) const {
    Reading reading(reader);
    for (const auto& piece : _pieces) {
        reading.read(piece);
    }
}

void MSPDIFatesByPath::forEach(const std::function<void(const std::string& path, MSPDIFate fate)>& visit) const {
    WholePaths paths(visit);
    read(paths);
}
