#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unicode/utypes.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "BundleMask.h"
#include "PlanImport.h"
#include "ScopedTempFolder.h"

// Whatever a plan or a template refers to outside itself is left alone: no file is opened, no host is asked.

namespace fs = std::filesystem;

namespace {

constexpr std::string_view CanaryText = "canary-3f81c2";

// A file that tells whether anybody opened it.
class CanaryFile {
public:
    explicit CanaryFile(const fs::path& path) : _watch(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        EXPECT_GE(inotify_add_watch(_watch, path.c_str(), IN_OPEN | IN_ACCESS), 0);
    }
    ~CanaryFile() { close(_watch); }
    CanaryFile(const CanaryFile&) = delete;
    CanaryFile& operator=(const CanaryFile&) = delete;

    // Since the last question.
    [[nodiscard]] bool wasOpened() const {
        std::array<char, 4'096> events{};
        bool isOpened = false;
        while (read(_watch, events.data(), events.size()) > 0) {
            isOpened = true;
        }
        return isOpened;
    }

private:
    int _watch;
};

// A host of this machine's own that tells whether anybody asked it.
class CanaryHost {
public:
    CanaryHost() : _socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        _address.sin_family = AF_INET;
        _address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof _address;
        EXPECT_EQ(bind(_socket, address(), size), 0);
        EXPECT_EQ(listen(_socket, 8), 0);
        EXPECT_EQ(getsockname(_socket, address(), &size), 0);
    }
    ~CanaryHost() { close(_socket); }
    CanaryHost(const CanaryHost&) = delete;
    CanaryHost& operator=(const CanaryHost&) = delete;

    [[nodiscard]] std::string name() const { return "127.0.0.1:" + std::to_string(ntohs(_address.sin_port)); }
    // Since the last question.
    [[nodiscard]] bool wasAsked() const {
        const int caller = accept(_socket, nullptr, nullptr);
        return caller >= 0 && close(caller) == 0;
    }
    void ask() {
        const int caller = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(connect(caller, address(), sizeof _address), 0);
        close(caller);
    }

private:
    sockaddr* address() { return reinterpret_cast<sockaddr*>(&_address); }

    int _socket;
    sockaddr_in _address{};
};

// A way to refer to "@" from a document whose root is named "$": what comes before the root, and what stands in texts.
struct Reference {
    std::string_view name;
    std::string_view declaration;
    std::string_view content;
};

