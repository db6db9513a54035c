#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

// A new folder of the test's own, removed with all its content at the end.
class ScopedTempFolder {
public:
    ScopedTempFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "kzmsp-XXXXXX").native();
        if (!::mkdtemp(pattern.data())) {
            throw std::runtime_error("no temporary folder");
        }
        // Without links, so that tests can compare it with what the system answers.
        _path = std::filesystem::canonical(pattern).native();
    }
    ~ScopedTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    ScopedTempFolder(const ScopedTempFolder&) = delete;
    ScopedTempFolder& operator=(const ScopedTempFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return _path; }
    // A path in the folder.
    [[nodiscard]] std::string operator/(const std::string& name) const { return _path + "/" + name; }

    // Writes a file, making the folders above it; gives its path.
    std::string addFile(const std::string& name, const std::string& bytes = {}) const {
        const auto path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    // Makes a folder and those above it; gives its path.
    std::string addFolder(const std::string& name) const {
        std::filesystem::create_directories(*this / name);
        return *this / name;
    }
    // All bytes of a file; "(no file)" when there is none.
    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream file(*this / name, std::ios::binary);
        return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(no file)";
    }
    // The names in a folder, hidden ones included, sorted and each followed by a blank.
    [[nodiscard]] std::string listing(const std::string& name = ".") const;

private:
    std::string _path;
};

inline std::string ScopedTempFolder::listing(const std::string& name) const {
    std::string result;
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(*this / name)) {
        names.insert(entry.path().filename().native());
    }
    for (const auto& found : names) {
        result += found + " ";
    }
    return result;
}
