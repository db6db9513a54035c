#include "MSPIAmounts.h"

#include <fmt/compile.h>
#include <fmt/format.h>

namespace MSPIAmounts {

std::string fixedCostText(double mspdi) {
    return fmt::format(FMT_COMPILE("{:f}"), mspdi);
}

std::string unitsText(double mspdi) {
    return fmt::format(FMT_COMPILE("{:f}"), mspdi);
}

double costPerUse(double mspdi) {
    return mspdi / 100.0;
}

std::string costPerUseText(double mspdi) {
    return fmt::format("{:.2f}", costPerUse(mspdi));
}

}  // namespace MSPIAmounts
