#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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
    // How often `path` has been advanced: 0 for the wanted path, else the number in it.
    [[nodiscard]] std::uint64_t number() const { return _number; }
    // Goes on to the next path.
    void advance() { advanceTo(0); }
    // Goes on to the path with that number, or to the next one where that is further.
    void advanceTo(std::uint64_t number);

private:
    std::string _pathWithoutExtension;
    std::string _extension;
    std::string _path;
    std::uint64_t _number = 0;
};
