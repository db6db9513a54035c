#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "MSPDIProgram.h"
#include "ServicesInMemory.h"

// Runs `mspdi` on files in memory; the current folder is "/home/me". What the last run told is kept.
class RunInMemory : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments, bool isColored = false) {
        out.str("");
        err.str("");
        return MSPDIProgram(arguments, world.services, {out, err, isColored});
    }
    [[nodiscard]] nlohmann::json told() const { return nlohmann::json::parse(out.str()); }

    ServicesInMemory world;
    std::ostringstream out;
    std::ostringstream err;
};
