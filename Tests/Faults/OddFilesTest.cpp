// File names, templates and input files that no careful person would make.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "FaultFixture.h"
#include "ProgramRun.h"
#include "StrictXML.h"

namespace fs = std::filesystem;

namespace {

class OddFilesTest : public FaultFixture {
protected:
    void expectFailed(const ProgramEnd& end, const std::string& reason) const {
        EXPECT_EQ(end.status, 1);
        EXPECT_NE(end.log.find(reason), std::string::npos) << end.log;
        EXPECT_NE(end.log.find("### Importer FAILED."), std::string::npos) << end.log;
    }
    ProgramEnd runWith(const std::vector<std::string>& arguments) const {
        auto options = importOf("");
        options.arguments = arguments;
        return SpawnedProgram(options).wait();
    }
    // Runs as somebody who has no special rights; the status is 126 or 127 where that cannot be.
    ProgramEnd runAsOrdinaryUser() const {
        auto options = importOf("Plan.xml");
        options.prepare = [] {
            constexpr unsigned nobody = 65'534;
            if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) {
                _exit(126);
            }
        };
        return SpawnedProgram(options).wait();
    }
    // Lets everybody read the test's files and write to the output folder.
    void openToAll() const {
        chmod(folder.path().c_str(), 0755);
        chmod(out.c_str(), 0777);
    }
    void replaceActual() const { fs::remove(folder / "Empty.kdzx/Actual.xml"); }
};

constexpr const char* copyReason =
    "MSPIMPPImporter importFromMppURL:toKdzxBundleURL:Failed to copy KZ2 Template bundle to destination directory.";
constexpr const char* loadReason = "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.";

}  // namespace

#define SKIP_WITHOUT_ORDINARY_USER(end)                                   \
    if ((end).status == 126 || (end).status == 127) {                     \
        GTEST_SKIP() << "an ordinary user cannot start the program here"; \
    }

TEST_F(OddFilesTest, namesOfPlansAreBytesLikeAnyOther) {
    for (const std::string name :
         {"a..b", "..", "..a", "line\nfeed", "carriage\rreturn", "quote\"and'more", "back\\slash", "\xFF\xFE\x80",
          "%41 %", "a--b", "&lt;<b>", "~root", "-n", "\x01", " "}) {
        SCOPED_TRACE(name);
        resetOutput();
        fs::copy_file(folder / "Plan.xml", folder / (name + ".xml"));
        const auto end = SpawnedProgram(importOf("./" + name + ".xml")).wait();
        EXPECT_EQ(end.status, 0) << end.log;
        ASSERT_EQ(newItems(), std::vector<fs::path>{out / (name + ".kdzx")});
        for (const auto* document : {"Actual.xml", "Baseline.xml", "__TOC.xml"}) {
            EXPECT_EQ(strictXMLComplaint(newItems().front() / document), "") << document;
        }
    }
}

TEST_F(OddFilesTest, aNameOf255BytesIsTaken) {
    const std::string name(250, 'n');
    fs::copy_file(folder / "Plan.xml", folder / (name + ".xml"));
    EXPECT_EQ(SpawnedProgram(importOf(name + ".xml")).wait().status, 0);
    EXPECT_EQ(check->complaintAboutComplete(out / (name + ".kdzx")).find("is missing"), std::string::npos);
    // There is no room for a number in the name of a second bundle.
    expectFailed(SpawnedProgram(importOf(name + ".xml")).wait(), "File name too long");
    EXPECT_EQ(newItems().size(), 1U);
}

TEST_F(OddFilesTest, aBundleNameThatIsTooLongIsAReason) {
    const std::string name(251, 'n');
    fs::copy_file(folder / "Plan.xml", folder / (name + ".xml"));
    const auto end = SpawnedProgram(importOf(name + ".xml")).wait();
    expectFailed(end, copyReason);
    expectFailed(end, "File name too long");
    EXPECT_TRUE(newItems().empty());
}

TEST_F(OddFilesTest, aLinkOutOfTheTemplateIsNeverWrittenThrough) {
    replaceActual();
    fs::copy_file(fs::path(KZMSP_TEMPLATE) / "Actual.xml", folder / "outside.xml");
    const auto outside = bytesOf(folder / "outside.xml");
    fs::create_symlink(folder / "outside.xml", folder / "Empty.kdzx/Actual.xml");
    EXPECT_EQ(runImport().status, 0);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(bundle / "Actual.xml")));
    EXPECT_EQ(strictXMLComplaint(bundle / "Actual.xml"), "");
    EXPECT_EQ(bytesOf(folder / "outside.xml"), outside);
}

TEST_F(OddFilesTest, aLinkThatLeadsNowhereFailsTheImport) {
    replaceActual();
    fs::create_symlink("nowhere", folder / "Empty.kdzx/Actual.xml");
    expectFailed(runImport(), loadReason);
}

TEST_F(OddFilesTest, aLinkToADeviceFailsTheImport) {
    replaceActual();
    fs::create_symlink("/dev/zero", folder / "Empty.kdzx/Actual.xml");
    expectFailed(runImport(), loadReason);
}

TEST_F(OddFilesTest, aFolderNamedActualFailsTheImport) {
    replaceActual();
    fs::create_directory(folder / "Empty.kdzx/Actual.xml");
    expectFailed(runImport(), loadReason);
    EXPECT_TRUE(fs::is_directory(bundle / "Actual.xml"));
}

TEST_F(OddFilesTest, aPipeInTheTemplateFailsTheImport) {
    ASSERT_EQ(mkfifo((folder / "Empty.kdzx/pipe").c_str(), 0600), 0);
    const auto end = runImport();
    expectFailed(end, copyReason);
    expectFailed(end, "is neither a file, a folder nor a link.");
    EXPECT_TRUE(newItems().empty());
}

