// The link transmitter as a COM server in a process of its own.
#pragma once

#include <windows.h>

namespace zab::testbed {

/// Serves until no object has been alive and no download running for a few seconds.
int serve();

/// Writes or removes what COM needs to start this program and to carry calls to it; the latter ends a running
/// server too. Gives the exit status of the program.
int registerServer();
int unregisterServer();

}  // namespace zab::testbed
