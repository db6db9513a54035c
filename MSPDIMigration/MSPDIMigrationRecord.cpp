#include "MSPDIMigrationRecord.h"

#include <charconv>
#include <cstdint>

#include "MSPCPath.h"

namespace {

constexpr std::size_t fieldCount = 18;
constexpr std::size_t firstFieldCount = 14;  // of the first records

std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '\\':
                result += "\\\\";
                break;
            case '\t':
                result += "\\t";
                break;
            case '\n':
                result += "\\n";
                break;
            default:
                result += character;
        }
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            result += text[at];
            continue;
        }
        const char code = text[++at];
        result += code == 't' ? '\t' : code == 'n' ? '\n' : code;
    }
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (true) {
        const auto end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

// Texts of a list hold no line feeds themselves.
std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const auto& text : texts) {
        result += result.empty() ? "" : "\n";
        result += text;
    }
    return result;
}

std::vector<std::string> listFrom(const std::string& text) {
    return text.empty() ? std::vector<std::string>() : split(text, '\n');
}

std::string joined(const MSPDIMigrationRecord::Counts& counts) {
    std::vector<std::string> texts;
    texts.reserve(counts.size());
    for (const auto& [name, count] : counts) {
        texts.push_back(std::to_string(count) + " " + name);
    }
    return joined(texts);
}

// A number that fills a text; sets `isGood` to false where it does not.
template <typename Number>
Number numberFrom(std::string_view text, bool& isGood) {
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    isGood = isGood && result.ec == std::errc() && result.ptr == text.data() + text.size();
    return number;
}

MSPDIMigrationRecord::Counts countsFrom(const std::string& text, bool& isGood) {
    MSPDIMigrationRecord::Counts counts;
    for (const auto& entry : listFrom(text)) {
        const auto blank = entry.find(' ');
        isGood = isGood && blank != std::string::npos;
        if (isGood) {
            const auto count = numberFrom<std::size_t>(std::string_view(entry).substr(0, blank), isGood);
            counts.emplace_back(entry.substr(blank + 1), count);
        }
    }
    return counts;
}

std::string absolutePath(const std::string& path, const std::string& folder) {
    if (path == ".") {
        return folder;
    }
    return path.empty() || path.starts_with('/') ? path : pathByAppendingComponent(folder, path);
}

}  // namespace

std::string MSPDIPathInFolder(const std::string& path, const std::string& folder) {
    if (path == folder) {
        return ".";
    }
    return path.starts_with(folder + "/") ? path.substr(folder.size() + 1) : path;
}

std::string MSPDILineOf(const MSPDIMigrationRecord& record, const std::string& outputFolder) {
    const std::string fields[fieldCount] = {record.plan,
                                            std::to_string(record.stamp.size),
                                            std::to_string(record.stamp.nanoseconds),
                                            record.verdict,
                                            record.reason,
                                            joined(record.mending),
                                            MSPDIPathInFolder(record.document, outputFolder),
                                            std::to_string(record.tasks),
                                            std::to_string(record.resources),
                                            std::to_string(record.scenarios),
                                            std::to_string(record.customFields),
                                            joined(record.warnings),
                                            joined(record.losses),
                                            std::to_string(record.milliseconds),
                                            std::to_string(record.stamp.systemNanoseconds),
                                            record.digest,
                                            MSPDIPathInFolder(record.folder, outputFolder),
                                            MSPDIPathInFolder(record.log, outputFolder)};
    std::string line;
    for (const auto& field : fields) {
        line += escaped(field);
        line += '\t';
    }
    return line += '.';  // what has no such end was cut off
}

std::optional<MSPDIMigrationRecord> MSPDIRecordFrom(std::string_view line, const std::string& outputFolder) {
    auto fields = split(line, '\t');
    const bool isWhole = fields.size() == fieldCount + 1 || fields.size() == firstFieldCount + 1;
    if (!isWhole || fields.back() != ".") {
        return std::nullopt;
    }
    if (fields.size() == firstFieldCount + 1) {
        fields.back().assign(1, '0');  // g++ 12 warns of a literal here under the sanitizers
        fields.resize(fieldCount + 1);
    }
    for (auto& field : fields) {
        field = unescaped(field);
    }
    bool isGood = true;
    MSPDIMigrationRecord record;
    record.plan = fields[0];
    record.stamp = {numberFrom<std::uint64_t>(fields[1], isGood), numberFrom<std::int64_t>(fields[2], isGood), 0};
    record.verdict = fields[3];
    record.reason = fields[4];
    record.mending = countsFrom(fields[5], isGood);
    record.document = absolutePath(fields[6], outputFolder);
    record.tasks = numberFrom<std::size_t>(fields[7], isGood);
    record.resources = numberFrom<std::size_t>(fields[8], isGood);
    record.scenarios = numberFrom<std::size_t>(fields[9], isGood);
    record.customFields = numberFrom<std::size_t>(fields[10], isGood);
    record.warnings = listFrom(fields[11]);
    record.losses = countsFrom(fields[12], isGood);
    record.milliseconds = numberFrom<std::size_t>(fields[13], isGood);
    record.stamp.systemNanoseconds = numberFrom<std::int64_t>(fields[14], isGood);
    record.digest = fields[15];
    record.folder = fields[16].empty() && !record.document.empty() ? pathByDeletingLastComponent(record.document)
                                                                   : absolutePath(fields[16], outputFolder);
    record.log = absolutePath(fields[17], outputFolder);
    return isGood ? std::optional(std::move(record)) : std::nullopt;
}
