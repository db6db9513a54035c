#pragma once

// Towards the future or the past.
enum class MSPEDirection { Forward, Backward };

// Whether a result may stand exactly on the end (forward) or start (backward) of a working period, or moves on to the
// next period in that direction.
enum class MSPEEdgeTime { Allowed, NotAllowed };
