#include "settings/settings_store.h"

#include "binding/browser_text_win32.h"
#include "binding/guard.h"
#include "binding/version_resource_win32.h"
#include "settings/data_file.h"
#include "settings/long_path_win32.h"
#include "settings/paths.h"
#include "settings/restore.h"
#include "settings/settings_keys_win32.h"
#include "settings/shared_list_lock.h"

namespace zab {
namespace {

CachedKey root, browser, specialKeys, panel, minimumSizes;

const RegistryKey* cached(CachedKey& key, const char* path) {
    return key.get([path] { return RegistryKey::open(path, RegistryKey::kQuery); });
}

struct RootKey {
    RegistryKey key;
    bool damaged;  // made just now, or without its version mark
};

RootKey openOrMakeRoot() noexcept {
    if (auto key = RegistryKey::open(kRootKeyPath, RegistryKey::kQuery)) {
        const bool damaged = key.lacks(kVersionMark.name);
        return {std::move(key), damaged};
    }
    auto key = RegistryKey::create(kRootKeyPath);
    const bool made = static_cast<bool>(key);
    return {std::move(key), made};
}

/// Path of the running program, under its long name.
std::optional<std::u16string> browserPath() {
    auto path = executablePath();
    if (path && looksShortened(fileStemOf(*path)))
        if (auto longPath = longPathOf(*path)) path = std::move(longPath);
    return path;
}

/// Opens the record of this browser, or makes it; `created` tells that it was made.
RegistryKey browserRecord(const std::u16string& program, bool& created) {
    const std::string fileName = asciiOf(fileStemOf(program));
    const std::string path = kBrowsersPath + fileName;
    if (auto known = RegistryKey::open(path.c_str(), KEY_ALL_ACCESS)) return known;
    const auto product = versionResourceText(program, u"ProductName");
    auto made = RegistryKey::create(path.c_str());
    if (!made) return made;
    created = true;
    made.write(kBrowserDisplayName, product && !product->empty() ? ansiFromUtf16(*product) : fileName);
    made.write(kIntegration.name, kIntegration.fallback);
    return made;
}

const RegistryKey* browserKey(bool& created) {
    if (const RegistryKey* known = browser.living()) return known;
    const auto program = browserPath();  // asks the shell, so not under the key's lock
    return program ? browser.get([&] { return browserRecord(*program, created); }) : nullptr;
}

/// What `read` finds in a kept key. Only when it finds nothing `open` has its turn, which asks the system
/// whether the key is still there, as a re-made key could hold it.
template <class Open, class Read>
auto readKept(const CachedKey& cache, Open open, Read read) -> decltype(read(*cache.ifOpen())) {
    const RegistryKey* kept = cache.ifOpen();
    if (kept != nullptr)
        if (auto found = read(*kept)) return found;
    const RegistryKey* key = open();
    return key != nullptr && key != kept ? read(*key) : std::nullopt;
}

template <class Value>
auto rootText(const Value& value) {
    return readKept(root, rootKey, [&](const RegistryKey& key) { return key.text(value); });
}

}  // namespace

const RegistryKey* rootKey() {
    bool damaged = false;
    const RegistryKey* key = root.get([&] {
        RootKey opened = openOrMakeRoot();
        damaged = opened.damaged;
        return std::move(opened.key);
    });
    // Behind the lock: the restore shows a message box, during which the browser goes on calling us.
    if (damaged) RestoreDamagedSettings();
    return key;
}

const RegistryKey* specialKeysKey() {
    if (const RegistryKey* key = specialKeys.living()) return key;
    return rootKey() != nullptr ? cached(specialKeys, kSpecialKeysPath) : nullptr;
}
const RegistryKey* panelKey() { return cached(panel, kPanelKeyPath); }
const RegistryKey* minimumSizesKey() { return cached(minimumSizes, kMinimumSizesPath); }

bool EnsureRootKey() noexcept {
    return guarded(false, [] { return rootKey() != nullptr; });
}

Registration RegisterBrowser() noexcept {
    if (browser.ifOpen() != nullptr) return Registration::known;
    return guarded(Registration::failed, [] {
        createSharedListMutex();
        if (!EnsureRootKey()) return Registration::failed;
        if (dataFile().read()->loaded == 0) ReloadDataFile(dataFile());
        bool created = false;
        if (browserKey(created) == nullptr) return Registration::failed;
        return created ? Registration::created : Registration::known;
    });
}

std::uint32_t IsBrowserIntegrationEnabled() noexcept {
    return guarded(1u, [] {
        if (browser.ifOpen() == nullptr) return 1u;
        bool madeAnew = false;
        const auto on = readKept(
            browser, [&] { return browserKey(madeAnew); },
            [](const RegistryKey& key) { return key.number(kIntegration.name); });
        return on.value_or(kIntegration.fallback) != 0 ? 1u : 0u;
    });
}

std::uint32_t GetPanelViewFlag() noexcept {
    constexpr std::uint32_t kNoPanel = 2;
    return guarded(1u, [] {
        const RegistryKey* key = panelKey();
        return key != nullptr && key->number(kPanelView) == kNoPanel ? 0u : 1u;
    });
}

std::optional<std::string> extensionList() { return rootText(kExtensions); }
std::optional<std::u16string> exePath() { return rootText(kExePath); }
std::optional<std::string> exePathNarrow() { return rootText(kExePathNarrow); }
std::optional<std::u16string> dataFolder() { return rootText(kDataFolder); }

std::optional<std::uint32_t> languageId() noexcept {
    return guarded(std::optional<std::uint32_t>{}, [] {
        return readKept(root, rootKey, [](const RegistryKey& key) { return key.number(kLanguageId); });
    });
}

std::optional<std::u16string> companionPath(std::u16string_view fileName) {
    const auto program = exePath();
    if (!program) return std::nullopt;
    const auto folder = programFolderOf(*program);
    if (folder.empty()) return std::nullopt;
    return std::u16string(folder) + u'\\' + std::u16string(fileName);
}

std::optional<std::string> layersValue(const std::string& programPath) {
    const auto key = RegistryKey::open(kLayersPath, KEY_READ);
    return key ? key.text(TextValue{programPath.c_str(), kLongestLayers}) : std::nullopt;
}

CExceptionServersList readExceptionServers(const TextValue& value) {
    return CExceptionServersList(rootText(value).value_or(std::string{}));
}

void closeSharedState() noexcept {
    closeSharedListMutex();
    for (CachedKey* key : {&root, &browser, &specialKeys, &panel, &minimumSizes}) key->close();
}

}  // namespace zab
