#pragma once

#include <filesystem>
#include <string>
#include <vector>

// One folder of Tests/ImportCases: a run of the program and what it must leave behind.
//
//   args             the arguments, one a line
//   environment      NAME=value lines beside (or instead of) TZ=UTC, LC_ALL=C and HOME (the folder "home"); optional
//   expected.status  the exit status
//   expected.log     standard error, masked
//   expected.kdzx/   the bundle in the folder "out", masked; further ones are expected-2.kdzx and so on, by name
//   anything else    is copied into the folder in which the program runs, as are "Empty.kdzx" and an empty "out"
//
// Masked are the time stamps and process ids of the log, the path of the scratch folder, the ids of scenarios (by their
// file, so that references between files are still compared) and the date in the comment of a scenario.
class ImportCase {
public:
    explicit ImportCase(std::string name);

    // The names of all cases.
    [[nodiscard]] static std::vector<std::string> names();

    // Runs the program afresh and writes its masked results, in the form of the expected ones, to `resultFolder`.
    void run() const;
    [[nodiscard]] std::filesystem::path resultFolder() const { return _scratch / "result"; }
    // The bundles that the run left, in the order of their names.
    [[nodiscard]] std::vector<std::filesystem::path> bundles() const;
    // The first difference between expected and actual results, told for a person; empty when there is none.
    [[nodiscard]] std::string difference() const;

private:
    void prepareScratchFolder() const;
    void saveBundle(const std::filesystem::path& bundle, const std::filesystem::path& target) const;

    std::string _name;
    std::filesystem::path _folder;
    std::filesystem::path _scratch;
};