constexpr Reference References[] = {
    {"an entity", "<!DOCTYPE $ [<!ENTITY stolen SYSTEM \"@\">]>", "&stolen;"},
    {"a public entity", "<!DOCTYPE $ [<!ENTITY stolen PUBLIC \"-//x//y\" \"@\">]>", "&stolen;"},
    {"an entity that is never used", "<!DOCTYPE $ [<!ENTITY stolen SYSTEM \"@\">]>", ""},
    {"an entity inside an entity", "<!DOCTYPE $ [<!ENTITY a SYSTEM \"@\"><!ENTITY stolen \"&a;\">]>", "&stolen;"},
    {"an entity that is no XML", "<!DOCTYPE $ [<!NOTATION n SYSTEM \"@\"><!ENTITY stolen SYSTEM \"@\" NDATA n>]>", ""},
    {"a parameter entity", "<!DOCTYPE $ [<!ENTITY % all SYSTEM \"@\"> %all;]>", "&stolen;"},
    {"a public parameter entity", "<!DOCTYPE $ [<!ENTITY % all PUBLIC \"-//x//y\" \"@\"> %all;]>", "&stolen;"},
    {"a parameter entity made by another", "<!DOCTYPE $ [<!ENTITY % p \"<!ENTITY &#37; all SYSTEM '@'>\"> %p; %all;]>",
     "&stolen;"},
    {"an external subset", "<!DOCTYPE $ SYSTEM \"@\">", "&stolen;"},
    {"a public external subset", "<!DOCTYPE $ PUBLIC \"-//x//y\" \"@\">", "&stolen;"},
    {"an external subset beside an internal one", "<!DOCTYPE $ SYSTEM \"@\" [<!ENTITY a \"b\">]>", "&stolen;"},
    {"an inclusion", "", R"(<i:include xmlns:i="http://www.w3.org/2001/XInclude" href="@"/>)"},
    {"an inclusion of text", "", R"(<i:include xmlns:i="http://www.w3.org/2001/XInclude" href="@" parse="text"/>)"},
    {"a style sheet", R"(<?xml-stylesheet type="text/xsl" href="@"?>)", ""},
    {"a schema", "", R"(<a xmlns:x="http://www.w3.org/2001/XMLSchema-instance" x:schemaLocation="urn:a @"/>)"},
    {"a schema without namespace", "",
     R"(<a xmlns:x="http://www.w3.org/2001/XMLSchema-instance" x:noNamespaceSchemaLocation="@"/>)"},
    {"a catalog", R"(<?oasis-xml-catalog catalog="@"?><!DOCTYPE $ PUBLIC "-//x//y" "@">)", "&stolen;"},
    {"a base", "<!DOCTYPE $ [<!ENTITY stolen SYSTEM \"canary.txt\">]>", R"(<a xml:base="@">&stolen;</a>)"},
};

class ExternalReferences : public testing::Test {
protected:
    ExternalReferences() {
        folder.addFile("run/canary.txt",
                       "<!ENTITY stolen \"" + std::string(CanaryText) + "\">" + std::string(CanaryText));
        fs::create_directory(run / "out");
        fs::copy(KZMSP_TEMPLATE, run / "Empty.kdzx", fs::copy_options::recursive);
        canary = std::make_unique<CanaryFile>(run / "canary.txt");
        targets = {(run / "canary.txt").native(), "canary.txt", "file://" + (run / "canary.txt").native(),
                   "http://" + host.name() + "/canary", "ftp://" + host.name() + "/canary"};
    }

    static std::string filled(std::string_view pattern, const std::string& rootName, const std::string& target) {
        std::string text(pattern);
        replaceAll(text, "$", rootName);
        replaceAll(text, "@", target);
        return text;
    }

    void expectNothingFetched(const std::string& what) {
        SCOPED_TRACE(what);
        fs::remove_all(run / "out");
        fs::create_directory(run / "out");
        const auto result =
            runProgram({"--template-path", "Empty.kdzx", "Plan.xml", "out"}, run,
                       {{"TZ", "UTC"}, {"XML_CATALOG_FILES", "canary.txt"}, {"ICU_DATA", (run / "data").native()}});
        EXPECT_EQ(result.signal, 0) << result.standardError;
        EXPECT_FALSE(canary->wasOpened());
        EXPECT_FALSE(host.wasAsked());
        EXPECT_EQ(result.standardError.find(CanaryText), std::string::npos);
        for (const auto& entry : fs::recursive_directory_iterator(run / "out")) {
            if (entry.is_regular_file()) {
                EXPECT_EQ(bytesOf(entry.path()).find(CanaryText), std::string::npos) << entry.path();
                ++documents;
            }
        }
    }

    ScopedTempFolder folder;
    const fs::path run = folder / "run";
    CanaryHost host;
    std::unique_ptr<CanaryFile> canary;
    std::vector<std::string> targets;
    int documents = 0;
};

}  // namespace

TEST_F(ExternalReferences, ofAPlanAreNotFollowed) {
    struct Reader {
        std::string_view xmlDeclaration;
        std::string_view markup;
    };
    // Read as it comes; read as a whole because of its encoding; mended.
    constexpr Reader readers[] = {{"", ""}, {R"(<?xml version="1.0" encoding="windows-1252"?>)", ""}, {"", "</b> & "}};
    for (const auto& reference : References) {
        for (const auto& target : targets) {
            for (const auto& reader : readers) {
                const auto content = filled(reference.content, "Project", target);
                folder.addFile(
                    "run/Plan.xml",
                    planOf({"<Title>" + content + "</Title>" + std::string(reader.markup) + "<Tasks>" +
                                taskElement("1", "<Name>x" + content + "y</Name>") + content + "</Tasks>",
                            "",
                            std::string(reader.xmlDeclaration) + filled(reference.declaration, "Project", target)}));
                expectNothingFetched(std::string(reference.name) + " to " + target + " " +
                                     std::string(reader.xmlDeclaration) + std::string(reader.markup));
                ASSERT_FALSE(HasFailure());
            }
        }
    }
    EXPECT_GT(documents, 0);
}

TEST_F(ExternalReferences, ofATemplateAreNotFollowed) {
    folder.addFile("run/Plan.xml", planOf({"<Tasks>" + taskElement("1") + "</Tasks>", "", ""}));
    const auto place = [](std::string document, const std::string& declaration, const std::string& content) {
        const auto root = document.find('<', document.find("?>"));
        document.insert(document.rfind("</"), content);
        return document.insert(root, declaration);
    };
    for (const std::string file : {"Actual.xml", "__TOC.xml"}) {
        const auto original = bytesOf(fs::path(KZMSP_TEMPLATE) / file);
        for (const auto& reference : References) {
            for (const auto& target : targets) {
                folder.addFile("run/Empty.kdzx/" + file, place(original, filled(reference.declaration, "root", target),
                                                               filled(reference.content, "root", target)));
                expectNothingFetched(file + ": " + std::string(reference.name) + " to " + target);
                ASSERT_FALSE(HasFailure());
            }
        }
        folder.addFile("run/Empty.kdzx/" + file, original);
    }
    EXPECT_GT(documents, 0);
}

// Whoever may set the environment of a server shall not choose what the encodings of other people's plans mean.
TEST_F(ExternalReferences, toAnEncodingAreNoPaths) {
    const auto encodings = run / "data" / U_ICUDATA_NAME;
    fs::create_directories(encodings / "sub");
    for (const std::string name : {"mine", "sub/mine", "ibm-5348_P100-1997", "cnvalias"}) {
        fs::create_symlink(run / "canary.txt", encodings / (name + ".cnv"));
    }
    fs::create_symlink(run / "canary.txt", encodings / "cnvalias.icu");
    fs::create_symlink(run / "canary.txt", run / "data" / (U_ICUDATA_NAME ".dat"));
    fs::create_symlink(run / "canary.txt", run / "canary.cnv");
    for (const auto& encoding : std::vector<std::string>{"mine", "sub/mine", "../../canary", (run / "canary").native(),
                                                         "mine,version=1", "windows-1252"}) {
        folder.addFile("run/Plan.xml", planOf({"<Tasks>" + taskElement("1", "<Name>x</Name>") + "</Tasks>", "",
                                               "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>"}));
        expectNothingFetched(encoding);
    }
    EXPECT_GT(documents, 0);
}

TEST_F(ExternalReferences, wouldBeNoticed) {
    EXPECT_FALSE(canary->wasOpened());
    EXPECT_NE(bytesOf(run / "canary.txt").find(CanaryText), std::string::npos);
    EXPECT_TRUE(canary->wasOpened());
    EXPECT_FALSE(canary->wasOpened());

    EXPECT_FALSE(host.wasAsked());
    host.ask();
    EXPECT_TRUE(host.wasAsked());
    EXPECT_FALSE(host.wasAsked());

    const PlanImport inside("inside",
                            planOf({"<Tasks>" + taskElement("1", "<Name>&told;</Name>") + "</Tasks>", "",
                                    "<!DOCTYPE Project [<!ENTITY told \"" + std::string(CanaryText) + "\">]>"}));
    EXPECT_EQ(inside.texts("title"), std::vector<std::string>{std::string(CanaryText)});
}
