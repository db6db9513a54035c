#include "MSPDIMigrateReport.h"

#include <fmt/format.h>

#include <array>
#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>

#include "MSPCCharacters.h"
#include "MSPCFileSystem.h"
#include "MSPCMessage.h"
#include "MSPCPath.h"
#include "MSPDIInputList.h"
#include "MSPDIJSON.h"
#include "MSPDIMigratePage.h"

namespace {

// Of the reports, in the order in which they are written.
constexpr std::string_view names[] = {"report.tsv", "report.json", "report.html", "failed.txt"};

using JSON = nlohmann::ordered_json;

// A stream into a file that is being written.
class FileBuffer final : public std::streambuf {
public:
    explicit FileBuffer(MSPCByteWriter& writer) : _writer(writer) {}

protected:
    int_type overflow(int_type character) override {
        const char byte = traits_type::to_char_type(character);
        _writer.write({&byte, 1});
        return character;
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        _writer.write({bytes, static_cast<std::size_t>(count)});
        return count;
    }

private:
    MSPCByteWriter& _writer;
};

std::string cell(std::string_view text) {
    return std::string(MSPCShownText(text).view());
}

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const auto& text : texts) {
        result += result.empty() ? "" : "; ";
        result += text;
    }
    return result;
}

// A plan that is not imported has no numbers.
std::string number(const MSPDIMigrationRecord& record, std::size_t count) {
    return record.isImported() ? std::to_string(count) : "";
}

void writeTable(const MSPDIMigrationRecords& records, std::ostream& out) {
    out << "plan\tverdict\treason\tmending\tdocument\ttasks\tresources\tscenarios\twarnings\tlosses\tseconds\n";
    records([&out](const MSPDIMigrationRecord& record) {
        out << cell(record.plan) << '\t' << record.verdict << '\t' << cell(record.reason) << '\t'
            << MSPDICountsInOneLine(record.mending) << '\t' << cell(record.document) << '\t'
            << number(record, record.tasks) << '\t' << number(record, record.resources) << '\t'
            << number(record, record.scenarios) << '\t' << cell(joined(record.warnings)) << '\t'
            << MSPDICountsInOneLine(record.losses) << '\t' << MSPDISeconds(record) << '\n';
    });
}

JSON jsonOf(const MSPDIMigrationRecord::Counts& counts, std::string_view name) {
    auto result = JSON::array();
    for (const auto& [kind, count] : counts) {
        result.push_back({{name, kind}, {"count", count}});
    }
    return result;
}

JSON jsonOf(const MSPDIMigrationRecord& record) {
    const bool isImported = record.isImported();
    const auto number = [isImported](std::size_t count) { return isImported ? JSON(count) : JSON(nullptr); };
    JSON result = {{"plan", record.plan},
                   {"verdict", record.verdict},
                   {"reason", isImported ? JSON(nullptr) : JSON(record.reason)},
                   {"mending", jsonOf(record.mending, "step")},
                   {"document", isImported ? JSON(record.document) : JSON(nullptr)},
                   {"tasks", number(record.tasks)},
                   {"resources", number(record.resources)},
                   {"scenarios", number(record.scenarios)},
                   {"customFields", number(record.customFields)},
                   {"warnings", record.warnings},
                   {"losses", jsonOf(record.losses, "kind")},
                   {"seconds", static_cast<double>(record.milliseconds) / 1000}};
    if (!record.log.empty()) {
        result["log"] = record.log;
    }
    return result;
}

void writeJSON(const MSPDIMigrationRecords& records, std::ostream& out) {
    std::size_t imported = 0;
    MSPDIJSONWriter writer(out);
    writer.beginObject();
    writer.key("plans");
    writer.beginArray();
    records([&](const MSPDIMigrationRecord& record) {
        imported += record.isImported() ? 1U : 0U;
        writer.value(jsonOf(record));
    });
    writer.endArray();
    writer.key("imported");
    writer.value(imported);
    writer.endObject();
    writer.finish();
}

// A list is a text in UTF-8 with a path on each line, so that some paths cannot stand in one.
void writeFailed(const MSPDIMigrationRecords& records, std::ostream& out) {
    records([&out](const MSPDIMigrationRecord& record) {
        if (record.isImported()) {
            return;
        }
        const bool isLine = MSPCIsUTF8(record.plan) && MSPDILinesOfText(record.plan).size() == 1;
        out << (isLine ? record.plan : ":: no list can name this plan: " + cell(record.plan)) << '\n';
    });
}

}  // namespace

std::optional<std::string> MSPDIMigrationReportIn(const std::string& folder, const MSPCFileSystem& fileSystem) {
    for (const auto& name : names) {
        if (auto path = pathByAppendingComponent(folder, name); fileSystem.exists(path)) {
            return path;
        }
    }
    return std::nullopt;
}

std::optional<std::string> MSPDIWriteMigrationReports(const std::string& outputFolder, const std::string& made,
                                                      const MSPDIMigrationRecords& records,
                                                      MSPCFileSystem& fileSystem) {
    using Write = std::function<void(std::ostream&)>;
    const std::array<std::pair<std::string_view, Write>, std::size(names)> reports{
        {{names[0], [&](std::ostream& out) { writeTable(records, out); }},
         {names[1], [&](std::ostream& out) { writeJSON(records, out); }},
         {names[2], [&](std::ostream& out) { MSPDIWriteMigrationPage(outputFolder, made, records, out); }},
         {names[3], [&](std::ostream& out) { writeFailed(records, out); }}}};
    for (const auto& [name, write] : reports) {
        const auto path = pathByAppendingComponent(outputFolder, name);
        const auto failure = fileSystem.writeAtomically(path, [&write = write](MSPCByteWriter& writer) {
            FileBuffer buffer(writer);
            std::ostream out(&buffer);
            write(out);
        });
        if (failure) {
            return path + ": " + *failure;
        }
    }
    return std::nullopt;
}
