// The extension's script helpers, reached through the service manager by contract ID, and the listener that the
// module hands to one of them. Their slots are the extension's contract; see docs/extension-contract.md.
//
// Strings come back in an initialised container that the helper sets; interfaces carry one reference for the
// caller.
#pragma once

#include "binding/interfaces/supports.h"

#define ZAB_RESERVED_SLOT(number) virtual nsresult Reserved##number() = 0

class iZABHelper : public nsISupports {
  public:
    static constexpr nsIID kIID{0xAE578843, 0xE99D, 0x4433, {0xAC, 0x0E, 0x12, 0xFA, 0x1B, 0xE3, 0x51, 0x1F}};
    static constexpr const char* kContract = "@zab/mozilla_cc_helper;1";

    virtual nsresult GetSelectedTab(nsISupports** helper) = 0;
};

/// An address object of the helper's own: not the browser's URI interface, whose slot 5 gives less.
class iZABHelperURI : public nsISupports {
  public:
    ZAB_RESERVED_SLOT(3);
    ZAB_RESERVED_SLOT(4);
    virtual nsresult GetSpec(nsACString* url) = 0;
};

class iZABHelper5 : public nsISupports {
  public:
    static constexpr nsIID kIID{0xA32FE791, 0xD37F, 0x4523, {0x83, 0x00, 0x79, 0x75, 0xCA, 0xDB, 0x07, 0x81}};
    static constexpr const char* kContract = "@zab/mozilla_cc_helper5;1";

    ZAB_RESERVED_SLOT(3);
    ZAB_RESERVED_SLOT(4);
    ZAB_RESERVED_SLOT(5);
    ZAB_RESERVED_SLOT(6);
    ZAB_RESERVED_SLOT(7);
    ZAB_RESERVED_SLOT(8);
    ZAB_RESERVED_SLOT(9);
    ZAB_RESERVED_SLOT(10);
    ZAB_RESERVED_SLOT(11);
    ZAB_RESERVED_SLOT(12);
    ZAB_RESERVED_SLOT(13);
    ZAB_RESERVED_SLOT(14);
    ZAB_RESERVED_SLOT(15);
    ZAB_RESERVED_SLOT(16);
    /* 17 */ virtual nsresult GetEventType(nsISupports* event, nsAString* type) = 0;
    ZAB_RESERVED_SLOT(18);
    /* 19 */ virtual nsresult AddEventListener(const nsAString* type, nsISupports* target,
                                               nsISupports* listener, uint32_t useCapture) = 0;
    ZAB_RESERVED_SLOT(20);
    ZAB_RESERVED_SLOT(21);
    ZAB_RESERVED_SLOT(22);
    ZAB_RESERVED_SLOT(23);
    ZAB_RESERVED_SLOT(24);
    ZAB_RESERVED_SLOT(25);
    ZAB_RESERVED_SLOT(26);
    ZAB_RESERVED_SLOT(27);
    ZAB_RESERVED_SLOT(28);
    ZAB_RESERVED_SLOT(29);
    ZAB_RESERVED_SLOT(30);
    ZAB_RESERVED_SLOT(31);
    ZAB_RESERVED_SLOT(32);
    ZAB_RESERVED_SLOT(33);
    ZAB_RESERVED_SLOT(34);
    ZAB_RESERVED_SLOT(35);
    ZAB_RESERVED_SLOT(36);
    ZAB_RESERVED_SLOT(37);
    ZAB_RESERVED_SLOT(38);
    ZAB_RESERVED_SLOT(39);
    ZAB_RESERVED_SLOT(40);
    ZAB_RESERVED_SLOT(41);
    ZAB_RESERVED_SLOT(42);
    ZAB_RESERVED_SLOT(43);
    ZAB_RESERVED_SLOT(44);
    ZAB_RESERVED_SLOT(45);
    ZAB_RESERVED_SLOT(46);
    ZAB_RESERVED_SLOT(47);
    ZAB_RESERVED_SLOT(48);
    /* 49 */ virtual nsresult GetRequestMethod(nsISupports* channel, nsACString* method) = 0;
    ZAB_RESERVED_SLOT(50);
    ZAB_RESERVED_SLOT(51);
    ZAB_RESERVED_SLOT(52);
    ZAB_RESERVED_SLOT(53);
    ZAB_RESERVED_SLOT(54);
    ZAB_RESERVED_SLOT(55);
    ZAB_RESERVED_SLOT(56);
    /// The local file that holds the URL's body.
    /* 57 */ virtual nsresult GetBodyFile(const nsACString* url, nsAString* path) = 0;
    ZAB_RESERVED_SLOT(58);
    /* 59 */ virtual nsresult GetURI(nsISupports* channel, nsISupports** uri) = 0;
    /// 0x10000: a document load; 0x80000: a top-level document load.
    /* 60 */ virtual nsresult GetLoadFlags(nsISupports* channel, uint32_t* flags) = 0;
    /* 61 */ virtual nsresult Cancel(nsISupports* channel, nsresult status) = 0;
    /* 62 */ virtual nsresult GetResponseStatus(nsISupports* channel, uint32_t* status) = 0;
    /* 63 */ virtual nsresult GetResponseHeader(nsISupports* channel, const nsACString* name,
                                                nsACString* value) = 0;
    /* 64 */ virtual nsresult SetResponseHeader(nsISupports* channel, const nsACString* name,
                                                const nsACString* value, uint32_t merge) = 0;
    /* 65 */ virtual nsresult VisitResponseHeaders(nsISupports* channel, nsISupports* visitor) = 0;
    /// The document of an event's target.
    /* 66 */ virtual nsresult GetTargetDocument(nsISupports* event, nsISupports** document) = 0;
    /* 67 */ virtual nsresult RemoveEventListener(const nsAString* type, nsISupports* target,
                                                  nsISupports* listener, uint32_t useCapture) = 0;
    /* 68 */ virtual nsresult VisitRequestHeaders(nsISupports* channel, nsISupports* visitor) = 0;
    /* 69 */ virtual nsresult GetWindowEventTarget(nsISupports* window, nsISupports** target) = 0;
    /// The page that the load belongs to; null for a top-level load that has no page yet.
    /* 70 */ virtual nsresult GetChannelDocument(nsISupports* channel, nsISupports** document) = 0;
    /// Browser window number, tab number, HWND of the top-level browser window.
    /* 71 */ virtual nsresult GetPageIdentity(nsISupports* document, uint32_t* window, uint32_t* tab,
                                              uint64_t* nativeWindow) = 0;
    /* 72 */ virtual nsresult GetPageInfo(nsISupports* document, nsACString* url, nsAString* title) = 0;
    /// CSS pixels; fails when the element is absent.
    /* 73 */ virtual nsresult GetElementBox(nsISupports* document, const nsAString* elementId, int32_t* x,
                                            int32_t* y, int32_t* width, int32_t* height) = 0;
    /* 74 */ virtual nsresult GetDocumentWindow(nsISupports* document, nsISupports** domWindow) = 0;
    /// The links of the selected part of the page, one per line.
    /* 75 */ virtual nsresult GetSelectedLinks(nsISupports* event, nsAString* text) = 0;
};

