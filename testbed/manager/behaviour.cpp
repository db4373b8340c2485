#include "behaviour.h"

namespace zab::testbed {
namespace {

constexpr const wchar_t* kKey = L"Software\\ZabrionHub";

DWORD numberOf(const wchar_t* name, DWORD fallback) {
    DWORD value = 0;
    DWORD size = sizeof(value);
    const LSTATUS status =
        RegGetValueW(HKEY_CURRENT_USER, kKey, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? value : fallback;
}

/// Whether this is the call that the countdown leads to; calls before it count it down.
bool isLastCall() {
    const DWORD callsLeft = numberOf(L"TestbedDie", 0);
    const DWORD next = callsLeft - 1;
    if (callsLeft > 1) RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"TestbedDie", REG_DWORD, &next, sizeof(next));
    return callsLeft == 1;
}

std::wstring textOf(const wchar_t* name) {
    wchar_t text[MAX_PATH]{};
    DWORD size = sizeof(text);
    const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, kKey, name, RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : L"";
}

}  // namespace

std::wstring programPath() {
    wchar_t path[MAX_PATH]{};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

bool isMute() { return numberOf(L"TestbedMute", 0) != 0; }

Behaviour readBehaviour() {
    Behaviour behaviour;
    behaviour.logFile = textOf(L"TestbedLog");
    if (behaviour.logFile.empty()) {
        const std::wstring program = programPath();
        behaviour.logFile = program.substr(0, program.rfind(L'\\') + 1) + L"zab_manager.jsonl";
    }
    behaviour.hangMs = numberOf(L"TestbedHangMs", 0);
    behaviour.dies = isLastCall();
    behaviour.answer = static_cast<HRESULT>(numberOf(L"TestbedAnswer", S_OK));
    behaviour.downloads = numberOf(L"TestbedDownload", 1) != 0;
    return behaviour;
}

}  // namespace zab::testbed
