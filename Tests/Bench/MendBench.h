#pragma once

#include "ImportRun.h"

// Measures what `mspdi mend` takes, for plans that it mends in different ways, against an import of the mended copy.
// `--only` takes part of a line's name.
void measureAllMends(const Setup& setup);