class iZABHelper8 : public nsISupports {
  public:
    static constexpr nsIID kIID{0xA2EA31C7, 0x5BAD, 0x4435, {0x8B, 0x7A, 0x48, 0xE0, 0x16, 0x23, 0x78, 0x4D}};
    static constexpr const char* kContract = "@zab/mozilla_cc_helper8;1";

    virtual nsresult SetHost(nsISupports* host) = 0;
};

/// Receives a copy of a response's body. Never stops the response.
class iZABSListener : public nsISupports {
  public:
    static constexpr nsIID kIID{0x026FD2FA, 0x8068, 0x4EF5, {0x94, 0xA8, 0x9B, 0xFD, 0x8F, 0xEE, 0x58, 0xE3}};

    /// 1 while more of the body is wanted, 0 once the listener is done.
    virtual nsresult WantsMoreData(uint32_t* wants) = 0;
    virtual nsresult OnResponseData(const uint8_t* bytes, uint32_t length, uint32_t reserved) = 0;
    /// The deleting destructor as an ordinary operation: the two compilers lay virtual destructors out
    /// differently.
    virtual void DeleteThis(uint32_t flags) = 0;
};

class iZABHelper9 : public nsISupports {
  public:
    static constexpr nsIID kIID{0x924048BE, 0x8338, 0x4CC8, {0x96, 0xC9, 0x3F, 0xD4, 0x57, 0xCC, 0xC6, 0x62}};
    static constexpr const char* kContract = "@zab/mozilla_cc_helper9;1";

    virtual nsresult AttachListener(iZABSListener* listener, nsISupports* channel) = 0;
};

class iZABHelper11 : public nsISupports {
  public:
    static constexpr nsIID kIID{0x7BC4EF75, 0xA242, 0x4A1F, {0xBB, 0x8A, 0xF3, 0x3D, 0x13, 0x14, 0x0A, 0x1E}};
    static constexpr const char* kContract = "@zab/mozilla_cc_helper11;1";

    ZAB_RESERVED_SLOT(3);
    virtual nsresult Refresh() = 0;
    ZAB_RESERVED_SLOT(5);
    ZAB_RESERVED_SLOT(6);
    virtual nsresult GetDocumentAttribute(const nsAString* name, nsISupports* document, nsAString* value) = 0;
};

#undef ZAB_RESERVED_SLOT
