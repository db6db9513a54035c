#include "KZDXXMLFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

#include "KZDXFiles.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLLexis.h"
#include "MSPCXMLLoader.h"

namespace {

// Offsets beyond 32 bits never come up: the strict parser takes no more than 31.
std::vector<std::uint32_t> lineEndsOf(std::string_view text) {
    std::vector<std::uint32_t> lineEnds;
    for (std::size_t start = 0; start < text.size();) {
        const auto* const found = static_cast<const char*>(std::memchr(text.data() + start, '\n', text.size() - start));
        if (found == nullptr) {
            break;
        }
        const auto offset = static_cast<std::size_t>(found - text.data());
        lineEnds.push_back(static_cast<std::uint32_t>(offset));
        start = offset + 1;
    }
    return lineEnds;
}

int lineAt(const std::vector<std::uint32_t>& lineEnds, std::size_t offset) {
    const auto next = std::lower_bound(lineEnds.begin(), lineEnds.end(), offset);
    return static_cast<int>(next - lineEnds.begin()) + 1;
}

bool isDecimal(std::string_view text) {
    return !text.empty() && text.find_first_not_of("+-.0123456789") == std::string_view::npos && text.front() != '+';
}

// What the parser calls by the names of its functions, in words.
std::string reasonInWords(std::string message) {
    if (message == "xmlParseEntityRef: no name") {
        return "an & that is not written as &amp;";
    }
    return message == "Document is empty" ? "this is not XML" : std::move(message);
}

template <typename Number>
std::optional<Number> numberFrom(std::string_view text) {
    Number number{};
    const auto* const end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, number);
    return problem == std::errc() && stop == end && isDecimal(text) ? std::optional(number) : std::nullopt;
}

}  // namespace

KZDXXMLFile::KZDXXMLFile(std::string name, MSPCXMLDocument document, std::vector<std::uint32_t> lineEnds)
    : _name(std::move(name)), _document(std::move(document)), _lineEnds(std::move(lineEnds)) {
}

std::optional<KZDXXMLFile> KZDXXMLFile::read(std::string name, std::string bytes, KZDXXMLError& error) {
    auto utf8 = xmlBytesAsUtf8(std::move(bytes));
    if (!utf8) {
        error = {1, "an encoding that nobody knows"};
        return std::nullopt;
    }
    auto lineEnds = lineEndsOf(*utf8);
    if (utf8->empty()) {
        error = {1, "the file is empty"};
        return std::nullopt;
    }
    // Parsers end at one, and would not see what is behind it.
    if (const auto nul = utf8->find('\0'); nul != std::string::npos) {
        error = {lineAt(lineEnds, nul), "a NUL byte, which XML cannot hold"};
        return std::nullopt;
    }
    MSPCXMLRepair problem;
    auto document = MSPCXMLLoader::loadStrictly(std::move(*utf8), problem);
    if (!document) {
        error = {problem.line, reasonInWords(std::move(problem.message))};
        return std::nullopt;
    }
    return KZDXXMLFile(std::move(name), std::move(*document), std::move(lineEnds));
}

std::optional<KZDXXMLFile> KZDXXMLFile::readFrom(KZDXFiles& files, const std::string& name, std::string& failure) {
    std::string reason;
    auto bytes = files.read(name, reason);
    if (!bytes) {
        failure = fmt::format("{}: {}", name, reason);
        return std::nullopt;
    }
    KZDXXMLError error;
    auto file = read(name, std::move(*bytes), error);
    if (!file) {
        failure = error.line > 0 ? fmt::format("{}: line {}: {}", name, error.line, error.reason)
                                 : fmt::format("{}: {}", name, error.reason);
    }
    return file;
}

int KZDXXMLFile::lineOf(const MSPCXMLNode& element) const {
    const auto offset = element.offset();
    return offset ? lineAt(_lineEnds, *offset) : 0;
}

bool KZDXBeginsAsXML(std::string_view beginning) {
    if (beginning.starts_with(MSPCXMLLexis::ByteOrderMark)) {
        beginning.remove_prefix(MSPCXMLLexis::ByteOrderMark.size());
    }
    beginning.remove_prefix(std::min(beginning.find_first_not_of(MSPCXMLLexis::Blanks), beginning.size()));
    return beginning.starts_with('<') || beginning.starts_with("\xFF\xFE") || beginning.starts_with("\xFE\xFF");
}

std::optional<std::string_view> KZDXAttribute(const MSPCXMLNode& element, std::string_view name) {
    const auto attribute = element.attribute(name);
    if (!attribute) {
        return std::nullopt;
    }
    std::string unused;  // an attribute's value is always in one piece
    return attribute.stringValue(unused);
}

std::optional<std::string> KZDXChildText(const MSPCXMLNode& element, std::string_view name) {
    const auto child = element.firstChildElement(name);
    return child ? std::optional(child.stringValue()) : std::nullopt;
}

MSPCXMLNode KZDXElementFrom(MSPCXMLNode node) {
    while (node && !node.isElement()) {
        node = node.nextSibling();
    }
    return node;
}

std::optional<std::int64_t> KZDXInteger(std::string_view text) {
    return numberFrom<std::int64_t>(text);
}

std::optional<double> KZDXNumber(std::string_view text) {
    return numberFrom<double>(text);
}
