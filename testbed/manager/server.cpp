// The stand-in download manager: takes transfers through COM, writes down what it received, and downloads it.
//
//     zab_manager --register | --unregister    once per machine (Wine prefix)
//     zab_manager -Embedding                   as COM starts it; serves until no object has been alive and no
//                                              download running for a few seconds
#include <atomic>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "behaviour.h"
#include "binding/browser_text_win32.h"
#include "download.h"
// Made from link_transmitter.idl; needs windows.h.
#include "link_transmitter.h"
#include "transfer_log.h"

namespace zab::testbed {
namespace {

constexpr DWORD kIdleMs = 10000;
constexpr const wchar_t* kStopEvent = L"ZabTestbedManagerStop";
constexpr const char* kSettings = "Software\\ZabrionHub";
constexpr const char* kClassKey = "Software\\Classes\\CLSID\\{E4FA915A-95CC-44FA-9B27-31110C42290E}";
constexpr GUID kTypeLibrary{0x1996D87C, 0x3D68, 0x4C8A, {0xBA, 0xDF, 0xB4, 0x51, 0xE2, 0x9C, 0xCC, 0x33}};

/// Objects alive and downloads under way: while there are any, the process stays.
std::atomic<long> g_busy{0};

DWORD g_registration = 0;

struct Busy {
    Busy() { ++g_busy; }
    ~Busy() { --g_busy; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
};

/// Behind the call: downloads, then writes the line of the transfer.
void finish(const Behaviour& behaviour, nlohmann::ordered_json line) {
    try {
        line["download"] = download(line);
    } catch (const std::exception& error) {
        line["error"] = error.what();
    }
    appendLine(behaviour.logFile, line);
}

class Transmitter final : public ILinkTransmitter {
  public:
    explicit Transmitter(std::unique_ptr<Busy> busy) : busy_(std::move(busy)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        const bool known = iid == __uuidof(ILinkTransmitter) || iid == __uuidof(IUnknown);
        *result = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE Reserved(LONG) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE SendLinkToZab(BSTR url, BSTR referrer, BSTR cookies, BSTR postData, BSTR user,
                                            BSTR password, BSTR reserved, BSTR fileName, LONG flags,
                                            VARIANT* extraData, VARIANT* reservedVariant) override {
        const Behaviour behaviour;
        nlohmann::ordered_json line = {{"url", jsonOf(url)},
                                       {"referrer", jsonOf(referrer)},
                                       {"cookies", jsonOf(cookies)},
                                       {"postData", jsonOf(postData)},
                                       {"user", jsonOf(user)},
                                       {"password", jsonOf(password)},
                                       {"reserved", jsonOf(reserved)},
                                       {"fileName", jsonOf(fileName)},
                                       {"flags", static_cast<std::uint32_t>(flags)},
                                       {"extraData", jsonOf(extraData)},
                                       {"reservedVariant", jsonOf(reservedVariant)}};
        Sleep(behaviour.hangMs);
        const DWORD left = behaviour.diesAt - 1;
        if (behaviour.diesAt > 1)
            RegSetKeyValueA(HKEY_CURRENT_USER, kSettings, "TestbedDie", REG_DWORD, &left, 4);
        if (behaviour.diesAt == 1) {
            line["died"] = true;
            appendLine(behaviour.logFile, line);
            // Wine does not notice the end of a registered server and would go on asking the dead one.
            CoRevokeClassObject(g_registration);
            TerminateProcess(GetCurrentProcess(), 1);
        }
        if (!behaviour.downloads) {
            appendLine(behaviour.logFile, line);  // at once: the lines stand in the order of the calls
            return behaviour.answer;
        }
        std::thread([behaviour, line = std::move(line), busy = std::make_unique<Busy>()] {
            finish(behaviour, line);
        }).detach();
        return behaviour.answer;
    }

  private:
    ~Transmitter() = default;

    std::unique_ptr<Busy> busy_;  // none: does not keep the process
    std::atomic<ULONG> references_{1};
};

class Factory final : public IClassFactory {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        const bool known = iid == IID_IClassFactory || iid == IID_IUnknown;
        *result = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    // Lives as long as the process.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** result) override {
        *result = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        auto* const object = new Transmitter(std::make_unique<Busy>());
        const HRESULT status = object->QueryInterface(iid, result);
        object->Release();
        return status;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

/// Marshals an object once and leaves it so for the life of the process.
void keepMarshalled(IUnknown& object, REFIID iid) {
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &stream))) return;
    CoMarshalInterface(stream, iid, &object, MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG);
    // The stream is part of what stays: releasing the marshalled data would undo the whole.
}

/// Wine takes an interface off its list of served interfaces with the last object that has it, and may wait for
/// ever when the call before it, answered already, is just being put away: the two look at one counter without
/// a lock. So one object of each interface is never given up.
void keepInterfacesServed(IClassFactory& factory) {
    auto* const served = new Transmitter(nullptr);  // for the life of the process, which it does not prolong
    keepMarshalled(factory, IID_IClassFactory);
    keepMarshalled(*served, __uuidof(ILinkTransmitter));
    keepMarshalled(*served, IID_IUnknown);
}

/// Asks a running server to leave and waits until it has.
void stopServer() {
    for (int tries = 0; tries < 100; ++tries) {
        const HANDLE stop = OpenEventW(EVENT_MODIFY_STATE, FALSE, kStopEvent);
        if (stop == nullptr) return;
        SetEvent(stop);
        CloseHandle(stop);
        Sleep(50);
    }
}

int serve() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) return 1;
    if (Behaviour().isMute) {
        Sleep(60000);  // longer than anybody waits for it
        return 1;
    }
    static Factory factory;
    const HRESULT status = CoRegisterClassObject(__uuidof(LinkTransmitter), &factory, CLSCTX_LOCAL_SERVER,
                                                 REGCLS_MULTIPLEUSE, &g_registration);
    if (FAILED(status)) return 1;
    keepInterfacesServed(factory);
    const HANDLE stop = CreateEventW(nullptr, TRUE, FALSE, kStopEvent);
    constexpr DWORD kStepMs = 100;
    for (DWORD idleMs = 0; idleMs < kIdleMs && WaitForSingleObject(stop, kStepMs) == WAIT_TIMEOUT;)
        idleMs = g_busy == 0 ? idleMs + kStepMs : 0;
    CoRevokeClassObject(g_registration);
    constexpr DWORD kGraceMs = 500;  // for who found the class just before
    do Sleep(kGraceMs);
    while (g_busy != 0);
    CoUninitialize();
    return 0;
}

