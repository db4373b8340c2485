#include <gtest/gtest.h>

#include <iterator>
#include <utility>

#include "scenarios/recorded.h"
#include "transfer/com_win32.h"

namespace zab::testbed {
namespace {

std::string narrow(BSTR text) {
    const auto length = static_cast<int>(SysStringLen(text));
    std::string result(static_cast<std::size_t>(length) * 2, '\0');
    result.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_ACP, 0, text, length, result.data(), static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

class Transmitter final : public ILinkTransmitter {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE Reserved(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SendLinkToZab(BSTR url, BSTR referrer, BSTR cookies, BSTR postData, BSTR user,
                                            BSTR password, BSTR, BSTR fileName, LONG flags, VARIANT* extraData,
                                            VARIANT*) override {
        constexpr HRESULT kServerDied = static_cast<HRESULT>(0x800706BA);
        if (failed(browser->faults().step("SendLinkToZab"))) return kServerDied;
        Told& one = told.emplace_back();
        one.flags = static_cast<std::uint32_t>(flags);
        const std::pair<const char*, BSTR> texts[] = {
            {"url", url},   {"referrer", referrer}, {"cookies", cookies},  {"postData", postData},
            {"user", user}, {"password", password}, {"fileName", fileName}};
        for (const auto& [name, text] : texts)
            if (text != nullptr) one.texts[name] = narrow(text);
        if (extraData->vt != (VT_ARRAY | VT_BSTR)) return S_OK;
        BSTR* elements = nullptr;
        SafeArrayAccessData(extraData->parray, reinterpret_cast<void**>(&elements));
        for (ULONG i = 0; i < extraData->parray->rgsabound[0].cElements; ++i)
            if (elements[i] != nullptr) one.texts[nameOf(static_cast<ExtraElement>(i))] = narrow(elements[i]);
        SafeArrayUnaccessData(extraData->parray);
        return S_OK;
    }

    Browser* browser = nullptr;
    std::vector<Told> told;
    int references = 0;
};
Transmitter transmitter;

HRESULT STDAPICALLTYPE createTransmitter(const CLSID* type, IUnknown*, DWORD, const IID* iid, void** out) {
    EXPECT_TRUE(IsEqualCLSID(*type, kLinkTransmitterClass) && IsEqualIID(*iid, ILinkTransmitter::kIID));
    transmitter.AddRef();
    *out = static_cast<ILinkTransmitter*>(&transmitter);
    return S_OK;
}

int STDAPICALLTYPE answersNo(HWND, const void*, const void*, UINT) { return IDNO; }

constexpr std::uint64_t kAccessDenied = ERROR_ACCESS_DENIED, kOutOfMemory = 0x8007000E,
                        kNotRegistered = 0x80040154;

const HookedImport kSystem[] = {
    {"RegOpenKeyExA", kAccessDenied},
    {"RegOpenKeyExW", kAccessDenied},
    {"RegCreateKeyExA", kAccessDenied},
    {"RegQueryValueExA", kAccessDenied},
    {"RegQueryValueExW", kAccessDenied},
    {"RegSetValueExA", kAccessDenied},
    {"RegEnumKeyExA", kAccessDenied},
    {"RegNotifyChangeKeyValue", kAccessDenied},
    {"CoInitialize", kOutOfMemory},
    {"CoUninitialize", kCannotFail},
    {"CoCreateInstance", kNotRegistered, reinterpret_cast<const void*>(&createTransmitter)},
    {"SysAllocStringLen"},
    {"SysFreeString", kCannotFail},
    {"SafeArrayCreate"},
    {"SafeArrayPutElement", kOutOfMemory},
    {"SafeArrayDestroy", kCannotFail},
    {"WaitForSingleObject", WAIT_TIMEOUT},
    {"ReleaseMutex", kCannotFail},
    {"CreateMutexA"},
    {"CreateThread"},
    {"GetModuleFileNameW"},
    {"GetFileVersionInfoSizeW"},
    {"MultiByteToWideChar"},
    {"WideCharToMultiByte"},
    {"MessageBoxA", kCannotFail, reinterpret_cast<const void*>(&answersNo)},
    {"MessageBoxW", kCannotFail, reinterpret_cast<const void*>(&answersNo)},
};

}  // namespace

HookedSystem::HookedSystem(Browser& browser) : browser_(browser), hook_(browser, kSystem) {
    // COM runs on a browser's main thread all the time. Starting it for every transfer takes ten times as long
    // as the transfer.
    CoInitialize(nullptr);
    transmitter.browser = &browser;
    transmitter.told.clear();
}

HookedSystem::~HookedSystem() {
    transmitter.browser = nullptr;
    CoUninitialize();
}

std::vector<Told> HookedSystem::takesTold() { return std::exchange(transmitter.told, {}); }

std::string HookedSystem::unbalanced() const {
    constexpr std::pair<const char*, const char*> kPairs[] = {{"CoInitialize", "CoUninitialize"},
                                                              {"SysAllocStringLen", "SysFreeString"},
                                                              {"SafeArrayCreate", "SafeArrayDestroy"},
                                                              {"WaitForSingleObject", "ReleaseMutex"}};
    const Faults& faults = browser_.faults();
    std::string text;
    if (transmitter.references != 0) text += std::to_string(transmitter.references) + " of the transmitter; ";
    for (const auto& [takes, gives] : kPairs) {
        const std::uint32_t taken = faults.countOf(takes) - (faults.failedOperation() == takes ? 1 : 0);
        if (taken != faults.countOf(gives))
            text += std::string(takes) + " " + std::to_string(taken) + " times, " + gives + " " +
                    std::to_string(faults.countOf(gives)) + " times; ";
    }
    return text;
}

}  // namespace zab::testbed
