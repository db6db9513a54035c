#pragma once

#include <string_view>

#include "MSPDIMend.h"

// The step that saves what a kind of loss tells of, so that it arrives; a null pointer where none does.
[[nodiscard]] const MSPDIMendStep* MSPDIMendStepForLoss(std::string_view kind);
