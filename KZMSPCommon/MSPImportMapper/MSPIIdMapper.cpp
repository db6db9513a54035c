#include "MSPIIdMapper.h"

#include <fmt/format.h>

#include "MSPCException.h"

namespace {

std::string idFromMspdiUID(char prefix, std::string_view kind, std::string_view mspdiUID) {
    if (mspdiUID.empty()) {
        return {};
    }
    if (mspdiUID.starts_with('-')) {
        throw MSPCInternalInconsistency(
            fmt::format("Invalid format of MSPDI {} ID (can not be negative number): {}", kind, mspdiUID));
    }
    return prefix + std::string(mspdiUID);
}

}  // namespace

std::string MSPIIdMapper::taskIdFromMspdiUID(std::string_view mspdiUID) const {
    return idFromMspdiUID('t', "Task", mspdiUID);
}

std::string MSPIIdMapper::resourceIdFromMspdiUID(std::string_view mspdiUID) const {
    return idFromMspdiUID('r', "Resource", mspdiUID);
}

std::string MSPIIdMapper::taskIdFromMspdiUID(MSPCTaskUID mspdiUID) const {
    return taskIdFromMspdiUID(fmt::to_string(MSPCNumberOf(mspdiUID)));
}

std::string MSPIIdMapper::resourceIdFromMspdiUID(MSPCResourceUID mspdiUID) const {
    return resourceIdFromMspdiUID(fmt::to_string(MSPCNumberOf(mspdiUID)));
}
