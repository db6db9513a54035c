#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "MSPDIAccountOfPlan.h"
#include "ServicesInMemory.h"

// All that an account says, in words.
inline std::string wordsOf(const MSPDIAccount& account) {
    std::string words = account.obstacle.value_or("") + (account.refusal ? account.refusal->reason : "") + "\n";
    for (const auto count : account.leaves) {
        words += std::to_string(count) + " ";
    }
    for (const auto& loss : account.losses) {
        words += "\n" + std::string(loss.kind) + " " + std::to_string(loss.count) + " " + loss.element;
        for (const auto& place : loss.where) {
            words += "\n  " + place.path + " " + place.uid + " " + place.name + " " + place.value;
        }
    }
    return words;
}

// What is told of a plan, by fate and kind, with so many places of each and perhaps the fates of all leaves.
struct ToldOfPlan {
    ToldOfPlan(const std::string& bytes, bool tellsAll) {
        ServicesInMemory world;
        world.machine.addFile("/plans/Plan.xml", bytes);
        MSPDIAccountOptions options;
        MSPDIFatesByPath byPath;
        if (tellsAll) {
            options.fates = &byPath;
            options.mostPlaces = std::numeric_limits<std::size_t>::max();
        }
        auto account = MSPDIAccountOfPlan("/plans/Plan.xml", world.services, options);
        world.log.ignoreLines();
        total = account.total();
        words = wordsOf(account);
        byPath.forEach([this](const std::string& path, MSPDIFate fate) {
            fates.emplace_back(path + " " + std::string(MSPDIFateNames[MSPDIFateIndex(fate)]));
        });
        for (auto& loss : account.losses) {
            EXPECT_TRUE(!tellsAll || loss.where.size() == loss.count) << loss.kind;
            loss.where.clear();
        }
        counts = wordsOf(account);
    }

    std::size_t total = 0;
    std::string words;
    std::string counts;
    std::vector<std::string> fates;
};

// A plan is gone through in pieces, without most of its leaves or with all of them, or as a whole where it has a
// document type. What is told is the same, whether of some places or of all.
inline void expectOneAccount(const std::string& plan) {
    const ToldOfPlan some(plan, false);
    const ToldOfPlan all(plan, true);
    EXPECT_EQ(all.counts, some.counts);
    EXPECT_EQ(all.fates.size(), all.total);
    if (plan.starts_with("<Project")) {
        const auto asAWhole = "<!DOCTYPE Project>" + plan;
        EXPECT_EQ(ToldOfPlan(asAWhole, false).words, some.words);
        const ToldOfPlan allAsAWhole(asAWhole, true);
        EXPECT_EQ(allAsAWhole.words, all.words);
        EXPECT_EQ(allAsAWhole.fates, all.fates);
    }
}
