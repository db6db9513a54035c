#include "MSPCLog.h"

#include <unistd.h>

#include "MSPCLogLine.h"

class MSPCStandardErrorLog::Lines {
public:
    Lines(const std::string& processName, MSPCLogBlock& block) : _block(block), _line(processName) {}

    void write(std::string_view message) { _block.add(_line.with(message)); }

private:
    MSPCLogBlock& _block;
    MSPCLogLine _line;
};

MSPCStandardErrorLog::MSPCStandardErrorLog(const std::string& processName)
    : _block(STDERR_FILENO), _lines(std::make_unique<Lines>(processName, _block)) {
}

MSPCStandardErrorLog::~MSPCStandardErrorLog() {
    _block.showStatus({});
    flush();
}

void MSPCStandardErrorLog::write(std::string_view message) {
    _lines->write(message);
}

bool MSPCStandardErrorLog::isOnTerminal() const {
    return _block.isTerminal();
}

void MSPCStandardErrorLog::showStatus(std::string_view text) {
    _block.showStatus(MSPCShownText(text).view());
}

void MSPCStandardErrorLog::flush() noexcept {
    _block.flush();
}

void MSPCStandardErrorLog::flushWithin(std::chrono::milliseconds limit) noexcept {
    _block.flushWithin(limit);
}
