#include "browser/debug_lines.h"

#include <mutex>

#include "binding/utf.h"
#include "binding/wide_win32.h"

#include <winternl.h>

namespace zab::testbed {
namespace {

// The output functions raise these with the length (terminator included) and the text; unhandled they do
// nothing.
constexpr DWORD kNarrowText = 0x40010006;
constexpr DWORD kWideText = 0x4001000A;

std::mutex g_lock;
std::string g_text;

LONG CALLBACK onException(EXCEPTION_POINTERS* exception) {
    const auto& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != kNarrowText && record.ExceptionCode != kWideText)
        return EXCEPTION_CONTINUE_SEARCH;
    const auto length = record.ExceptionInformation[0] == 0 ? 0 : record.ExceptionInformation[0] - 1;
    const std::lock_guard lock(g_lock);
    if (record.ExceptionCode == kNarrowText)
        g_text.append(reinterpret_cast<const char*>(record.ExceptionInformation[1]), length);
    else
        g_text += utf8FromUtf16({reinterpret_cast<const char16_t*>(record.ExceptionInformation[1]), length});
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

std::vector<std::string> DebugLines::take() {
    const std::lock_guard lock(g_lock);
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (auto end = g_text.find('\n'); end != std::string::npos; end = g_text.find('\n', begin)) {
        lines.push_back(g_text.substr(begin, end - begin));
        if (!lines.back().empty() && lines.back().back() == '\r') lines.back().pop_back();
        begin = end + 1;
    }
    g_text.erase(0, begin);
    return lines;
}

}  // namespace zab::testbed
