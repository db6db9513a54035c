#pragma once

#include <random>
#include <string>

// A plan with one to four of its values damaged as other programs and people damage them: made unreadable, left out,
// calendars renamed, levels shuffled, UIDs doubled or made negative.
[[nodiscard]] std::string damagedPlan(std::string plan, std::mt19937& random);
// The same with its elements doubled, removed and exchanged, its levels shuffled, and numbers and references beyond all
// others.
[[nodiscard]] std::string shakenPlan(std::string plan, std::mt19937& random);
