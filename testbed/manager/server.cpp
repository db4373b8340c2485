// The stand-in download manager: takes transfers through COM and writes down what it received.
//
//     zab_manager --register | --unregister    once per machine (Wine prefix)
//     zab_manager -Embedding                   as COM starts it; serves until no object has been alive
//                                              for a few seconds
//
// One JSON line per transfer: everything that the call brought, nothing interpreted. Texts are UTF-8; an absent
// text is null, an empty one "". Keys: url, referrer, cookies, postData, user, password, reserved, fileName,
// flags, extraData (an array of texts, or the VARIANT's type when it is no array of texts), reservedVariant
// (its type), and "died" when the manager ended with the call.
#include <fcntl.h>
#include <io.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "binding/utf.h"
#include "binding/wide_win32.h"
#include "browser/desktop.h"
#include "browser/library.h"
// Made from link_transmitter.idl; needs windows.h.
#include "link_transmitter.h"

namespace zab::testbed {
namespace {

using Json = nlohmann::ordered_json;

constexpr DWORD kIdleMs = 10000;
constexpr const wchar_t* kStopEvent = L"ZabTestbedManagerStop";
constexpr const char* kSettings = "Software\\ZabrionHub";
constexpr const char* kClassKey = "Software\\Classes\\CLSID\\{E4FA915A-95CC-44FA-9B27-31110C42290E}";
constexpr GUID kTypeLibrary{0x1996D87C, 0x3D68, 0x4C8A, {0xBA, 0xDF, 0xB4, 0x51, 0xE2, 0x9C, 0xCC, 0x33}};

/// Objects alive: while there are any, the process stays.
std::atomic<long> g_objects{0};

DWORD g_registration = 0;

/// What a test wants: values under the download manager's key, read anew for each call, because COM starts the
/// process and nobody can give it arguments.
struct Behaviour {
    static DWORD number(const char* name) { return SettingsTree::number(name).value_or(0); }

    std::string logFile = SettingsTree::text("TestbedLog").value_or(programFolder() + "zab_manager.jsonl");
    DWORD hangMs = number("TestbedHangMs");  // how long a call takes
    DWORD diesAt = number("TestbedDie");  // the process ends during the call with this number, which is logged
    HRESULT answer = static_cast<HRESULT>(number("TestbedAnswer"));  // of a call
    bool isMute = number("TestbedMute") != 0;                        // never registers its class
};

Json jsonOf(BSTR text) {
    if (text == nullptr) return nullptr;
    return utf8FromUtf16({utf16(text), SysStringLen(text)});
}

/// Texts of a VT_ARRAY | VT_BSTR, else the type's number.
Json jsonOf(const VARIANT& value) {
    BSTR* elements = nullptr;
    if (value.vt != (VT_ARRAY | VT_BSTR)) return value.vt;
    if (FAILED(SafeArrayAccessData(value.parray, reinterpret_cast<void**>(&elements)))) return "not readable";
    Json texts = Json::array();
    for (ULONG i = 0; i < value.parray->rgsabound[0].cElements; ++i) texts.push_back(jsonOf(elements[i]));
    SafeArrayUnaccessData(value.parray);
    return texts;
}

/// Appends one whole line with one write, so that a reader never sees half of it.
void appendLine(const std::string& file, const Json& line) {
    const std::string text = line.dump() + "\n";
    const int log = _open(file.c_str(), _O_WRONLY | _O_APPEND | _O_CREAT | _O_BINARY, 0600);
    _write(log, text.data(), static_cast<unsigned>(text.size()));
    _close(log);
}

class Transmitter final : public ILinkTransmitter {
  public:
    Transmitter() { ++g_objects; }

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
        Json line = {{"url", jsonOf(url)},
                     {"referrer", jsonOf(referrer)},
                     {"cookies", jsonOf(cookies)},
                     {"postData", jsonOf(postData)},
                     {"user", jsonOf(user)},
                     {"password", jsonOf(password)},
                     {"reserved", jsonOf(reserved)},
                     {"fileName", jsonOf(fileName)},
                     {"flags", static_cast<std::uint32_t>(flags)},
                     {"extraData", jsonOf(*extraData)},
                     {"reservedVariant", jsonOf(*reservedVariant)}};
        Sleep(behaviour.hangMs);
        const DWORD left = behaviour.diesAt - 1;
        if (behaviour.diesAt > 1)
            RegSetKeyValueA(HKEY_CURRENT_USER, kSettings, "TestbedDie", REG_DWORD, &left, 4);
        if (behaviour.diesAt == 1) line["died"] = true;
        appendLine(behaviour.logFile, line);
        if (behaviour.diesAt != 1) return behaviour.answer;
        // Wine does not notice the end of a registered server and would go on asking the dead one.
        CoRevokeClassObject(g_registration);
        TerminateProcess(GetCurrentProcess(), 1);
        return E_FAIL;
    }

  private:
    ~Transmitter() { --g_objects; }

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
        auto* const object = new Transmitter;
        const HRESULT status = object->QueryInterface(iid, result);
        object->Release();
        return status;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

/// Wine takes an interface off its list of served interfaces with the last object that has it, and may wait for
/// ever when the call before it, answered already, is just being put away: the two look at one counter without
/// a lock. So one object of each interface is never given up: it is marshalled once and left so for the life of
/// the process.
void keepInterfacesServed(IClassFactory& factory) {
    static auto* const served = new Transmitter;
    --g_objects;  // it does not prolong the life of the process
    const std::pair<IUnknown*, IID> all[] = {
        {&factory, IID_IClassFactory}, {served, __uuidof(ILinkTransmitter)}, {served, IID_IUnknown}};
    for (const auto& [object, iid] : all) {
        IStream* stream = nullptr;  // part of what stays: releasing the marshalled data would undo the whole
        if (SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream)))
            CoMarshalInterface(stream, iid, object, MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG);
    }
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
        idleMs = g_objects == 0 ? idleMs + kStepMs : 0;
    CoRevokeClassObject(g_registration);
    constexpr DWORD kGraceMs = 500;  // for who found the class just before
    do Sleep(kGraceMs);
    while (g_objects != 0);
    CoUninitialize();
    return 0;
}

/// Writes what COM needs to start this program and to carry calls to it.
int registerServer() {
    stopServer();  // one of an earlier run may be about to leave, and would still be found
    const std::string program = programFolder() + "zab_manager.exe", command = "\"" + program + "\"";
    const LSTATUS status =
        RegSetKeyValueA(HKEY_LOCAL_MACHINE, (std::string(kClassKey) + "\\LocalServer32").c_str(), nullptr,
                        REG_SZ, command.c_str(), static_cast<DWORD>(command.size() + 1));
    ITypeLib* library = nullptr;
    if (status != ERROR_SUCCESS ||
        FAILED(LoadTypeLibEx(std::filesystem::path(program).c_str(), REGKIND_REGISTER, &library)))
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
