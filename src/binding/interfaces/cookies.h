// The cookie manager and its cookies, as far as their slots are the same in every version.
#pragma once

#include "binding/interfaces/services.h"

class nsICookieManager : public nsISupports {
  public:
    static constexpr nsIID kIID{0xAAAB6710, 0x0F2C, 0x11D5, {0xA5, 0x3B, 0x00, 0x10, 0xA4, 0x01, 0xEB, 0x10}};
    static constexpr const char* kContract = "@mozilla.org/cookiemanager;1";

    virtual nsresult RemoveAll() = 0;
    virtual nsresult GetEnumerator(nsISimpleEnumerator** result) = 0;
};

class nsICookie : public nsISupports {
  public:
    /// One layout under three identifiers (up to 18; 21 to 45; 52 on).
    static constexpr nsIID kIIDs[] = {
        {0xE9FCB9A4, 0xD376, 0x458F, {0xB7, 0x20, 0xE6, 0x5E, 0x7D, 0xF5, 0x93, 0xBC}},
        {0x8684966B, 0x1877, 0x4F0F, {0x81, 0x55, 0xBE, 0x44, 0x90, 0xB9, 0x6B, 0xF7}},
        {0xADF0DB5E, 0x211E, 0x45A3, {0xBE, 0x14, 0x44, 0x86, 0xAC, 0x43, 0x0A, 0x58}},
    };

    virtual nsresult GetName(nsACString* name) = 0;
    virtual nsresult GetValue(nsACString* value) = 0;
    virtual nsresult GetIsDomain(uint32_t* isDomain) = 0;
    /// A domain cookie's host begins with a dot.
    virtual nsresult GetHost(nsACString* host) = 0;
    virtual nsresult GetPath(nsACString* path) = 0;
    virtual nsresult GetIsSecure(uint32_t* isSecure) = 0;
    /// Seconds since 1970; 0: until the browser ends.
    virtual nsresult GetExpires(uint64_t* seconds) = 0;
    virtual nsresult GetStatus(int32_t* status) = 0;
    virtual nsresult GetPolicy(int32_t* policy) = 0;
};
