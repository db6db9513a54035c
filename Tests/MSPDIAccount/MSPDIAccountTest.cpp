#include "MSPDIAccount.h"

#include <gtest/gtest.h>

TEST(MSPDIAccountTest, x) {}