TEST_F(OddFilesTest, aPipeAsPlanFailsAtOnce) {
    ASSERT_EQ(mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
    expectFailed(SpawnedProgram(importOf("pipe.xml")).wait(), loadReason);
}

// Somebody who writes to a pipe, a piece now and then, as long as this lives.
class PipeFeeder {
public:
    PipeFeeder(const fs::path& pipe, std::string piece, std::chrono::milliseconds pause) {
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        _end = open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        _feeding = std::thread([this, piece = std::move(piece), pause] {
            while (!_isDone) {
                static_cast<void>(!write(_end, piece.data(), piece.size()));
                std::this_thread::sleep_for(pause);
            }
        });
    }
    ~PipeFeeder() {
        _isDone = true;
        _feeding.join();
        close(_end);
    }
    PipeFeeder(const PipeFeeder&) = delete;
    PipeFeeder& operator=(const PipeFeeder&) = delete;

private:
    int _end;
    std::atomic<bool> _isDone = false;
    std::thread _feeding;
};

TEST_F(OddFilesTest, aPipeThatGivesAByteNowAndThenIsNoPlanAndNoList) {
    using namespace std::chrono_literals;
    const PipeFeeder plan(folder / "pipe.xml", " ", 1s);
    const PipeFeeder list(folder / "pipe", "a", 1s);
    SpawnedProgram planImport(importOf("pipe.xml"));
    const auto listEnd = runWith({"--template-path", "Empty.kdzx", "--input-list", "pipe", "out"});
    EXPECT_EQ(listEnd.status, 1);
    EXPECT_NE(listEnd.log.find("Input list file could not be read or empty: "), std::string::npos) << listEnd.log;
    expectFailed(planImport.wait(), loadReason);
}

TEST_F(OddFilesTest, aPipeWithoutEndIsNoPlanAndNoList) {
    using namespace std::chrono_literals;
    const PipeFeeder plan(folder / "pipe.xml", std::string(64 * 1024, ' '), 0s);
    expectFailed(SpawnedProgram(importOf("pipe.xml")).wait(), loadReason);
    const PipeFeeder list(folder / "pipe", std::string(64 * 1024, '\n'), 0s);
    const auto listEnd = runWith({"--template-path", "Empty.kdzx", "--input-list", "pipe", "out"});
    EXPECT_EQ(listEnd.status, 1);
    EXPECT_NE(listEnd.log.find("Input list file could not be read or empty: "), std::string::npos) << listEnd.log;
}

TEST_F(OddFilesTest, aDeviceAsPlanFailsAtOnce) {
    for (const auto* device : {"/dev/zero", "/dev/null", "/dev/full"}) {
        SCOPED_TRACE(device);
        resetOutput();
        fs::remove(folder / "device.xml");
        fs::create_symlink(device, folder / "device.xml");
        expectFailed(SpawnedProgram(importOf("device.xml")).wait(), loadReason);
    }
}

TEST_F(OddFilesTest, aDeviceAsListEndsTheRun) {
    const auto end = runWith({"--template-path", "Empty.kdzx", "--input-list", "/dev/zero", "out"});
    EXPECT_EQ(end.status, 1);
    EXPECT_NE(end.log.find("] Exception: FileNotFoundException\n"
                           "Input list file could not be read or empty: /dev/zero\n"),
              std::string::npos)
        << end.log;
}

TEST_F(OddFilesTest, aPipeThatNobodyWritesToIsAnEmptyList) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const auto end = runWith({"--template-path", "Empty.kdzx", "--input-list", "pipe", "out"});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.log.find("Exception"), std::string::npos) << end.log;
    EXPECT_TRUE(newItems().empty());
}

TEST_F(OddFilesTest, anUnreadableFileOfTheTemplateFailsTheImport) {
    openToAll();
    chmod((folder / "Empty.kdzx/sub/logo.txt").c_str(), 0);
    const auto end = runAsOrdinaryUser();
    SKIP_WITHOUT_ORDINARY_USER(end)
    expectFailed(end, copyReason);
    expectFailed(end, "/Empty.kdzx/sub/logo.txt': Permission denied");
    EXPECT_TRUE(newItems().empty());
}

TEST_F(OddFilesTest, anOutputFolderWithoutWritePermissionFailsTheImport) {
    openToAll();
    chmod(out.c_str(), 0555);
    const auto end = runAsOrdinaryUser();
    SKIP_WITHOUT_ORDINARY_USER(end)
    expectFailed(end, copyReason);
    expectFailed(end, "/out/Plan.kdzx': Permission denied");
    EXPECT_TRUE(newItems().empty());
}

TEST_F(OddFilesTest, aReadOnlyTemplateOfAnotherOwnerGivesABundleThatItsOwnerCanWrite) {
    openToAll();
    for (const auto* file : {"Actual.xml", "__TOC.xml", "sub/logo.txt"}) {
        chmod((folder / "Empty.kdzx/" + file).c_str(), 0444);
    }
    chmod((folder / "Empty.kdzx/sub").c_str(), 0555);
    chmod((folder / "Empty.kdzx").c_str(), 0555);
    const auto end = runAsOrdinaryUser();
    SKIP_WITHOUT_ORDINARY_USER(end)
    EXPECT_EQ(end.status, 0) << end.log;
    EXPECT_EQ(check->complaintAboutComplete(bundle), "");
    for (const auto* item : {"", "Actual.xml", "__TOC.xml", "sub", "sub/logo.txt"}) {
        EXPECT_NE(fs::status(bundle / item).permissions() & fs::perms::owner_write, fs::perms::none) << item;
    }
}