/// Writes what COM needs to start this program and to carry calls to it.
int registerServer() {
    stopServer();  // one of an earlier run may be about to leave, and would still be found
    const std::string program = programPath(), command = "\"" + program + "\"";
    const LSTATUS status =
        RegSetKeyValueA(HKEY_LOCAL_MACHINE, (std::string(kClassKey) + "\\LocalServer32").c_str(), nullptr,
                        REG_SZ, command.c_str(), static_cast<DWORD>(command.size() + 1));
    ITypeLib* library = nullptr;
    if (status != ERROR_SUCCESS ||
        FAILED(LoadTypeLibEx(wide(utf16FromAnsi(program)), REGKIND_REGISTER, &library)))
        return 1;
    library->Release();
    return 0;
}

int unregisterServer() {
    const LSTATUS status = RegDeleteTreeA(HKEY_LOCAL_MACHINE, kClassKey);
    UnRegisterTypeLib(kTypeLibrary, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
    stopServer();  // a running one would still be found
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND ? 0 : 1;
}

}  // namespace
}  // namespace zab::testbed

int main(int count, char** arguments) {
    using namespace zab::testbed;
    const std::string mode = count == 2 ? arguments[1] : "";
    if (mode == "--register") return registerServer();
    if (mode == "--unregister") return unregisterServer();
    if (mode == "-Embedding") return serve();
    std::fprintf(stderr, "usage: zab_manager --register | --unregister | -Embedding\n");
    return 2;
}
