#include "transfer/failure_report_win32.h"

// Behind windows.h, which it needs.
#include <shellapi.h>

#include <atomic>

#include "binding/guard.h"
#include "binding/never_destroyed.h"
#include "binding/this_module_win32.h"
#include "binding/utf.h"
#include "settings/settings_store.h"
#include "transfer/failure_report.h"
#include "transfer/transfer.h"

namespace zab {
namespace {

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

SharedBox& sharedBox() noexcept {
    static NeverDestroyed<SharedBox> box;
    return box.get();
}

void reportTransferFailure(void* status) {
    ReportTransferFailure(status);
    sharedBox().closed();
}

void tellNoLinksFound(void*) { tell(messageTexts()[TextId::noLinksFound].view(), kFailureBoxTitle); }

std::atomic<bool> g_noMediaIsTold{false};

void tellNoMediaFound(void*) {
    guarded([] {
        const MessageTexts& texts = messageTexts();
        tell(texts[TextId::noFlvFound].view(), texts[TextId::savingFlvTitle].view());
    });
    g_noMediaIsTold = false;
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
    if (!sharedBox().opens(std::chrono::steady_clock::now())) return;
    if (startThread(moduleThread<reportTransferFailure>,
                    reinterpret_cast<void*>(static_cast<std::uintptr_t>(status))) == 0)
        sharedBox().closed();
}

void reportMissingManagerAtStart() noexcept {
    constexpr void* kStatus = nullptr;  // as ReportTransferFailure takes kMissingAtStart
    startThread(moduleThread<ReportTransferFailure>, kStatus);
}

void reportNoCallsNow() noexcept { startTransferFailureReport(transfer_failure::kNoCallsNow); }

void reportNoLinksFound() noexcept { startThread(moduleThread<tellNoLinksFound>, nullptr); }

void reportNoMediaFound() noexcept {
    // Anybody may ask for what a page does not offer: one box at a time.
    if (g_noMediaIsTold.exchange(true)) return;
    if (startThread(moduleThread<tellNoMediaFound>, nullptr) == 0) g_noMediaIsTold = false;
}

}  // namespace zab
