#include <atomic>
#include <vector>

#include "binding/handle_win32.h"
#include "binding/this_module_win32.h"
#include "settings/data_file.h"
#include "settings/registry_key_win32.h"
#include "settings/settings_store.h"

namespace zab {
namespace {

constexpr LONGLONG kLongestFile = 16 << 20;  // bytes; the download manager's is a few thousand
constexpr DWORD kBusyRetryMs = 200;
constexpr int kBusyRetries = 25;        // five seconds
constexpr DWORD kLookAgainMs = 10'000;  // for keys that came or went without a signal
constexpr DWORD kEndMs = 1000;

enum class Load {
    noFolder,  // none is configured, or it does not exist
    busy,      // another program is writing the file
    done,      // whatever came of it
};

/// The deciphered file; empty when it cannot be read.
std::string readPlain(HANDLE file) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size) || size.QuadPart <= 0 || size.QuadPart > kLongestFile) return {};
    // Read, not mapped: a share that goes away is then an error, not an exception of the system.
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size.QuadPart));
    DWORD got = 0;
    if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr) || got != bytes.size())
        return {};
    return applyDataFileCipher(bytes);
}

/// `plain` is what the file holds, empty in all other cases.
Load load(std::string& plain) {
    const auto folder = dataFolder();
    if (!folder || GetFileAttributesW(wide(*folder)) == INVALID_FILE_ATTRIBUTES) return Load::noFolder;
    const std::u16string path = *folder + u"zabfc.dat";
    const FileHandle file(
        CreateFileW(wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) return GetLastError() == ERROR_SHARING_VIOLATION ? Load::busy : Load::done;
    plain = readPlain(file.get());
    return Load::done;
}

/// Never leaves the record as it was: what cannot be read is empty.
Load reload(Published<ZabFcRecord>& record) {
    std::string plain;
    const Load result = load(plain);
    record.publish(parseDataFile(std::move(plain)));
    return result;
}

Handle g_watcherEnds;  // an event, made before the thread

/// Waits until `changed` is signalled or the time is over; false: the thread is to end.
bool waitFor(const Handle& changed, DWORD ms) noexcept {
    const HANDLE events[] = {g_watcherEnds.get(), changed.get()};
    return WaitForMultipleObjects(2, events, FALSE, ms) != WAIT_OBJECT_0;
}

bool isSignalled(const Handle& event) noexcept { return WaitForSingleObject(event.get(), 0) == WAIT_OBJECT_0; }

void reloadWhenFree(const Handle& changed) {
    const HANDLE events[] = {g_watcherEnds.get(), changed.get()};
    int retries = kBusyRetries;
    while (reload(dataFile()) == Load::busy && retries-- > 0 &&
           WaitForMultipleObjects(2, events, FALSE, kBusyRetryMs) == WAIT_TIMEOUT) {
    }
}

/// Without the key that changes: waits for one to appear in the root key. That one may be gone as well, so it
/// looks again now and then.
bool waitForConfigTime(const Handle& changed) {
    const RegistryKey root = RegistryKey::open(kRootKeyPath, KEY_NOTIFY);
    if (root) root.signalOnChange(changed.get());
    return RegistryKey::open(kConfigTimePath, KEY_NOTIFY) || waitFor(changed, kLookAgainMs);
}

/// Reloads the process-wide record at each change of the configuration. The next signal is asked for before the
/// file is read, so a change during the reading is not lost.
void watchConfigTime(void*) {
    const Handle changed(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    if (!changed) return;
    for (bool goesOn = true; goesOn; ResetEvent(changed.get())) {
        const RegistryKey key = RegistryKey::open(kConfigTimePath, KEY_NOTIFY);
        while (goesOn && key && key.signalOnChange(changed.get())) {
            reloadWhenFree(changed);
            do {
                goesOn = waitFor(changed, kLookAgainMs);
            } while (goesOn && !isSignalled(changed) && !key.isDeleted());
            ResetEvent(changed.get());
        }
        if (goesOn) goesOn = waitForConfigTime(changed);
    }
}

std::atomic<DWORD> watcherThreadId{0};
std::atomic<bool> watcherStarted{false};

void startWatcher() noexcept {
    if (watcherStarted.exchange(true)) return;
    g_watcherEnds.reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    const DWORD id = g_watcherEnds ? startThread(moduleThread<watchConfigTime>, nullptr) : 0;
    watcherThreadId.store(id);
    if (id == 0) watcherStarted.store(false);
}

}  // namespace

std::uint32_t ReloadDataFile(Published<ZabFcRecord>& record) {
    if (!EnsureRootKey()) {
        record.publish(std::make_unique<ZabFcRecord>());
        return 0;
    }
    if (reload(record) == Load::noFolder) return 1;
    startWatcher();
    return 0;
}

bool endConfigTimeWatcher() noexcept {
    const DWORD id = watcherThreadId.load();
    if (id == 0) return true;
    const Handle thread(OpenThread(SYNCHRONIZE, FALSE, id));
    SetEvent(g_watcherEnds.get());
    if (thread && WaitForSingleObject(thread.get(), kEndMs) != WAIT_OBJECT_0) return false;
    watcherThreadId.store(0);
    g_watcherEnds.reset();
    watcherStarted.store(false);
    return true;
}

std::uint32_t configTimeWatcherId() noexcept { return watcherThreadId.load(); }

}  // namespace zab
