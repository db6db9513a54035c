#pragma once

#include <gtest/gtest.h>

#include <string>

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

// A plan is gone through in pieces, without most of its leaves or with all of them, or as a whole where it has a
// document type. What is told is the same.
inline void expectOneAccount(const std::string& plan) {
    const auto told = [](const std::string& bytes, bool countsAll) {
        ServicesInMemory world;
        world.machine.addFile("/plans/Plan.xml", bytes);
        MSPDIAccountOptions options;
        std::size_t count = 0;
        if (countsAll) {
            options.visitLeaf = [&count](const std::string& /*path*/, MSPDIFate /*fate*/) { ++count; };
        }
        const auto account = MSPDIAccountOfPlan("/plans/Plan.xml", world.services, options);
        EXPECT_EQ(count, countsAll ? account.total() : 0);
        world.log.ignoreLines();
        return wordsOf(account);
    };
    const auto inPieces = told(plan, false);
    EXPECT_EQ(told(plan, true), inPieces);
    if (plan.starts_with("<Project")) {
        EXPECT_EQ(told("<!DOCTYPE Project>" + plan, false), inPieces);
    }
}
