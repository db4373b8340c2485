// The root of every browser interface: nsISupports, identifiers and status codes.
//
// Interface headers depend on <stdint.h> alone and are read by two compilers: the module's and the browser's.
// The rules that keep both tables equal: pure operations only, no data, no virtual destructor, no overloads, no
// structures as results, booleans as whole 32-bit words (the browser's boolean is 4 bytes wide up to version 9
// and 1 byte from 10 on; pass 0 or 1, read the low byte of a zeroed word).
#pragma once

#include <stdint.h>

using nsresult = uint32_t;

inline constexpr nsresult NS_OK = 0;
inline constexpr nsresult NS_ERROR_NOT_IMPLEMENTED = 0x80004001;
inline constexpr nsresult NS_ERROR_NO_INTERFACE = 0x80004002;
inline constexpr nsresult NS_ERROR_NULL_POINTER = 0x80004003;
inline constexpr nsresult NS_ERROR_FAILURE = 0x80004005;
inline constexpr nsresult NS_ERROR_UNEXPECTED = 0x8000FFFF;
inline constexpr nsresult NS_ERROR_NOT_AVAILABLE = 0x80040111;
/// No published code; a failure like any other. The status of a transfer that the module took over, and the
/// answer where the service manager cannot be had.
inline constexpr nsresult kTakenOver = 0xFFFFFFFF;
inline constexpr nsresult kNoServiceManager = 0xFFFFFFFF;

constexpr bool failed(nsresult status) { return (status & 0x80000000u) != 0; }

struct nsIID {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
};

constexpr bool operator==(const nsIID& a, const nsIID& b) {
    if (a.data1 != b.data1 || a.data2 != b.data2 || a.data3 != b.data3) return false;
    for (int i = 0; i < 8; ++i)
        if (a.data4[i] != b.data4[i]) return false;
    return true;
}

// Objects of the browser's runtime; their address is all that may be used, through the runtime's functions.
class nsAString;
class nsACString;

class nsISupports {
  public:
    static constexpr nsIID kIID{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    /// Adds a reference to what it gives; on failure 0x80004002 and a null result.
    virtual nsresult QueryInterface(const nsIID* iid, void** result) = 0;
    virtual uint32_t AddRef() = 0;
    virtual uint32_t Release() = 0;
};
