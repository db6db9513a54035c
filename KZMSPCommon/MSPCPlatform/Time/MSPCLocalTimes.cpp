#include "MSPCLocalTimes.h"

#include <cstdlib>
#include <ctime>

namespace {

std::mutex& turns() {
    static std::mutex mutex;
    return mutex;
}

std::optional<std::string> processZone() {
    const char* tz = std::getenv("TZ");
    return tz == nullptr ? std::nullopt : std::optional<std::string>(tz);
}

std::tm localTimeAt(std::int64_t second) {
    const auto time = static_cast<std::time_t>(second);
    std::tm local{};
    ::localtime_r(&time, &local);
    return local;
}

}  // namespace

MSPCLocalTimes::MSPCLocalTimes(const std::string& setting)
    : _turn(turns()),
      _isRule(!setting.starts_with(':')),
      _isOther(processZone() != setting),
      _before(_isOther ? processZone() : std::nullopt) {
    if (_isOther) {
        setProcessZone(setting);
    }
}

MSPCLocalTimes::~MSPCLocalTimes() {
    if (!_isOther) {
        return;
    }
    if (_before) {
        ::setenv("TZ", _before->c_str(), 1);
    } else {
        ::unsetenv("TZ");
    }
    ::tzset();
}

bool MSPCLocalTimes::areKnown() const {
    const auto local = localTimeAt(0);
    return local.tm_zone != nullptr && *local.tm_zone != '\0';
}

MSPCLocalOffset MSPCLocalTimes::offsetAt(std::int64_t second) const {
    const auto local = localTimeAt(second);
    return {local.tm_gmtoff, local.tm_isdst > 0};
}

std::optional<std::int64_t> MSPCLocalTimes::standardOffset() const {
    return _isRule ? std::optional<std::int64_t>(-::timezone) : std::nullopt;
}

void MSPCLocalTimes::setProcessZone(const std::string& setting) {
    ::setenv("TZ", setting.c_str(), 1);
    ::tzset();
}
