// Tells the user, on a thread of its own, why a download could not be handed over.
#pragma once

#include <cstdint>

#include "binding/wide_win32.h"

namespace zab {

/// Thread procedure: shows one message box and ends with its thread. `status` is the failure as a number in the
/// pointer's place; 0 says at start-up that the download manager is missing.
DWORD WINAPI ReportTransferFailure(void* status) noexcept;

/// Runs `ReportTransferFailure` and does not wait for it, unless an open box tells this failure (see
/// SharedBox). Without a thread there is no report.
void startTransferFailureReport(std::uint32_t status) noexcept;

}  // namespace zab
