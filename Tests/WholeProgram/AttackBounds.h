#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "PlanImport.h"

// Records the largest of a test's figures under that name in its report.
inline void recordLargest(const std::string& name, double figure) {
    static std::map<std::pair<const testing::TestInfo*, std::string>, double> largest;
    auto& known = largest[{testing::UnitTest::GetInstance()->current_test_info(), name}];
    known = std::max(known, figure);
    testing::Test::RecordProperty(name, std::to_string(known));
}

// What an attack may cost at most, in a build without sanitizers; they are given eight times as much.
inline void expectWithin(const PlanImport& import, double seconds, long megabytes) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_UNDEFINED__)
    constexpr int allowance = 8;
#else
    constexpr int allowance = 1;
#endif
    EXPECT_EQ(import.result().signal, 0) << import.log().substr(0, 2000);
    EXPECT_LE(import.result().processorSeconds, seconds * allowance);
    EXPECT_LE(import.result().peakKilobytes, megabytes * 1024 * allowance);
    recordLargest("processorSeconds", import.result().processorSeconds);
    recordLargest("peakKilobytes", static_cast<double>(import.result().peakKilobytes));
}

inline void repeat(std::ostream& file, std::string_view piece, int times) {
    constexpr int timesAtOnce = 1000;
    std::string block;
    for (int i = 0; i < timesAtOnce && times >= timesAtOnce; ++i) {
        block += piece;
    }
    for (; times >= timesAtOnce; times -= timesAtOnce) {
        file << block;
    }
    for (; times > 0; --times) {
        file << piece;
    }
}

// A plan that begins with some pieces and goes on with what `produce` writes at the end of `Project`.
inline std::function<void(std::ostream&)> planEndingWith(const std::function<void(std::ostream&)>& produce,
                                                         const PlanPieces& pieces = {}) {
    return [produce, pieces](std::ostream& file) {
        const std::string_view closing = "</Project>";
        auto plan = planOf(pieces);
        plan.resize(plan.size() - closing.size());
        file << plan;
        produce(file);
        file << closing;
    };
}
