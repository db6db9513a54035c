#pragma once

#include <gtest/gtest.h>

#include "MSPCException.h"

// Expects a statement to raise exactly this kind of failure with exactly this reason.
#define EXPECT_RAISES(statement, Kind, expectedReason)                             \
    do {                                                                           \
        try {                                                                      \
            static_cast<void>(statement);                                          \
            ADD_FAILURE() << "nothing was raised, expected: " << (expectedReason); \
        } catch (const Kind& raised) {                                             \
            EXPECT_EQ(raised.reason(), (expectedReason));                          \
        } catch (const MSPCException& raised) {                                    \
            ADD_FAILURE() << raised.name() << " was raised: " << raised.reason();  \
        }                                                                          \
    } while (false)
