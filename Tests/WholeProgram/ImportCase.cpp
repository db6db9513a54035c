#include "ImportCase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "BundleMask.h"
#include "MSPCRegex.h"
#include "ProgramRun.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::map<std::string, std::string> environmentOf(const fs::path& folder) {
    // A zone without summer time: the written offsets depend on the present one, and a test must not depend on today.
    std::map<std::string, std::string> environment{{"TZ", "UTC"}, {"LC_ALL", "C"}, {"HOME", folder / "home"}};
    if (const auto file = folder / "environment"; fs::exists(file)) {
        for (const auto& line : linesOf(bytesOf(file))) {
            environment[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
        }
    }
    return environment;
}

std::string maskedLog(const std::string& log, const fs::path& folder) {
    static const MSPCRegex prefix(
        R"(^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3} MSPDIImport\[[0-9]+\] )");
    std::string masked;
    for (auto line : linesOf(log)) {
        if (const auto match = prefix.firstMatch(line, 1)) {
            line.replace(0, match->front()->size(), "> ");
        }
        masked += line + "\n";
    }
    replaceAll(masked, folder.string(), "(scratch)");
    return masked;
}

void save(const fs::path& file, const std::string& bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

bool isExpectation(const fs::path& path) {
    return path.filename().string().starts_with("expected");
}

// All expected (or resulting) files below a folder, by their relative paths.
std::set<std::string> expectations(const fs::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const auto relative = fs::relative(entry.path(), folder);
        if (!entry.is_directory() && isExpectation(*relative.begin())) {
            files.insert(relative.string());
        }
    }
    return files;
}

std::string firstDifferingLine(const std::string& expected, const std::string& actual) {
    const auto expectedLines = linesOf(expected);
    const auto actualLines = linesOf(actual);
    const auto [e, a] =
        std::mismatch(expectedLines.begin(), expectedLines.end(), actualLines.begin(), actualLines.end());
    const auto shown = [](auto line, auto end) { return line == end ? std::string("(end of file)") : *line; };
    return "line " + std::to_string(e - expectedLines.begin() + 1) + "\n  expected: " + shown(e, expectedLines.end()) +
           "\n  actual:   " + shown(a, actualLines.end());
}

}  // namespace

ImportCase::ImportCase(std::string name)
    : _name(std::move(name)), _folder(fs::path(KZMSP_CASES) / _name), _scratch(fs::path(KZMSP_SCRATCH) / _name) {
}

std::vector<std::string> ImportCase::names() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(KZMSP_CASES)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void ImportCase::prepareScratchFolder() const {
    const auto folder = _scratch / "run";
    fs::remove_all(_scratch);
    fs::create_directories(folder / "out");
    fs::copy(KZMSP_TEMPLATE, folder / "Empty.kdzx", fs::copy_options::recursive);
    for (const auto& entry : fs::directory_iterator(_folder)) {
        if (!isExpectation(entry.path())) {
            fs::copy(entry.path(), folder / entry.path().filename(), fs::copy_options::recursive);
        }
    }
}

void ImportCase::run() const {
    prepareScratchFolder();
    const auto folder = _scratch / "run";
    const auto result = runProgram(linesOf(bytesOf(folder / "args")), folder, environmentOf(folder));
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.standardOutput, "");
    save(resultFolder() / "expected.status", std::to_string(result.status) + "\n");
    save(resultFolder() / "expected.log", maskedLog(result.standardError, folder));
    int number = 0;
    for (const auto& bundle : bundles()) {
        ++number;
        saveBundle(bundle,
                   resultFolder() / (number == 1 ? "expected.kdzx" : "expected-" + std::to_string(number) + ".kdzx"));
    }
}

std::vector<fs::path> ImportCase::bundles() const {
    std::vector<fs::path> bundles;
    for (const auto& entry : fs::directory_iterator(_scratch / "run" / "out")) {
        bundles.push_back(entry.path());
    }
    std::sort(bundles.begin(), bundles.end());
    return bundles;
}

void ImportCase::saveBundle(const fs::path& bundle, const fs::path& target) const {
    const auto masks = scenarioMasks(bundle);
    for (const auto& entry : fs::recursive_directory_iterator(bundle)) {
        if (entry.is_regular_file()) {
            save(target / fs::relative(entry.path(), bundle), maskedDocument(bytesOf(entry.path()), masks));
        }
    }
}

std::string ImportCase::difference() const {
    const auto expected = expectations(_folder);
    const auto actual = expectations(resultFolder());
    std::set<std::string> all = expected;
    all.insert(actual.begin(), actual.end());
    for (const auto& file : all) {
        std::string found;
        if (!actual.contains(file)) {
            found = "the run did not leave this file";
        } else if (!expected.contains(file)) {
            found = "the run left this file, which is not expected";
        } else if (const auto one = bytesOf(_folder / file), other = bytesOf(resultFolder() / file); one != other) {
            found = firstDifferingLine(one, other);
        }
        if (!found.empty()) {
            return file + ": " + found + "\n  expected in " + (_folder / file).string() + "\n  actual in   " +
                   (resultFolder() / file).string() + "\n  When the new result is right: tools/accept-case " + _name;
        }
    }
    return {};
}
