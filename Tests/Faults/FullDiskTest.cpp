// A disk that is full after so many bytes, and a limit on the size of files: an import fails with the reason, or fits.
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "FaultFixture.h"

namespace fs = std::filesystem;

namespace {

class FullDiskTest : public FaultFixture {
protected:
    // Whether the import succeeded; judges what it left.
    bool succeeded(const ProgramEnd& end, const std::string& reason) const {
        SCOPED_TRACE(end.log);
        EXPECT_EQ(changeOutsideTheBundle(), "");
        if (end.status == 0) {
            EXPECT_EQ(check->complaintAboutComplete(bundle), "");
            return true;
        }
        EXPECT_EQ(end.status, 1);
        EXPECT_NE(end.log.find("] Exception: KZMPPImporterException\n"), std::string::npos);
        EXPECT_NE(end.log.find(reason), std::string::npos);
        EXPECT_NE(end.log.find("### Importer FAILED."), std::string::npos);
        if (fs::exists(bundle)) {
            EXPECT_EQ(check->complaintAboutRemains(bundle), "");
        }
        return false;
    }

    // Grows the room for an import until it succeeds; gives the number of failures.
    template <typename Import>
    int failuresBeforeSuccess(std::uint64_t step, const std::string& reason, Import&& importWithin) {
        int failures = 0;
        for (std::uint64_t room = 0; failures < 1'000; room += step, ++failures) {
            resetOutput();
            SCOPED_TRACE("room for " + std::to_string(room) + " bytes");
            if (succeeded(importWithin(room), reason)) {
                break;
            }
        }
        return failures;
    }
};

// A small file system in memory, gone at the end.
class MountedMemory {
public:
    MountedMemory(fs::path folder, std::uint64_t bytes) : _folder(std::move(folder)) {
        const auto size = "size=" + std::to_string(bytes);
        isMounted = mount("none", _folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
    }
    ~MountedMemory() {
        if (isMounted) {
            umount(_folder.c_str());
        }
    }
    MountedMemory(const MountedMemory&) = delete;
    MountedMemory& operator=(const MountedMemory&) = delete;

    bool isMounted = false;

private:
    fs::path _folder;
};

bool mayMount(const fs::path& folder) {
    return MountedMemory(folder, 4'096).isMounted;
}

// Runs a program with its output thrown away; its exit status, if it came so far.
std::optional<int> statusOf(std::vector<std::string> words) {
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> pointers;
        for (auto& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        execvp(pointers.front(), pointers.data());
        _exit(127);
    }
    int state = 0;
    const bool hasEnded = waitpid(child, &state, 0) == child && WIFEXITED(state);
    return hasEnded ? std::optional<int>(WEXITSTATUS(state)) : std::nullopt;
}

// In namespaces of its own even an ordinary user may mount. Gives the status of the test there; nothing where that is
// not allowed either.
std::optional<int> repeatThisTestInNamespacesOfItsOwn(const fs::path& folder) {
    const std::vector<std::string> unshare{"unshare", "--map-root-user", "--mount"};
    auto trial = unshare;
    trial.insert(trial.end(), {"mount", "-t", "tmpfs", "none", folder.native()});
    if (statusOf(trial) != 0) {
        return std::nullopt;
    }
    const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
    auto repetition = unshare;
    repetition.insert(repetition.end(), {"env", "KZMSP_UNSHARED=1", fs::read_symlink("/proc/self/exe").native(),
                                         std::string("--gtest_filter=") + test.test_suite_name() + "." + test.name()});
    return statusOf(repetition);
}

}  // namespace

TEST_F(FullDiskTest, endsInAReasonAfterAnyNumberOfBytes) {
    const auto failures = failuresBeforeSuccess(997, "No space left on device", [this](std::uint64_t room) {
        return runImport({{"LD_PRELOAD", KZMSP_FAULT_SHIM},
                          {"KZMSP_FAULT", "space " + std::to_string(room) + " " + std::to_string(ENOSPC)}});
    });
    EXPECT_GT(failures, 10);
    RecordProperty("failures", failures);
}

TEST_F(FullDiskTest, endsInAReasonOnASmallFileSystem) {
    if (!mayMount(out) && std::getenv("KZMSP_UNSHARED") == nullptr) {
        const auto status = repeatThisTestInNamespacesOfItsOwn(out);
        if (!status) {
            GTEST_SKIP() << "mounting is not allowed here, nor is a namespace in which it would be";
        }
        EXPECT_EQ(*status, 0);
        return;
    }
    constexpr std::uint64_t page = 4'096;
    int failures = 0;
    for (std::uint64_t pages = 2;; ++pages, ++failures) {  // a page for the other bundle, one for this
        resetOutput();
        fs::remove_all(out / "Other.kdzx");
        const MountedMemory memory(out, pages * page);
        ASSERT_TRUE(memory.isMounted) << std::strerror(errno);
        folder.addFile("out/Other.kdzx/Actual.xml", "of another plan");
        SCOPED_TRACE(std::to_string(pages) + " pages");
        if (succeeded(runImport(), "No space left on device") || HasFailure()) {
            break;
        }
    }
    EXPECT_GT(failures, 3);
    RecordProperty("failures", failures);
}

TEST_F(FullDiskTest, endsInAReasonAtALimitOfTheSizeOfFiles) {
    const auto failures = failuresBeforeSuccess(512, "File too large", [this](std::uint64_t room) {
        auto options = importOf("Plan.xml");
        options.prepare = [room] {
            const rlimit limit{room, room};
            setrlimit(RLIMIT_FSIZE, &limit);
        };
        return SpawnedProgram(options).wait();
    });
    EXPECT_GT(failures, 10);
    RecordProperty("failures", failures);
}
