// Notifications of HTTP traffic and the visitor of headers.
#pragma once

#include "binding/interfaces/supports.h"

class nsINetNotify : public nsISupports {
  public:
    static constexpr nsIID kIID{0x4A3019E0, 0x1CF3, 0x11D3, {0xA1, 0x5B, 0x00, 0x50, 0x04, 0x1C, 0xAF, 0x44}};
};

class nsIHttpNotify : public nsINetNotify {
  public:
    static constexpr nsIID kIID{0x5A6DEC35, 0xFB37, 0x4460, {0x85, 0xBB, 0x1C, 0x57, 0x25, 0x21, 0xD0, 0xCF}};

    virtual nsresult OnModifyRequest(nsISupports* channel) = 0;
    virtual nsresult OnExamineResponse(nsISupports* channel) = 0;
};

/// Called once per header. The strings need not be terminated. A failure would end the visit.
class nsIHttpHeaderVisitor : public nsISupports {
  public:
    static constexpr nsIID kIID{0x0CF40717, 0xD7C1, 0x4A94, {0x8C, 0x1E, 0xD6, 0xC9, 0x73, 0x41, 0x01, 0xBB}};

    virtual nsresult VisitHeader(const nsACString* name, const nsACString* value) = 0;
};

/// The same operation under the identifier that browsers have used since version 7.
class nsIHttpHeaderVisitor_7 : public nsISupports {
  public:
    static constexpr nsIID kIID{0x35412859, 0xB9D9, 0x423C, {0x88, 0x66, 0x2D, 0x45, 0x59, 0xFD, 0xD2, 0xBE}};

    virtual nsresult VisitHeader(const nsACString* name, const nsACString* value) = 0;
};
