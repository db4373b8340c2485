// What a test wants of the stand-in download manager: values under HKEY_CURRENT_USER\Software\ZabrionHub, read
// anew for each call, because COM starts the process and nobody can give it arguments.
#pragma once

#include <windows.h>

#include <string>

namespace zab::testbed {

struct Behaviour {
    std::wstring logFile;   // "TestbedLog"; absent: "zab_manager.jsonl" beside the program
    DWORD hangMs = 0;       // "TestbedHangMs": how long a call takes
    bool dies = false;      // "TestbedDie": the process ends during the call with this number, which is logged
    HRESULT answer = S_OK;  // "TestbedAnswer": what the call answers
    bool downloads = true;  // "TestbedDownload": 0 logs only
};

Behaviour readBehaviour();

/// "TestbedMute": a started process never registers its class.
bool isMute();

/// Full path of this program.
std::wstring programPath();

}  // namespace zab::testbed
