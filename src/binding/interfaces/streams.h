// Input streams, their position, and the upload stream of a channel.
//
// Two generations of each differ in identifiers and integer widths, not in slots: one class serves both where
// the widths allow it.
#pragma once

#include "binding/interfaces/supports.h"

class nsIInputStream : public nsISupports {
  public:
    /// Up to version 16: Available() gives 32 bits.
    static constexpr nsIID kIID{0xFA9C7F6C, 0x61B3, 0x11D4, {0x98, 0x77, 0x00, 0xC0, 0x4F, 0xA0, 0xCF, 0x4A}};
    /// Later: 64 bits.
    static constexpr nsIID kIID17{0x53CDBC97, 0xC2D7, 0x4E30, {0xB2, 0xC3, 0x45, 0xB2, 0xEE, 0x79, 0xDB, 0x18}};

    virtual nsresult Close() = 0;
    /// `count` must point to a zeroed 64-bit word: the older generation writes its low half only.
    virtual nsresult Available(uint64_t* count) = 0;
    virtual nsresult Read(char* buffer, uint32_t count, uint32_t* bytesRead) = 0;
    virtual nsresult ReadSegments(void* writer, void* closure, uint32_t count, uint32_t* bytesRead) = 0;
    virtual nsresult IsNonBlocking(uint32_t* result) = 0;
};

class nsISeekableStream : public nsISupports {
  public:
    static constexpr nsIID kIID{0x8429D350, 0x1040, 0x4661, {0x8B, 0x71, 0xF2, 0xA6, 0xBA, 0x45, 0x59, 0x80}};
    static constexpr nsIID kIIDBefore17{
        0xE9DE5DF0, 0xC7EC, 0x11D3, {0x8C, 0xDA, 0x00, 0x60, 0xB0, 0xFC, 0x14, 0xA3}};
    static constexpr int32_t kSeekSet = 0;

    virtual nsresult Seek(int32_t whence, int64_t offset) = 0;
    virtual nsresult Tell(int64_t* position) = 0;
    virtual nsresult SetEOF() = 0;
};

/// Up to version 16; the layout that the module is written against.
class nsIUploadChannel : public nsISupports {
  public:
    static constexpr nsIID kIID{0xDDF633D8, 0xE9A4, 0x439D, {0xAD, 0x88, 0xDE, 0x63, 0x6F, 0xD9, 0xBB, 0x75}};

    virtual nsresult SetUploadStream(nsIInputStream* stream, const nsACString* contentType, int32_t length) = 0;
    /// The stream may be null.
    virtual nsresult GetUploadStream(nsISupports** stream) = 0;
};

/// Later: the length has 64 bits.
class nsIUploadChannel17 : public nsISupports {
  public:
    static constexpr nsIID kIID{0x5CFE15BD, 0x5ADB, 0x4A7F, {0x9E, 0x55, 0x4F, 0x5A, 0x67, 0xD1, 0x57, 0x94}};

    virtual nsresult SetUploadStream(nsIInputStream* stream, const nsACString* contentType, int64_t length) = 0;
    virtual nsresult GetUploadStream(nsISupports** stream) = 0;
};
