#include "FaultFixture.h"

#include "ProgramRun.h"

namespace fs = std::filesystem;

FaultFixture::FaultFixture() {
    fs::copy(KZMSP_TEMPLATE, folder / "Empty.kdzx", fs::copy_options::recursive);
    folder.addFile("Empty.kdzx/sub/logo.txt", "logo");
    fs::create_symlink("sub/logo.txt", folder / "Empty.kdzx/logo");
    fs::copy_file(fs::path(KZMSP_SOURCE) / "examples/Baselines.xml", folder / "Plan.xml");
    folder.addFolder("home/.config");
    std::string list;
    for (int number = 0; number < 500; ++number) {
        list += "::\n";
    }
    folder.addFile("list", list + "Plan.xml");
    resetOutput();
    const auto end = runImport();
    EXPECT_EQ(end.status, 0) << end.log;
    check = std::make_unique<BundleCheck>(folder / "Empty.kdzx", bundle);
    before = contentOf(folder.path(), bundle);
    resetOutput();
}

void FaultFixture::resetOutput() const {
    fs::remove_all(out);
    folder.addFile("out/Other.kdzx/Actual.xml", "of another plan");
}

SpawnedProgram::Options FaultFixture::importOf(const std::string& plan,
                                               const std::map<std::string, std::string>& environment) const {
    SpawnedProgram::Options options;
    options.arguments = {"--template-path", "Empty.kdzx", plan, "out"};
    options.environment = {{"TZ", "UTC"}, {"LC_ALL", "C"}, {"HOME", folder / "home"}};
    options.environment.insert(environment.begin(), environment.end());
    options.folder = folder.path();
    return options;
}

ProgramEnd FaultFixture::runListImport(const std::map<std::string, std::string>& environment) const {
    auto options = importOf("", environment);
    options.arguments = {"--template-path", "Empty.kdzx", "--input-list", "list", "out"};
    return SpawnedProgram(options).wait();
}

std::vector<fs::path> FaultFixture::newItems() const {
    std::vector<fs::path> items;
    for (const auto& entry : fs::directory_iterator(out)) {
        if (entry.path().filename() != "Other.kdzx") {
            items.push_back(entry.path());
        }
    }
    return items;
}

std::string FaultFixture::changeOutsideTheBundle() const {
    return differenceOf(before, contentOf(folder.path(), bundle));
}
