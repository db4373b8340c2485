#include <atomic>

#include "binding/handle_win32.h"
#include "binding/this_module_win32.h"
#include "settings/data_file.h"
#include "settings/registry_key_win32.h"
#include "settings/settings_store.h"

namespace zab {
namespace {

constexpr LONGLONG kLongestFile = 16 << 20;  // bytes; the download manager's is a few thousand
constexpr DWORD kBusyRetryMs = 200;
constexpr int kBusyRetries = 25;  // five seconds

struct ViewTraits {
    using Raw = const void*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw view) noexcept { UnmapViewOfFile(view); }
};

enum class Load {
    noFolder,  // none is configured, or it does not exist
    busy,      // another program is writing the file
    done,      // whatever came of it
};

/// The deciphered file; empty when it cannot be read.
std::string readPlain(HANDLE file) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size) || size.QuadPart <= 0 || size.QuadPart > kLongestFile) return {};
    const Handle mapping(CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, 0, nullptr));
    if (!mapping) return {};
    const Owner<ViewTraits> view(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
    if (!view) return {};
    return applyDataFileCipher(
        {static_cast<const std::uint8_t*>(view.get()), static_cast<std::size_t>(size.QuadPart)});
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

/// Reloads the process-wide record at each change of the configuration, until the request for a signal fails.
/// The next signal is asked for before the file is read, so a change during the reading is not lost.
void watchConfigTime(void*) {
    const RegistryKey key = RegistryKey::open(kConfigTimePath, KEY_NOTIFY);
    if (!key) return;
    const Handle changed(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    if (!changed) return;
    while (key.signalOnChange(changed.get())) {
        int retries = kBusyRetries;
        while (reload(dataFile()) == Load::busy && retries-- > 0 &&
               WaitForSingleObject(changed.get(), kBusyRetryMs) == WAIT_TIMEOUT) {
        }
        WaitForSingleObject(changed.get(), INFINITE);
        ResetEvent(changed.get());
    }
}

std::atomic<DWORD> watcherThreadId{0};
std::atomic<bool> watcherStarted{false};

void startWatcher() noexcept {
    if (watcherStarted.exchange(true)) return;
    const DWORD id = startThread(moduleThread<watchConfigTime>, nullptr);
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

std::uint32_t configTimeWatcherId() noexcept { return watcherThreadId.load(); }

}  // namespace zab
