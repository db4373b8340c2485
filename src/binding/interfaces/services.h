// Services of the browser: service manager, observers, enumerators, interface requestors.
#pragma once

#include "binding/interfaces/supports.h"

class nsIServiceManager : public nsISupports {
  public:
    static constexpr nsIID kIID{0x8BB35ED9, 0xE332, 0x462D, {0x91, 0x55, 0x4A, 0x00, 0x2A, 0xB5, 0xC9, 0x58}};

    virtual nsresult GetService(const nsIID* cid, const nsIID* iid, void** result) = 0;
    virtual nsresult GetServiceByContractID(const char* contract, const nsIID* iid, void** result) = 0;
    virtual nsresult IsServiceInstantiated(const nsIID* cid, const nsIID* iid, uint32_t* result) = 0;
    virtual nsresult IsServiceInstantiatedByContractID(const char* contract, const nsIID* iid,
                                                       uint32_t* result) = 0;
};

class nsIObserver : public nsISupports {
  public:
    static constexpr nsIID kIID{0xDB242E01, 0xE4D9, 0x11D2, {0x9D, 0xDE, 0x00, 0x00, 0x64, 0x65, 0x73, 0x74}};

    /// `data` may be null.
    virtual nsresult Observe(nsISupports* subject, const char* topic, const char16_t* data) = 0;
};

class nsISimpleEnumerator : public nsISupports {
  public:
    static constexpr nsIID kIID{0xD1899240, 0xF9D2, 0x11D2, {0xBD, 0xD6, 0x00, 0x00, 0x64, 0x65, 0x73, 0x74}};

    virtual nsresult HasMoreElements(uint32_t* result) = 0;
    virtual nsresult GetNext(nsISupports** result) = 0;
};

class nsIObserverService : public nsISupports {
  public:
    static constexpr nsIID kIID{0xD07F5192, 0xE3D1, 0x11D2, {0x8A, 0xCD, 0x00, 0x10, 0x5A, 0x1B, 0x88, 0x60}};
    static constexpr const char* kContract = "@mozilla.org/observer-service;1";

    virtual nsresult AddObserver(nsIObserver* observer, const char* topic, uint32_t ownsWeak) = 0;
    virtual nsresult RemoveObserver(nsIObserver* observer, const char* topic) = 0;
    virtual nsresult NotifyObservers(nsISupports* subject, const char* topic, const char16_t* data) = 0;
    virtual nsresult EnumerateObservers(const char* topic, nsISimpleEnumerator** result) = 0;
};

/// Answered by a DOM window's interface requestor with its docshell, under the same identifier in every
/// version.
inline constexpr nsIID kDocCharsetIID = {
    0x9C18BB4E, 0x1DD1, 0x11B2, {0xBF, 0x91, 0x9C, 0xC8, 0x2C, 0x27, 0x58, 0x23}};

class nsIInterfaceRequestor : public nsISupports {
  public:
    static constexpr nsIID kIID{0x033A1470, 0x8B2A, 0x11D3, {0xAF, 0x88, 0x00, 0xA0, 0x24, 0xFF, 0xC0, 0x8C}};

    virtual nsresult GetInterface(const nsIID* iid, void** result) = 0;
};
