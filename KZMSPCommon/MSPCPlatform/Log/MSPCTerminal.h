#pragma once

// Whether standard output is a terminal, and its `TERM` one that understands more than plain text.
[[nodiscard]] bool MSPCIsStandardOutputTerminal();
