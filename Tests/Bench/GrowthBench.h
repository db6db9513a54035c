#pragma once

#include <span>

#include "ImportRun.h"

// Prints, for each of these kinds of plan and each hostile shape, the seconds over the number of tasks, and the seconds
// over the number of baselines; each with its least-squares exponent and a verdict. Only those whose line begins with
// `Setup::only`: all for "growth", one for "growth, flat".
void measureAllGrowth(const Setup& setup, std::span<const Row> kinds);
