#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MSPCInstant.h"
#include "MSPCUID.h"

// One span of timephased work of a task.
class MSPITimephasedDataInfo {
public:
    // `type` is the MSPDI type of the record (0 where it has none); dates that are missing stay none; `duration` is in
    // seconds.
    MSPITimephasedDataInfo(std::string taskName, std::int64_t type, std::optional<MSPCInstant> startDate,
                           std::optional<MSPCInstant> endDate, MSPCTimeInterval duration);
    // The same with a name, which is there, that all spans of the task share.
    MSPITimephasedDataInfo(std::shared_ptr<const std::string> taskName, std::int64_t type,
                           std::optional<MSPCInstant> startDate, std::optional<MSPCInstant> endDate,
                           MSPCTimeInterval duration);

    [[nodiscard]] const std::string& taskName() const { return *_taskName; }
    [[nodiscard]] std::int64_t type() const { return _type; }
    [[nodiscard]] std::optional<MSPCInstant> startDate() const { return _startDate; }
    void setStartDate(std::optional<MSPCInstant> date) { _startDate = date; }
    [[nodiscard]] std::optional<MSPCInstant> endDate() const { return _endDate; }
    void setEndDate(std::optional<MSPCInstant> date) { _endDate = date; }
    [[nodiscard]] MSPCTimeInterval duration() const { return _duration; }
    void setDuration(MSPCTimeInterval seconds) { _duration = seconds; }
    // Factor from timephased to assigned work; 0 means none.
    [[nodiscard]] double workScale() const { return _workScale; }
    void setWorkScale(double scale) { _workScale = scale; }

    // Resources of the span, each once, in the order added. The import adds none.
    [[nodiscard]] const std::vector<MSPCResourceUID>& resourceUIDs() const { return _resourceUIDs; }
    void addResourceUID(MSPCResourceUID uid);
    void sortResourceUIDs();

    // Whether both dates are the same as the other's.
    [[nodiscard]] bool isEqualTimeSpan(const MSPITimephasedDataInfo& other) const;
    // "<MSPITimephasedDataInfo>:  type=1, startDate=2012-03-05 07:00:00 +0000, endDate=…, duration=28800.00,
    // resoureUIDS:" and " <uid>," per resource; a missing date prints "(null)".
    [[nodiscard]] std::string description() const;

private:
    std::shared_ptr<const std::string> _taskName;
    std::int64_t _type;
    std::optional<MSPCInstant> _startDate;
    std::optional<MSPCInstant> _endDate;
    MSPCTimeInterval _duration;
    double _workScale = 0;
    std::vector<MSPCResourceUID> _resourceUIDs;
};
