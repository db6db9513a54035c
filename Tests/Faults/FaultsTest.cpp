// Every call that an import makes of the system fails once, one after another.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <regex>
#include <string_view>

#include "BundleMask.h"
#include "FaultFixture.h"
#include "ProgramRun.h"

namespace fs = std::filesystem;

namespace {

struct Fault {
    const char* kind;
    int error;
    bool isHarmless;  // the import must succeed nevertheless

    friend std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
        return stream << fault.kind << ": " << std::strerror(fault.error);
    }
};

class EveryCallFixture : public FaultFixture {
protected:
    // One import after another, each with the next call failing, until one needs no further call.
    void strikeEveryCall(const Fault& fault) {
        int number = 1;
        for (;; ++number) {
            const auto text =
                std::string(fault.kind) + " " + std::to_string(number) + " " + std::to_string(fault.error);
            if (!importWithFault(text)) {
                break;
            }
            expectFailureWithReasonOrRightResult(text);
            if (fault.isHarmless) {
                EXPECT_EQ(_end.status, 0) << text << "\n" << _end.log;
            }
            ASSERT_LT(number, 100'000);
        }
        EXPECT_EQ(_end.status, 0) << "without a fault: " << _end.log;
        RecordProperty("faults", number - 1);
        EXPECT_GT(number, 1) << "no call of that kind was made, so nothing was tested";
    }

private:
    // One run with the n-th call failing; false when there was no such call.
    bool importWithFault(const std::string& fault) {
        resetOutput();
        const auto mark = folder / "struck";
        fs::remove(mark);
        _end = runListImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM},
                              {"KZMSP_FAULT", fault},
                              {"KZMSP_FAULT_LARGE", std::to_string(countOf("FAULT_LARGE", 4'096))},
                              {"KZMSP_FAULT_MARK", mark}});
        return fs::remove(mark);
    }

    void expectFailureWithReasonOrRightResult(const std::string& fault) const {
        SCOPED_TRACE(fault + "\n" + _end.log);
        EXPECT_EQ(_end.signal, 0);
        EXPECT_EQ(changeOutsideTheBundle(), "");
        if (_end.status == 0) {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "");
            return;
        }
        EXPECT_EQ(_end.status, 1);
        if (_end.log.find("] WARNING: Failed to bring the bundles to the disk: ") == std::string::npos) {
            static const std::regex reason(R"(\] Exception: \S+\n\S)");
            EXPECT_TRUE(std::regex_search(_end.log, reason));
        }
        if (fs::exists(bundle)) {
            EXPECT_EQ(check->complaintAboutRemains(bundle), "");
            const fs::path copied = folder / "Empty.kdzx";
            for (const auto& entry : fs::recursive_directory_iterator(copied)) {
                EXPECT_TRUE(fs::exists(fs::symlink_status(bundle / fs::relative(entry.path(), copied))))
                    << entry.path();
            }
        }
    }

    ProgramEnd _end;
};

class FaultsTest : public EveryCallFixture, public ::testing::WithParamInterface<Fault> {};
using RepairFaultsTest = EveryCallFixture;
using FaultFixtureTest = FaultFixture;

class OverwritingFaultsTest : public FaultFixture {
protected:
    OverwritingFaultsTest() {
        folder.addFile("home/.config/org.kadenza.Kadenza2.MSPImportMSPDI.toml", "OverwriteFilterTarget = true\n");
        EXPECT_EQ(runImport().status, 0);
        judgeByPresentState();
    }

    void addOldBundle() const {
        folder.addFile("out/Plan.kdzx/Actual.xml", "old");
        folder.addFile("out/Plan.kdzx/sub/old.txt", "old");
        folder.addFile("out/Plan.kdzx/old.txt", "old");
    }
    // Whether the log tells of remains of the old bundle; takes them away.
    static bool takeAwayWhatIsToldOf(const std::string& log) {
        constexpr std::string_view warning = "WARNING: Failed to remove all of the document that was replaced: '";
        const auto told = log.find(warning);
        if (told == std::string::npos) {
            return false;
        }
        const auto begin = told + warning.size();
        const fs::path remains = log.substr(begin, log.find('\'', begin) - begin);
        EXPECT_TRUE(remains.filename().native().starts_with(".MSPDIImport-")) << remains;
        EXPECT_GT(fs::remove_all(remains), 0U) << remains;
        return true;
    }
    // The bundle is the old one, or has all that was written before a failure; nothing is hidden beside it unless the
    // log tells so.
    void expectOldOrNewBundle(const ProgramEnd& end) const {
        EXPECT_EQ(end.signal, 0);
        takeAwayWhatIsToldOf(end.log);
        const bool isOld = contentOf(bundle) == FolderContent{{"Actual.xml", "file of old"},
                                                              {"sub", "folder"},
                                                              {"sub/old.txt", "file of old"},
                                                              {"old.txt", "file of old"}};
        if (end.status == 0) {
            const auto numbered = out / "Plan-1.kdzx";
            EXPECT_EQ(check->complaintAboutComplete(isOld ? numbered : bundle), "");
            fs::remove_all(isOld ? numbered : fs::path());
        } else if (!isOld) {
            EXPECT_EQ(check->complaintAboutRemains(bundle), "");
            EXPECT_TRUE(fs::exists(bundle / "__TOC.xml"));
        }
        EXPECT_EQ(newItems(), std::vector<fs::path>{bundle});
    }
};

