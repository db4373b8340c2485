#include "transfer/failure_report_win32.h"

// Behind windows.h, which it needs.
#include <shellapi.h>

#include "binding/guard.h"
#include "binding/owner.h"
#include "binding/throwing_win32.h"
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

int show(std::string_view text, std::string_view title, UINT buttons) {
    return MessageBoxW(nullptr, wide(utf16FromUtf8(text)), wide(utf16FromUtf8(title)), buttons);
}

void tell(std::string_view text, std::string_view title) { show(text, title, MB_OK | MB_ICONINFORMATION); }

void show(const FailureBox& box) {
    if (box.kind == FailureBox::Kind::information) return tell(box.text, kFailureBoxTitle);
    if (show(box.text, kFailureBoxTitle, MB_YESNO) == IDYES)
        ShellExecuteA(nullptr, "open", kInstallationPage, nullptr, nullptr, SW_SHOWNORMAL);
}

HMODULE thisModule(DWORD flags) noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags,
                       reinterpret_cast<LPCWSTR>(&ReportTransferFailure), &module);
    return module;
}

DWORD WINAPI tellNoLinksFound(void*) noexcept {
    guarded([] { tell(messageTexts()[TextId::noLinksFound].view(), kFailureBoxTitle); });
    return 0;
}

DWORD WINAPI tellNoMediaFound(void*) noexcept {
    guarded([] {
        const MessageTexts& texts = messageTexts();
        tell(texts[TextId::noFlvFound].view(), texts[TextId::savingFlvTitle].view());
    });
    return 0;
}

/// Runs a report and gives the module's extra reference back where no code of the module has to run any more.
template <DWORD(WINAPI* report)(void*) noexcept>
DWORD WINAPI reportAndLeave(void* parameter) noexcept {
    const DWORD result = prepareThreadToThrow() ? report(parameter) : 0;
    const HMODULE module = thisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    if (module != nullptr) FreeLibraryAndExitThread(module, result);
    return result;
}

/// On a thread of its own that nobody waits for; without a thread there is no report.
void start(LPTHREAD_START_ROUTINE report, void* parameter) noexcept {
    // One more reference to this module: it stays loaded under the report.
    const HMODULE module = thisModule(0);
    const Owner<ThreadTraits> thread(CreateThread(nullptr, 0, report, parameter, 0, nullptr));
    if (!thread && module != nullptr) FreeLibrary(module);
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
    start(reportAndLeave<ReportTransferFailure>, reinterpret_cast<void*>(static_cast<std::uintptr_t>(status)));
}

void reportMissingManagerAtStart() noexcept { startTransferFailureReport(transfer_failure::kMissingAtStart); }

void reportNoCallsNow() noexcept { startTransferFailureReport(transfer_failure::kNoCallsNow); }

void reportNoLinksFound() noexcept { start(reportAndLeave<tellNoLinksFound>, nullptr); }

void reportNoMediaFound() noexcept { start(reportAndLeave<tellNoMediaFound>, nullptr); }

}  // namespace zab
