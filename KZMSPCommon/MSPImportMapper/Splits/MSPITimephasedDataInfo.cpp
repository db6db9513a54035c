#include "MSPITimephasedDataInfo.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "MSPCGregorianCalendar.h"

namespace {

std::string dateText(std::optional<MSPCInstant> date) {
    return date ? MSPCGregorianCalendar::utc().displayText(*date) : "(null)";
}

}  // namespace

MSPITimephasedDataInfo::MSPITimephasedDataInfo(std::string taskName, std::int64_t type,
                                               std::optional<MSPCInstant> startDate, std::optional<MSPCInstant> endDate,
                                               MSPCTimeInterval duration)
    : MSPITimephasedDataInfo(std::make_shared<const std::string>(std::move(taskName)), type, startDate, endDate,
                             duration) {
}

MSPITimephasedDataInfo::MSPITimephasedDataInfo(std::shared_ptr<const std::string> taskName, std::int64_t type,
                                               std::optional<MSPCInstant> startDate, std::optional<MSPCInstant> endDate,
                                               MSPCTimeInterval duration)
    : _taskName(std::move(taskName)), _type(type), _startDate(startDate), _endDate(endDate), _duration(duration) {
}

void MSPITimephasedDataInfo::addResourceUID(MSPCResourceUID uid) {
    if (std::find(_resourceUIDs.begin(), _resourceUIDs.end(), uid) == _resourceUIDs.end()) {
        _resourceUIDs.push_back(uid);
    }
}

void MSPITimephasedDataInfo::sortResourceUIDs() {
    std::sort(_resourceUIDs.begin(), _resourceUIDs.end());
}

bool MSPITimephasedDataInfo::isEqualTimeSpan(const MSPITimephasedDataInfo& other) const {
    return _startDate == other._startDate && _endDate == other._endDate;
}

std::string MSPITimephasedDataInfo::description() const {
    auto text = fmt::format(
        "<MSPITimephasedDataInfo>:  type={}, startDate={}, endDate={}, duration={:.2f}, resoureUIDS:", _type,
        dateText(_startDate), dateText(_endDate), _duration);
    for (const auto uid : _resourceUIDs) {
        text += fmt::format(" {},", MSPCNumberOf(uid));
    }
    return text;
}
