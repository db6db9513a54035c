// A disk that is full after so many bytes, and a limit on the size of files: an import fails with the reason, or fits.
#include <sys/mount.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstring>

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
    constexpr std::uint64_t page = 4'096;
    int failures = 0;
    for (std::uint64_t pages = 2;; ++pages, ++failures) {  // a page for the other bundle, one for this
        resetOutput();
        fs::remove_all(out / "Other.kdzx");
        const MountedMemory memory(out, pages * page);
        if (!memory.isMounted) {
            GTEST_SKIP() << "mounting is not allowed here: " << std::strerror(errno);
        }
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
