#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MSPCXMLNode.h"

// A piece of a split task waiting for its place in the scenario and its final id, and its owner's reference to it.
struct MSPIPendingPiece {
    MSPCXMLNewElement piece;
    MSPCXMLNode reference;
};

// Makes a target task the owner of pieces, which it refers to in order by their provisional ids.
//
// `split` takes the place of the owner's `type`; without a type it follows the `title`, without a title it comes first.
// `kdzxEnd`, the end of the last piece where there is one, becomes the owner's `end-date`, and its `locked-end-date`
// and `end-constraint-date` where it has them. The efforts of the pieces, where they add up to something, become the
// owner's. With `isReportingErrors` a piece without an effort or with several adds nothing; without, the value read
// counts.
//
// Raises `MSPCInternalInconsistency` "Minimum number of task splits must be 2." and what the float getter raises for an
// effort that is no number.
[[nodiscard]] std::vector<MSPIPendingPiece> splitTaskIntoPieces(MSPCXMLNode task, std::vector<MSPCXMLNewElement> pieces,
                                                                const std::optional<std::string>& kdzxEnd,
                                                                bool isReportingErrors);
