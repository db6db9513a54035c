#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class MSPCFileSystem;

// Names inside a bundle.
inline constexpr std::string_view MSPIActualScenarioFileName = "Actual.xml";
inline constexpr std::string_view MSPITOCFileName = "__TOC.xml";

// "Actual" without a number, "Baseline" for baseline 0, "Baseline<n>" for the others.
[[nodiscard]] std::string MSPIScenarioName(std::optional<int> baselineNumber);
// The file of a scenario in its bundle: "Baseline3.xml" of "Baseline3".
[[nodiscard]] std::string MSPIScenarioFileName(std::string_view scenarioName);

// The paths that a new bundle may take, one after another: the wanted one, then with "-1", "-2" and so on before the
// extension. "Plan.xml.kdzx" is followed by "Plan.xml-1.kdzx". The numbers have no bound.
class MSPIBundleNaming {
public:
    explicit MSPIBundleNaming(std::string wantedPath);

    [[nodiscard]] const std::string& path() const { return _path; }
    // Goes on to the next path.
    void advance();
    // Goes on while anything (file, folder or link) exists at the path; stays where the path is free already.
    void advanceToFreePath(const MSPCFileSystem& fileSystem);

private:
    std::string _pathWithoutExtension;
    std::string _extension;
    std::string _path;
    std::uint64_t _number = 0;
};
