#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "BundleCheck.h"
#include "ScopedTempFolder.h"
#include "SpawnedProgram.h"

// A folder with everything that an import needs: a template with a file and a link in a subfolder, a plan with three
// baselines, an output folder with another bundle in it, and a home.
class FaultFixture : public ::testing::Test {
protected:
    FaultFixture();

    // Brings the output folder back to its first state.
    void resetOutput() const;
    // Imports `plan` into "out"; `environment` beside the usual one.
    [[nodiscard]] SpawnedProgram::Options importOf(const std::string& plan,
                                                   const std::map<std::string, std::string>& environment = {}) const;
    [[nodiscard]] ProgramEnd runImport(const std::map<std::string, std::string>& environment = {}) const {
        return SpawnedProgram(importOf("Plan.xml", environment)).wait();
    }
    // The same by a list whose last line is "Plan.xml", after so many comments that reading it takes some memory.
    [[nodiscard]] ProgramEnd runListImport(const std::map<std::string, std::string>& environment) const;
    // The paths of everything in "out" that is neither the other bundle nor anything like it.
    [[nodiscard]] std::vector<std::filesystem::path> newItems() const;
    // Whether everything is as before but for "out/Plan.kdzx".
    [[nodiscard]] std::string changeOutsideTheBundle() const;

    // A count of repetitions: the environment's KZMSP_<name>, or the given one.
    [[nodiscard]] static int countOf(const std::string& name, int usual) {
        const char* const text = std::getenv(("KZMSP_" + name).c_str());
        return text != nullptr ? std::atoi(text) : usual;
    }

    ScopedTempFolder folder;
    const std::filesystem::path out = folder / "out";
    const std::filesystem::path bundle = out / "Plan.kdzx";
    FolderContent before;
    std::unique_ptr<BundleCheck> check;
};
