#include "MSPIXMLImporter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "FixedClock.h"
#include "ListedRandomSource.h"
#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCFileSystem.h"
#include "MSPCServices.h"
#include "MSPCXMLLoader.h"
#include "MSPIBaselineIndex.h"
#include "MSPIBundleNaming.h"
#include "MSPIElementsRead.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"

// Real plans are mapped twice: with all they hold, and with what the loader keeps of them.

namespace fs = std::filesystem;

namespace {

constexpr int lastBaseline = 10;

fs::path corpusFolder() {
    const char* named = std::getenv("KZMSP_CORPUS");
    return named != nullptr ? fs::path(named) : fs::path(KZMSP_SOURCE).parent_path() / "shared" / "corpus";
}

std::vector<fs::path> plansBelow(const fs::path& folder) {
    std::vector<fs::path> plans;
    if (fs::is_directory(folder)) {
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file() && entry.path().extension() == ".xml") {
                plans.push_back(entry.path());
            }
        }
    }
    return plans;
}

// Everything that one import of a plan says and makes.
struct Outcome {
    std::vector<std::string> documents;  // the scenarios, then the table of contents; or the failure
    std::vector<std::string> log;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

class MSPIScenarioMappingTest : public testing::Test {
protected:
    MSPCXMLDocument load(const fs::path& path, MSPCXMLContent content) {
        return newXmlDocFromUrl(MSPCURL::fileURL(path.string(), false), content, _fileSystem, _log);
    }
    MSPCXMLLoaded loadPlan(const fs::path& path, const MSPCXMLSelection* selection) {
        const auto url = MSPCURL::fileURL(path.string(), false);
        return selection != nullptr ? newXmlDocFromUrlSelection(url, *selection, _fileSystem, _log)
                                    : MSPCXMLLoaded{load(path, MSPCXMLContent::DataOnly), {}, {}};
    }

    Outcome outcomeOf(const fs::path& plan, const MSPCXMLSelection* selection) {
        Outcome outcome;
        try {
            mapAll(plan, selection, outcome.documents);
        } catch (const MSPCException& raised) {
            outcome.documents.push_back(raised.reason());
        }
        outcome.log = _log.takeLines();
        return outcome;
    }

    // How many of the plans became documents; each must become the same ones either way.
    int mapBothWays(const std::vector<fs::path>& plans) {
        int mapped = 0;
        for (const auto& plan : plans) {
            const auto whole = outcomeOf(plan, nullptr);
            EXPECT_TRUE(outcomeOf(plan, &MSPIElementsRead()) == whole) << plan << " differs when it is read in part";
            mapped += whole.documents.size() > 1 ? 1 : 0;
        }
        return mapped;
    }

private:
    void mapAll(const fs::path& plan, const MSPCXMLSelection* selection, std::vector<std::string>& documents) {
        ListedRandomSource randomSource{1ULL << 60U, 2ULL << 60U,  3ULL << 60U,  4ULL << 60U,
                                        5ULL << 60U, 6ULL << 60U,  7ULL << 60U,  8ULL << 60U,
                                        9ULL << 60U, 10ULL << 60U, 11ULL << 60U, 12ULL << 60U};
        const MSPCServices services{_clock,      *MSPCTimeZone::named("Europe/Berlin"), _log, _settings, _fileSystem,
                                    randomSource};
        const auto bundle = fs::path(KZMSP_SOURCE) / "share" / "kadenza2" / "Empty.kdzx";
        MSPIPlan mspdi(loadPlan(plan, selection));
        const auto kdzxTemplate = load(bundle / "Actual.xml", MSPCXMLContent::Everything);
        auto kdzxTOC = load(bundle / "__TOC.xml", MSPCXMLContent::Everything);
        for (int number = -1; number <= lastBaseline; ++number) {
            MSPIImportInfo info;
            info.mspdiProjectName = plan.stem().string();
            info.mspdiBaselineNumber = number < 0 ? std::nullopt : std::optional(number);
            info.kdzxScenarioName = MSPIScenarioName(info.mspdiBaselineNumber);
            if (const auto scenario = MSPIMapScenario(mspdi, kdzxTemplate, kdzxTOC, info, services)) {
                documents.push_back(scenario->serialized());
            }
        }
        documents.push_back(kdzxTOC.serialized());
    }

    FixedClock _clock{MSPCInstant()};
    MapUserDefaults _settings;
    MSPCDiskFileSystem _fileSystem;
    RecordingLog _log;
};

}  // namespace

TEST_F(MSPIScenarioMappingTest, givesTheSameForExamplePlansReadInPart) {
    const auto plans = plansBelow(fs::path(KZMSP_SOURCE) / "examples");
    ASSERT_GE(plans.size(), 6U);
    EXPECT_EQ(mapBothWays(plans), static_cast<int>(plans.size()));
}

TEST_F(MSPIScenarioMappingTest, givesTheSameForPlansOfTheImportCasesReadInPart) {
    const auto plans = plansBelow(fs::path(KZMSP_SOURCE) / "Tests" / "ImportCases");
    ASSERT_GE(plans.size(), 20U);
    EXPECT_GE(mapBothWays(plans), 20);
}

TEST_F(MSPIScenarioMappingTest, givesTheSameForPlansOfManyProgramsReadInPart) {
    const auto plans = plansBelow(corpusFolder());
    if (plans.empty()) {
        GTEST_SKIP() << "no plans in " << corpusFolder() << "; KZMSP_CORPUS names another folder";
    }
    EXPECT_GT(mapBothWays(plans), 0);
}
