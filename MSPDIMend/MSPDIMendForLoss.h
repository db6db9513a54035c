#pragma once

#include <string_view>

#include "MSPDIAccount.h"
#include "MSPDIMend.h"

// The step that saves what a kind of loss tells of, so that it arrives; a null pointer where none does.
[[nodiscard]] const MSPDIMendStep* MSPDIMendStepForLoss(std::string_view kind);
// The same for the losses of a plan; a null pointer, too, where the step can do nothing for any of them: what only the
// project's summary task has gets no custom field, and a calendar that is not there cannot be taken.
[[nodiscard]] const MSPDIMendStep* MSPDIMendStepForLoss(const MSPDILoss& loss);
