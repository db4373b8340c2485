// Owners of what COM lends, and the download manager's interface.
#pragma once

#include "binding/wide_win32.h"
// Behind windows.h, which it needs.
#include <oaidl.h>
#include <objbase.h>
#include <oleauto.h>

#include <new>
#include <string_view>

#include "binding/interface_ptr.h"
#include "binding/owner.h"

namespace zab {

struct BstrTraits {
    using Raw = BSTR;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw text) noexcept { SysFreeString(text); }
};
/// Null is an absent text, which COM tells from an empty one.
using Bstr = Owner<BstrTraits>;

/// An existing text, empty or not. Throws std::bad_alloc.
inline Bstr bstrOf(std::u16string_view text) {
    static constexpr char16_t kEmpty[1]{};
    const char16_t* data = text.data() == nullptr ? kEmpty : text.data();
    Bstr result(text.size() > UINT_MAX ? nullptr
                                       : SysAllocStringLen(wide(data), static_cast<UINT>(text.size())));
    if (!result) throw std::bad_alloc{};
    return result;
}

struct SafeArrayTraits {
    using Raw = SAFEARRAY*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw array) noexcept { SafeArrayDestroy(array); }
};
/// Owns the elements too.
using SafeArray = Owner<SafeArrayTraits>;

/// COM on this thread, for as long as the object lives. A thread on which COM already runs in its other mode
/// can make calls all the same, and is left as it was.
class ComApartment {
  public:
    ComApartment() noexcept : initialised_(SUCCEEDED(CoInitialize(nullptr))) {}
    ~ComApartment() {
        if (initialised_) CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

  private:
    bool initialised_;
};

// {E4FA915A-95CC-44FA-9B27-31110C42290E}
inline constexpr CLSID kLinkTransmitterClass{
    0xE4FA915A, 0x95CC, 0x44FA, {0x9B, 0x27, 0x31, 0x11, 0x0C, 0x42, 0x29, 0x0E}};

/// The download manager's interface. Its type library describes it, so that the system carries the call between
/// the processes.
class ILinkTransmitter : public IUnknown {
  public:
    // {E3FA9E4E-5C80-4698-9A3B-136722C4A476}
    static constexpr IID kIID{0xE3FA9E4E, 0x5C80, 0x4698, {0x9A, 0x3B, 0x13, 0x67, 0x22, 0xC4, 0xA4, 0x76}};

    virtual HRESULT STDMETHODCALLTYPE Reserved(LONG value) = 0;
    /// `reserved` is always null, `reservedVariant` always empty.
    virtual HRESULT STDMETHODCALLTYPE SendLinkToZab(BSTR url, BSTR referrer, BSTR cookies, BSTR postData,
                                                    BSTR user, BSTR password, BSTR reserved, BSTR fileName,
                                                    LONG flags, VARIANT* extraData,
                                                    VARIANT* reservedVariant) = 0;
};

}  // namespace zab
