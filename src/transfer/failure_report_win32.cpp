#include "transfer/failure_report_win32.h"

// Behind windows.h, which it needs.
#include <shellapi.h>

#include "binding/guard.h"
#include "binding/owner.h"
#include "binding/utf.h"
#include "settings/settings_store.h"
#include "transfer/failure_report.h"
#include "transfer/transfer.h"

namespace zab {
namespace {

struct ThreadTraits {
    using Raw = HANDLE;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw thread) noexcept { CloseHandle(thread); }
};

FailureReportFacts readFacts() {
    FailureReportFacts facts;
    facts.exePath = exePathNarrow();
    if (facts.exePath) facts.compatibilityLayer = layersValue(*facts.exePath).value_or("");
    return facts;
}

void show(const FailureBox& box) {
    const bool asks = box.kind == FailureBox::Kind::question;
    const auto text = utf16FromUtf8(box.text);
    const auto title = utf16FromUtf8(kFailureBoxTitle);
    const int answer =
        MessageBoxW(nullptr, wide(text), wide(title), asks ? MB_YESNO : MB_OK | MB_ICONINFORMATION);
    if (asks && answer == IDYES)
        ShellExecuteA(nullptr, "open", kInstallationPage, nullptr, nullptr, SW_SHOWNORMAL);
}

HMODULE thisModule(DWORD flags) noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       reinterpret_cast<LPCWSTR>(&ReportTransferFailure), &module);
    return module;
}

/// Gives the module's extra reference back where no code of the module has to run any more.
DWORD WINAPI reportAndLeave(void* status) noexcept {
    const DWORD result = ReportTransferFailure(status);
    const HMODULE module = thisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    if (module != nullptr) FreeLibraryAndExitThread(module, result);
    return result;
}

}  // namespace

DWORD WINAPI ReportTransferFailure(void* status) noexcept {
    guarded([&] {
        const auto failure = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(status));
        show(failureBoxFor(failure, readFacts(), messageTexts()));
    });
    return 0;
}

void startTransferFailureReport(std::uint32_t status) noexcept {
    // One more reference to this module: it stays loaded under a report that nobody waits for.
    const HMODULE module = thisModule(0);
    void* const parameter = reinterpret_cast<void*>(static_cast<std::uintptr_t>(status));
    const Owner<ThreadTraits> thread(CreateThread(nullptr, 0, reportAndLeave, parameter, 0, nullptr));
    if (!thread && module != nullptr) FreeLibrary(module);
}

void reportMissingManagerAtStart() noexcept { startTransferFailureReport(transfer_failure::kMissingAtStart); }

}  // namespace zab
