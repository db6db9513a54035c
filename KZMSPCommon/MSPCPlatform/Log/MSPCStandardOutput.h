#pragma once

// For programs whose results go to standard output. Both know nothing of what a stream still holds.

// Opens a standard output that is closed so that whatever is written to it fails, as it does where it stays closed; but
// no file that is opened later gets its number. To be called before there is an `MSPCProcessGuard`.
void MSPCMakeClosedStandardOutputFail();

// Whether standard output is a pipe or a socket whose other end nobody reads any more.
[[nodiscard]] bool MSPCIsReaderOfStandardOutputGone();
