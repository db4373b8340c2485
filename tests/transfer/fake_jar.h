// A browser as far as its cookies go: a service manager, a cookie manager, and a jar that counts what it is
// asked.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "binding/browser_object.h"
#include "binding/interfaces/cookies.h"
#include "binding/runtime.h"

namespace zab::testing {

/// A browser of one-byte booleans leaves the other bytes as they were.
inline constexpr std::uint32_t kDirt = 0xABCDEF00;

struct Facts {
    std::string name = "n", value = "v", host = "h.example", path = "/";
    bool secure = false;
    std::uint64_t expires = 0;
    std::size_t identifier = 0;        // of nsICookie::kIIDs
    const char* unreadable = nullptr;  // the piece that the browser fails to give
};

/// The string containers of a runtime: the storage holds the address of a string.
struct TextRuntime {
    TextRuntime() {
        auto& record = runtimeRecord();
        record.NS_CStringContainerInit = [](StringContainerStorage* container) -> nsresult {
            at(container) = new std::string;
            ++open;
            return NS_OK;
        };
        record.NS_CStringContainerFinish = [](StringContainerStorage* container) {
            delete at(container);
            --open;
        };
        record.NS_CStringGetData = [](const nsACString* text, const char** data, std::uint32_t*) {
            *data = at(text)->data();
            return static_cast<std::uint32_t>(at(text)->size());
        };
        record.NS_CStringSetData = [](nsACString* text, const char* data, std::uint32_t length) -> nsresult {
            at(text)->assign(data, length);
            return NS_OK;
        };
        record.NS_GetServiceManager = [](nsIServiceManager** out) -> nsresult {
            *out = manager;
            if (manager == nullptr) return NS_ERROR_FAILURE;
            manager->AddRef();
            return NS_OK;
        };
    }
    ~TextRuntime() { runtimeRecord() = XpcomRuntime{}; }

    static std::string*& at(const void* container) {
        return *static_cast<std::string**>(const_cast<void*>(container));
    }
    static inline int open = 0;
    static inline nsIServiceManager* manager = nullptr;
};

class FakeCookie final : public nsICookie {
  public:
    explicit FakeCookie(Facts facts) : facts_(std::move(facts)) {}

    nsresult QueryInterface(const nsIID* iid, void** result) override {
        *result = nullptr;
        if (!(*iid == kIIDs[facts_.identifier])) return NS_ERROR_NO_INTERFACE;
        *result = this;
        AddRef();
        return NS_OK;
    }
    uint32_t AddRef() override { return ++references; }
    uint32_t Release() override { return --references; }
    nsresult GetName(nsACString* text) override { return give("name", text, facts_.name); }
    nsresult GetValue(nsACString* text) override { return give("value", text, facts_.value); }
    nsresult GetIsDomain(uint32_t*) override { return NS_ERROR_NOT_IMPLEMENTED; }
    nsresult GetHost(nsACString* text) override { return give("host", text, facts_.host); }
    nsresult GetPath(nsACString* text) override { return give("path", text, facts_.path); }
    nsresult GetIsSecure(uint32_t* word) override {
        *word = kDirt | (facts_.secure ? 1 : 0);
        return resultOf("secure");
    }
    nsresult GetExpires(uint64_t* seconds) override {
        *seconds = facts_.expires;
        return resultOf("expires");
    }
    nsresult GetStatus(int32_t*) override { return NS_ERROR_NOT_IMPLEMENTED; }
    nsresult GetPolicy(int32_t*) override { return NS_ERROR_NOT_IMPLEMENTED; }

    int references = 0;
    static inline std::size_t calls = 0;  // for pieces of cookies

  private:
    nsresult resultOf(std::string_view piece) const {
        ++calls;
        return facts_.unreadable != nullptr && piece == facts_.unreadable ? NS_ERROR_FAILURE : NS_OK;
    }
    nsresult give(std::string_view piece, nsACString* text, const std::string& value) const {
        TextRuntime::at(text)->assign(value);
        return resultOf(piece);
    }

    Facts facts_;
};

/// Service manager, cookie manager and enumerator in one: what `cookiesOf` walks through.
class FakeJar final : public nsISimpleEnumerator {
  public:
    explicit FakeJar(std::vector<Facts> contents) {
        for (auto& facts : contents) cookies.push_back(std::make_unique<FakeCookie>(std::move(facts)));
    }

    nsresult QueryInterface(const nsIID*, void**) override { return NS_ERROR_NO_INTERFACE; }
    uint32_t AddRef() override { return ++references; }
    uint32_t Release() override { return --references; }
    nsresult HasMoreElements(uint32_t* result) override {
        *result = kDirt | (next < cookies.size() ? 1 : 0);
        return NS_OK;
    }
    nsresult GetNext(nsISupports** result) override {
        if (next == failsAt) return NS_ERROR_FAILURE;
        *result = cookies[next++].get();
        (*result)->AddRef();
        return NS_OK;
    }

    std::vector<std::unique_ptr<FakeCookie>> cookies;
    std::size_t next = 0;
    int readings = 0;
    std::size_t failsAt = SIZE_MAX;
    int references = 0;
};

class FakeCookieManager final : public BrowserObject<FakeCookieManager, nsICookieManager> {
  public:
    explicit FakeCookieManager(FakeJar& jar) : jar_(jar) {}
    nsresult RemoveAll() override { return NS_ERROR_NOT_IMPLEMENTED; }
    nsresult GetEnumerator(nsISimpleEnumerator** result) override {
        ++jar_.readings;
        jar_.AddRef();
        *result = &jar_;
        return NS_OK;
    }

  private:
    FakeJar& jar_;
};

class FakeServices final : public BrowserObject<FakeServices, nsIServiceManager> {
  public:
    explicit FakeServices(nsICookieManager* cookies) : cookies_(cookies) {}
    nsresult GetService(const nsIID*, const nsIID*, void**) override { return NS_ERROR_NOT_IMPLEMENTED; }
    nsresult GetServiceByContractID(const char* contract, const nsIID* iid, void** result) override {
        EXPECT_STREQ(contract, "@mozilla.org/cookiemanager;1");
        return cookies_ == nullptr ? NS_ERROR_NOT_AVAILABLE : cookies_->QueryInterface(iid, result);
    }
    nsresult IsServiceInstantiated(const nsIID*, const nsIID*, uint32_t*) override { return NS_ERROR_FAILURE; }
    nsresult IsServiceInstantiatedByContractID(const char*, const nsIID*, uint32_t*) override {
        return NS_ERROR_FAILURE;
    }

  private:
    nsICookieManager* cookies_;
};

/// Runs `work` in a browser with this jar; afterwards everything has been given back.
template <class Work>
auto inBrowserWith(FakeJar& jar, Work work) {
    const TextRuntime runtime;
    const auto manager = makeObject<FakeCookieManager>(jar);
    const auto services = makeObject<FakeServices>(manager.get());
    TextRuntime::manager = services.get();
    auto result = work();
    TextRuntime::manager = nullptr;
    EXPECT_EQ(TextRuntime::open, 0);
    EXPECT_EQ(jar.references, 0);
    for (const auto& cookie : jar.cookies) EXPECT_EQ(cookie->references, 0);
    return result;
}

}  // namespace zab::testing
