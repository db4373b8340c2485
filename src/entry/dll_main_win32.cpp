#include "binding/wide_win32.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
