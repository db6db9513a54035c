#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

// What the wall clocks of a zone show, apart from Greenwich.
struct MSPCLocalOffset {
    std::int64_t seconds = 0;  // east of Greenwich
    // Whether the zone database calls it daylight-saving time: in Ireland it is the winter, behind the standard time.
    bool isDaylightSaving = false;

    friend bool operator==(const MSPCLocalOffset&, const MSPCLocalOffset&) = default;
};

// Asks the C library, which reads the machine's zone database. It knows one zone at a time, that of TZ in the
// environment: for the life of this value that is the given one, and only one such value lives at a time (another
// thread waits). TZ is as it was afterwards; nothing is touched where it is the same anyway.
class MSPCLocalTimes {
public:
    // `setting` is a value for TZ, see `MSPCZoneSetting.h`.
    explicit MSPCLocalTimes(const std::string& setting);
    ~MSPCLocalTimes();
    MSPCLocalTimes(const MSPCLocalTimes&) = delete;
    MSPCLocalTimes& operator=(const MSPCLocalTimes&) = delete;

    // Whether the C library could read the zone's file; otherwise it takes UTC.
    [[nodiscard]] bool areKnown() const;
    // The offset in force at a second since 1970-01-01T00:00:00Z.
    [[nodiscard]] MSPCLocalOffset offsetAt(std::int64_t second) const;
    // The offset of standard time, which a POSIX rule names; none for a zone in a file, where it may change.
    [[nodiscard]] std::optional<std::int64_t> standardOffset() const;

    // Sets TZ for the rest of the run, for all who ask the C library. For `main` alone.
    static void setProcessZone(const std::string& setting);

private:
    std::unique_lock<std::mutex> _turn;
    bool _isRule;
    bool _isOther;
    std::optional<std::string> _before;  // the value of TZ where this one is another
};
