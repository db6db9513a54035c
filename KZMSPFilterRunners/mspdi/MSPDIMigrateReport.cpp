#include "MSPDIMigrateReport.h"

#include <fmt/format.h>

#include <functional>
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

constexpr std::string_view tableName = "report.tsv";
constexpr std::string_view jsonName = "report.json";
constexpr std::string_view pageName = "report.html";
constexpr std::string_view failedName = "failed.txt";

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

void writeHeadsOfTable(std::ostream& out) {
    out << "plan\tverdict\treason\tmending\tdocument\ttasks\tresources\tscenarios\twarnings\tlosses\tseconds\n";
}

void writeRowOfTable(const MSPDIMigrationRecord& record, std::ostream& out) {
    out << cell(record.plan) << '\t' << record.verdict << '\t' << cell(record.reason) << '\t'
        << MSPDICountsInOneLine(record.mending) << '\t' << cell(record.document) << '\t' << number(record, record.tasks)
        << '\t' << number(record, record.resources) << '\t' << number(record, record.scenarios) << '\t'
        << cell(joined(record.warnings)) << '\t' << MSPDICountsInOneLine(record.losses) << '\t' << MSPDISeconds(record)
        << '\n';
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

// The document of JSON, plan by plan.
class ReportInJSON {
public:
    explicit ReportInJSON(std::ostream& out) : _writer(out) {
        _writer.beginObject();
        _writer.key("plans");
        _writer.beginArray();
    }
    void add(const MSPDIMigrationRecord& record) {
        _imported += record.isImported() ? 1U : 0U;
        _writer.value(jsonOf(record));
    }
    void end() {
        _writer.endArray();
        _writer.key("imported");
        _writer.value(_imported);
        _writer.endObject();
        _writer.finish();
    }

private:
    MSPDIJSONWriter _writer;
    std::size_t _imported = 0;
};

// A list is a text in UTF-8 with a path on each line, so that some paths cannot stand in one.
void writeIfFailed(const MSPDIMigrationRecord& record, std::ostream& out) {
    if (record.isImported()) {
        return;
    }
    const bool isLine = MSPCIsUTF8(record.plan) && MSPDILinesOfText(record.plan).size() == 1;
    out << (isLine ? record.plan : ":: no list can name this plan: " + cell(record.plan)) << '\n';
}

// Reports in the output folder. The first failure, in one line that names the file, ends those that are being written
// at the same time, too; what stood there before stays then.
class Reports {
public:
    Reports(const std::string& outputFolder, MSPCFileSystem& fileSystem)
        : _outputFolder(outputFolder), _fileSystem(fileSystem) {}

    using Write = std::function<void(std::ostream&)>;
    void write(std::string_view name, const Write& write) {
        const auto path = pathByAppendingComponent(_outputFolder, name);
        const auto failure = _fileSystem.writeAtomically(path, [&write](MSPCByteWriter& writer) {
            FileBuffer buffer(writer);
            std::ostream out(&buffer);
            write(out);
        });
        if (failure) {
            throw Failure{path + ": " + *failure};
        }
    }

    struct Failure {
        std::string text;
    };

private:
    const std::string& _outputFolder;
    MSPCFileSystem& _fileSystem;
};

// All but the page, in one pass: to look for each plan and each document takes longer than to write of them.
MSPDIMigrationSums writeThoseForPrograms(const MSPDIMigrationRecords& records, Reports& reports) {
    MSPDIMigrationSums sums;
    const auto writeAll = [&](std::ostream& table, std::ostream& json, std::ostream& failed) {
        writeHeadsOfTable(table);
        ReportInJSON inJSON(json);
        records([&](const MSPDIMigrationRecord& record) {
            writeRowOfTable(record, table);
            inJSON.add(record);
            writeIfFailed(record, failed);
            sums.add(record);
        });
        inJSON.end();
    };
    reports.write(tableName, [&](std::ostream& table) {
        reports.write(jsonName, [&](std::ostream& json) {
            reports.write(failedName, [&](std::ostream& failed) { writeAll(table, json, failed); });
        });
    });
    return sums;
}

}  // namespace

std::optional<std::string> MSPDIMigrationReportIn(const std::string& folder, const MSPCFileSystem& fileSystem) {
    for (const auto name : {tableName, jsonName, pageName, failedName}) {
        if (auto path = pathByAppendingComponent(folder, name); fileSystem.exists(path)) {
            return path;
        }
    }
    return std::nullopt;
}

std::optional<std::string> MSPDIWriteMigrationReports(const std::string& outputFolder, const std::string& made,
                                                      const MSPDIMigrationRecords& records,
                                                      MSPCFileSystem& fileSystem) {
    Reports reports(outputFolder, fileSystem);
    try {
        const auto sums = writeThoseForPrograms(records, reports);
        reports.write(pageName,
                      [&](std::ostream& out) { MSPDIWriteMigrationPage(outputFolder, made, sums, records, out); });
    } catch (const Reports::Failure& failure) {
        return failure.text;
    }
    return std::nullopt;
}
