#include "MSPDIExternalTexts.h"

#include <algorithm>

#include "MSPCByteStreams.h"
#include "MSPCFileSystem.h"

namespace {

constexpr std::string_view declaration = "<!ENTITY";
constexpr std::string_view blanks = " \t\r\n";
// A character for private use, in UTF-8 and as a reference, which every encoding can hold.
constexpr std::string_view mark = "\xEE\x83\xBF";
constexpr std::string_view markInQuotes = "\"&#xE0FF;\"";

// Document types stand at the beginning of a file.
bool mayDeclareTexts(const std::string& path, const MSPCFileSystem& fileSystem) {
    constexpr std::size_t size = 65'536;
    const auto source = fileSystem.openFile(path);
    std::string beginning(size, '\0');
    std::size_t count = 0;
    while (source && count < size) {
        const auto more = source->read(beginning.data() + count, size - count);
        if (more.value_or(0) == 0) {
            break;
        }
        count += *more;
    }
    beginning.resize(count);
    return beginning.find(declaration) != std::string::npos;
}

std::string_view nextWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const auto word = text.substr(0, std::min(text.find_first_of(blanks), text.size()));
    text.remove_prefix(word.size());
    return word;
}

// Where the outside is named in a declaration that begins there: behind the name of the text, up to the end of the
// declaration; empty for a text of the plan's own.
std::string_view outsideNamedIn(std::string_view text) {
    auto rest = text.substr(declaration.size());
    const bool isForMarkup = nextWord(rest) == "%";
    const auto outside = rest;
    const auto kind = nextWord(rest);
    // Up to the next bracket outside of quotation marks.
    char quote = '\0';
    const auto end = std::find_if(rest.begin(), rest.end(), [&quote](char character) {
        if (quote == '\0' && (character == '"' || character == '\'')) {
            quote = character;
        } else if (character == quote) {
            quote = '\0';
        }
        return quote == '\0' && character == '>';
    });
    const bool isOutside = !isForMarkup && (kind == "SYSTEM" || kind == "PUBLIC") && end != rest.end();
    const auto length = outside.size() - rest.size() + static_cast<std::size_t>(end - rest.begin());
    return isOutside ? outside.substr(0, length) : std::string_view();
}

}  // namespace

std::optional<std::string> MSPDIWithMarkedExternalTexts(const std::string& path, const MSPCFileSystem& fileSystem) {
    const auto content = mayDeclareTexts(path, fileSystem) ? fileSystem.readFile(path) : std::nullopt;
    if (!content) {
        return std::nullopt;
    }
    const std::string_view bytes = *content;
    std::string marked;
    std::size_t taken = 0;
    for (auto at = bytes.find(declaration); at != std::string_view::npos; at = bytes.find(declaration, at + 1)) {
        const auto outside = outsideNamedIn(bytes.substr(at));
        if (!outside.empty() && at >= taken) {
            const auto start = static_cast<std::size_t>(outside.data() - bytes.data());
            marked.append(bytes.substr(taken, start - taken)).append(" ").append(markInQuotes);
            taken = start + outside.size();
        }
    }
    return taken == 0 ? std::nullopt : std::optional(marked.append(bytes.substr(taken)));
}

void MSPDIRemoveExternalTexts(std::string& text) {
    std::string rest;
    std::size_t taken = 0;
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, taken)) {
        rest.append(text, taken, at - taken);
        taken = at + mark.size();
    }
    text = rest.append(text, taken);
}

bool MSPDIHoldsExternalText(std::string_view text) {
    return text.find(mark) != std::string_view::npos;
}
