#pragma once

#include "ImportRun.h"

// Measures what `mspdi losses` takes against an import of the same plan, for plans of all sizes and of the kinds that
// are read in other ways. `--only` takes part of a line's name.
void measureAllLosses(const Setup& setup);