std::string nameOf(const ::testing::TestParamInfo<Fault>& info) {
    std::string name = std::string(info.param.kind) + "_" + std::to_string(info.param.error);
    for (auto& character : name) {
        character = character == '-' ? '_' : character;
    }
    return name;
}

}  // namespace

TEST_P(FaultsTest, endsInAReasonOrARightResult) {
    strikeEveryCall(GetParam());
}

TEST_F(RepairFaultsTest, endsInAReasonOrARightResult) {
    auto plan = bytesOf(folder / "Plan.xml");
    replaceAll(plan, "<Name>Print</Name>", "<Name>Print & bind</Name>");
    folder.addFile("Plan.xml", plan);
    const auto end = runImport();
    ASSERT_EQ(end.status, 0);
    ASSERT_NE(end.log.find("WARNING: Repaired malformed XML"), std::string::npos);
    judgeByPresentState();
    strikeEveryCall({"allocation", ENOMEM, false});
}

TEST_F(OverwritingFaultsTest, whatCannotBeRemovedOfTheOldBundleIsToldOfAndTheNewOneStands) {
    int number = 1;
    int warnings = 0;
    for (bool hasStruck = true; hasStruck; ++number) {
        resetOutput();
        addOldBundle();
        const auto mark = folder / "struck";
        const auto end = runImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM},
                                    {"KZMSP_FAULT", "unlink " + std::to_string(number) + " " + std::to_string(EACCES)},
                                    {"KZMSP_FAULT_MARK", mark}});
        SCOPED_TRACE(end.log);
        hasStruck = fs::remove(mark);
        EXPECT_EQ(end.status, 0);
        EXPECT_EQ(check->complaintAboutComplete(bundle), "") << number;
        fs::remove(out / ".MSPDIImport-Plan.kdzx.tmp");  // the lock may be what cannot be removed
        warnings += takeAwayWhatIsToldOf(end.log) ? 1 : 0;
        EXPECT_EQ(newItems(), std::vector<fs::path>{bundle});
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(number, 5) << "three files and two folders";
    EXPECT_EQ(warnings, 2) << "what fails below the old bundle is tried once more";
}

TEST_F(OverwritingFaultsTest, everyCallThatFailsLeavesTheOldBundleOrTheNewOne) {
    for (const Fault& fault : {Fault{"open", EACCES, false}, Fault{"write", ENOSPC, false}, Fault{"rename", EIO, false},
                               Fault{"mkdir", EACCES, false}, Fault{"stat", EACCES, false}, Fault{"close", EIO, false},
                               Fault{"lock", ENOLCK, false}, Fault{"allocation", ENOMEM, false}}) {
        int number = 1;
        for (bool hasStruck = true; hasStruck; ++number) {
            resetOutput();
            addOldBundle();
            const auto mark = folder / "struck";
            const auto text =
                std::string(fault.kind) + " " + std::to_string(number) + " " + std::to_string(fault.error);
            const auto end =
                runImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM}, {"KZMSP_FAULT", text}, {"KZMSP_FAULT_MARK", mark}});
            SCOPED_TRACE(text + "\n" + end.log);
            hasStruck = fs::remove(mark);
            expectOldOrNewBundle(end);
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_GT(number, 1) << fault;
    }
}

// A file system of the network knows no exchange, and nobody else sees its locks.
TEST_F(OverwritingFaultsTest, withoutExchangeTheOldBundleIsReplacedAllTheSame) {
    for (int failingRename = 0; failingRename <= 3; ++failingRename) {
        resetOutput();
        addOldBundle();
        const auto end = runImport(
            {{"LD_PRELOAD", KZMSP_FAULT_SHIM},
             {"KZMSP_FAULT", "plain-rename " + std::to_string(failingRename) + " " + std::to_string(EINVAL)}});
        SCOPED_TRACE(std::to_string(failingRename) + end.log);
        expectOldOrNewBundle(end);
        EXPECT_TRUE(end.status == 0 || failingRename == 2) << "the second one gives the new bundle its name";
    }
}

TEST_F(FaultFixtureTest, withoutExchangeNorLocksEachImportTakesAFreeName) {
    for (const auto* name : {"Plan.kdzx", "Plan-1.kdzx", "Plan-2.kdzx"}) {
        const auto end =
            runImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM}, {"KZMSP_FAULT", "plain-rename 0 " + std::to_string(EINVAL)}});
        EXPECT_EQ(end.status, 0) << end.log;
        EXPECT_EQ(check->complaintAboutComplete(out / name), "");
    }
    EXPECT_EQ(newItems().size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(
    EveryCall, FaultsTest,
    ::testing::Values(Fault{"open", EACCES, false}, Fault{"open", EMFILE, false}, Fault{"read", EIO, false},
                      Fault{"read", EINTR, true}, Fault{"short-read", 0, true}, Fault{"write", ENOSPC, false},
                      Fault{"write", EINTR, true}, Fault{"short-write", 0, true}, Fault{"log", EIO, true},
                      Fault{"close", EIO, false}, Fault{"lock", ENOLCK, true}, Fault{"fsync", EIO, false},
                      Fault{"fsync", EINTR, true}, Fault{"rename", EXDEV, false}, Fault{"mkdir", EACCES, false},
                      Fault{"mkdir", EROFS, false}, Fault{"link", EPERM, false}, Fault{"stat", EACCES, false},
                      Fault{"readdir", EIO, false}, Fault{"allocation", ENOMEM, false}),
    nameOf);
