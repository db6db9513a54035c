#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KZDXFiles.h"
#include "MSPCServices.h"

// The files of a document: of a folder as it stands, of anything else those that an import of the plan makes in memory.
// A null pointer where there are none, with the reason. `repairs` are the warnings that the plan's markup was damaged.
// What the import does not catch passes.
[[nodiscard]] std::unique_ptr<KZDXFiles> MSPDIFilesOfDocumentOrPlan(const std::string& name,
                                                                    const MSPCServices& services, std::string& failure,
                                                                    std::vector<std::string>& repairs);
