#include "browser/debug_lines.h"

#include "binding/utf.h"
#include "binding/wide_win32.h"

#include <winternl.h>

namespace zab::testbed {
namespace {

// The output functions raise these with the length (terminator included) and the text; unhandled they do
// nothing.
constexpr DWORD kNarrowText = 0x40010006;
constexpr DWORD kWideText = 0x4001000A;

LONG CALLBACK onException(EXCEPTION_POINTERS* exception) {
    const auto& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != kNarrowText && record.ExceptionCode != kWideText)
        return EXCEPTION_CONTINUE_SEARCH;
    const auto length = record.ExceptionInformation[0] == 0 ? 0 : record.ExceptionInformation[0] - 1;
    if (record.ExceptionCode == kNarrowText)
        DebugLines::add({reinterpret_cast<const char*>(record.ExceptionInformation[1]), length});
    else
        DebugLines::add(
            utf8FromUtf16({reinterpret_cast<const char16_t*>(record.ExceptionInformation[1]), length}));
    return EXCEPTION_CONTINUE_EXECUTION;
}

/// The process's answer to whoever asks whether it is debugged.
unsigned char& beingDebugged() {
    PEB* process = nullptr;
    __asm__("movq %%gs:0x60, %0" : "=r"(process));
    return process->BeingDebugged;
}

}  // namespace

DebugLines::DebugLines(bool claimDebugger)
    : handler_(AddVectoredExceptionHandler(1, &onException)), before_(beingDebugged()) {
    beingDebugged() = claimDebugger;
    take();
}

DebugLines::~DebugLines() {
    beingDebugged() = before_;
    RemoveVectoredExceptionHandler(handler_);
}

}  // namespace zab::testbed
