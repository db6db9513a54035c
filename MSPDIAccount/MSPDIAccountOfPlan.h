#pragma once

#include <string>

#include "MSPCServices.h"
#include "MSPDIAccount.h"

// Imports the plan at a path in memory and looks what becomes of each leaf. Raises nothing that the plan is to blame
// for.
[[nodiscard]] MSPDIAccount MSPDIAccountOfPlan(const std::string& planPath, const MSPCServices& services,
                                              const MSPDIAccountOptions& options = {});
