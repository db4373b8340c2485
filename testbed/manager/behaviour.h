// What a test wants of the stand-in download manager: values under HKEY_CURRENT_USER\Software\ZabrionHub, read
// anew for each call, because COM starts the process and nobody can give it arguments.
#pragma once

#include "binding/wide_win32.h"
#include "browser/desktop.h"

namespace zab::testbed {

/// Full path of this program.
inline std::string programPath() {
    char path[MAX_PATH];
    return {path, GetModuleFileNameA(nullptr, path, MAX_PATH)};
}

struct Behaviour {
    static DWORD numberOf(const char* name, DWORD fallback = 0) {
        return SettingsTree::number(name).value_or(fallback);
    }

    std::string logFile = SettingsTree::text("TestbedLog").value_or(programPath() + ".jsonl");
    DWORD hangMs = numberOf("TestbedHangMs");  // how long a call takes
    DWORD diesAt =
        numberOf("TestbedDie");  // the process ends during the call with this number, which is logged
    HRESULT answer = static_cast<HRESULT>(numberOf("TestbedAnswer", S_OK));  // of a call
    bool downloads = numberOf("TestbedDownload", 1) != 0;                    // else logs only
    bool isMute = numberOf("TestbedMute") != 0;  // a started process never registers its class
};

}  // namespace zab::testbed
