// The settings on a real registry, real change signals, real files and a real keyboard state.
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <span>
#include <thread>

#include "binding/handle_win32.h"
#include "binding/version_resource_win32.h"
#include "entry/modifier_keys.h"
#include "entry/registry_settings.h"
#include "settings/data_file.h"
#include "settings/long_path_win32.h"
#include "settings/message_texts.h"
#include "settings/paths.h"
#include "settings/settings_keys_win32.h"
#include "settings/settings_store.h"
#include "settings/shared_list_lock.h"

namespace zab {
namespace {

constexpr const char* kTree = "Software\\ZabrionHub";

/// An empty settings tree of this prefix, and a folder for files.
class Settings : public testing::Test {
  protected:
    void SetUp() override {
        closeSharedState();
        RegDeleteTreeA(HKEY_CURRENT_USER, kTree);
        write(kRootKeyPath, "zabvers", "6.42");
        char16_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, wide(temp));
        folder_ = std::u16string(temp) + u"zab settings test\\";
        CreateDirectoryW(wide(folder_), nullptr);
    }
    void TearDown() override {
        closeSharedState();
        RegDeleteTreeA(HKEY_CURRENT_USER, kTree);
    }

    static void writeRaw(const char* path, const char* name, DWORD type, const std::string& data) {
        const RegistryKey key = RegistryKey::create(path);
        RegSetValueExA(key.get(), name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                       static_cast<DWORD>(data.size()));
    }
    static void write(const char* path, const char* name, const std::string& text) {
        RegistryKey::create(path).write(name, text);
    }
    static void write(const char* path, const char* name, std::uint32_t number) {
        RegistryKey::create(path).write(name, number);
    }
    static void writeWide(const char16_t* name, const std::u16string& text) {
        RegSetValueExW(RegistryKey::create(kRootKeyPath).get(), wide(name), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(text.c_str()), static_cast<DWORD>(text.size() * 2 + 2));
    }
    static void writeFile(const std::u16string& path, const std::string& contents) {
        const Handle file(CreateFileW(wide(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        WriteFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
    }
    static std::string enciphered(const std::string& text) {
        return applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }

    std::u16string folder_;
};

using SettingsRegistry = Settings;
using SettingsBrowser = Settings;
using SettingsFiles = Settings;
using SettingsKeyboard = Settings;

TEST_F(SettingsRegistry, ReadsAreTypedAndBounded) {
    using namespace std::string_literals;
    const struct {
        DWORD type;
        std::string data;
        std::optional<std::string> text;
        const char* why;
    } rows[] = {
        {REG_SZ, "zip exe\0"s, "zip exe", "as it is written"},
        {REG_EXPAND_SZ, "zip\0"s, "zip", "the other kind of text"},
        {REG_SZ, "zip", "zip", "without its terminator"},
        {REG_SZ, "zip\0exe\0"s, "zip", "ends at the first one"},
        {REG_SZ, "\0"s, "", "empty"},
        {REG_SZ, std::string(1998, 'x') + '\0', std::string(1998, 'x'), "1,999 bytes with the terminator"},
        {REG_SZ, std::string(1999, 'x') + '\0', std::nullopt, "2,000"},
        {REG_SZ, std::string(1999, 'x'), std::nullopt, "2,000 with the one that is missing"},
        {REG_SZ, std::string(70000, 'x'), std::nullopt, "far longer than any buffer"},
        {REG_DWORD, "abcd", std::nullopt, "a number"},
        {REG_BINARY, "zip\0"s, std::nullopt, "bytes"},
    };
    for (const auto& row : rows) {
        writeRaw(kRootKeyPath, kExtensions.name, row.type, row.data);
        EXPECT_EQ(extensionList(), row.text) << row.why;
    }
    const struct {
        DWORD type;
        std::string data;
        std::optional<std::uint32_t> number;
    } numbers[] = {{REG_DWORD, "\x07\x04\0\0"s, 0x407},
                   {REG_DWORD, "\x07"s, std::nullopt},
                   {REG_SZ, "123"s, std::nullopt},
                   {REG_QWORD, "\x07\x04\0\0\0\0\0\0"s, std::nullopt}};
    for (const auto& row : numbers) {
        writeRaw(kRootKeyPath, kLanguageId, row.type, row.data);
        EXPECT_EQ(languageId(), row.number) << row.type;
    }
    writeRaw(kRootKeyPath, kExceptionServers.name, REG_SZ, std::string(100000, ' ') + "*.net\0"s);
    EXPECT_TRUE(readExceptionServers(kExceptionServers).IsListed("http://a.net/"))
        << "a list has no small buffer";
    EXPECT_FALSE(readExceptionServers(kPanelExceptionServers).IsListed("http://a.net/")) << "a missing one";
}

TEST_F(SettingsRegistry, AnInstallationUnderTheRunningBrowserIsRead) {
    write(kRootKeyPath, kExtensions.name, "zip");
    write(kSpecialKeysPath, kUseKeyToForce, 0u);
    EXPECT_EQ(extensionList(), "zip");
    EXPECT_EQ(specialKeysKey()->number(kUseKeyToForce), 0u);
    RegDeleteTreeA(HKEY_CURRENT_USER, kTree);
    write(kRootKeyPath, kExtensions.name, "rar");
    write(kSpecialKeysPath, kUseKeyToForce, 1u);
    EXPECT_EQ(extensionList(), "rar");
    EXPECT_EQ(specialKeysKey()->number(kUseKeyToForce), 1u);
}

TEST_F(SettingsRegistry, CompanionsLieBesideTheProgramFile) {
    EXPECT_EQ(companionPath(u"zabftype64.dll"), std::nullopt) << "nothing is installed";
    writeWide(kExePath.name, u"C:\\Pro\u0144ram\\ZAB\\ZABMan.exe");
    EXPECT_EQ(companionPath(u"zabftype64.dll"), u"C:\\Pro\u0144ram\\ZAB\\zabftype64.dll");
    writeWide(kExePath.name, u"ZABMan.exe");
    EXPECT_EQ(companionPath(u"zabftype64.dll"), std::nullopt) << "no folder";
    writeWide(kExePath.name, std::u16string(260, u'x'));
    EXPECT_EQ(exePath(), std::nullopt) << "longer than 520 bytes";
}

TEST_F(SettingsBrowser, IsRecordedOnceAndItsSwitchCountsAtOnce) {
    EXPECT_EQ(IsBrowserIntegrationEnabled(), 1u) << "before there is a record";
    EXPECT_EQ(RegisterBrowser(), Registration::created);
    EXPECT_EQ(RegisterBrowser(), Registration::known);
    const std::string record = kBrowsersPath + asciiOf(fileStemOf(*executablePath()));
    for (const std::uint32_t value : {0u, 5u}) {
        write(record.c_str(), kIntegration.name, value);
        EXPECT_EQ(IsBrowserIntegrationEnabled(), value == 0 ? 0u : 1u);
    }
}

TEST_F(SettingsBrowser, ThePanelFlagIsOffForOneValueOnly) {
    EXPECT_EQ(GetPanelViewFlag(), 1u) << "no key";
    for (const std::uint32_t value : {0u, 1u, 2u, 3u}) {
        write(kPanelKeyPath, kPanelView.name, value);
        EXPECT_EQ(GetPanelViewFlag(), value == 2 ? 0u : 1u) << value;
    }
}

TEST_F(SettingsBrowser, AShortNameIsReadAsTheLongOne) {
    const std::u16string longPath = folder_ + u"a browser with a long name.exe";
    writeFile(longPath, "x");
    char16_t shortPath[MAX_PATH] = u"";
    ASSERT_NE(GetShortPathNameW(wide(longPath), wide(shortPath), MAX_PATH), 0u);
    if (!looksShortened(shortPath)) GTEST_SKIP() << "this file system has no short names";
    const auto found = longPathOf(shortPath);
    ASSERT_TRUE(found);
    EXPECT_EQ(fileStemOf(*found), u"a browser with a long name");
    EXPECT_EQ(longPathOf(folder_ + u"gone~1.exe"), std::nullopt);
}

TEST_F(SettingsFiles, TheDataFileIsReadAgainAtEachChange) {
    const std::u16string path = folder_ + u"zabfc.dat";
    const auto pairing = [] { return dataFile().read()->youtubePairing; };
    const auto becomes = [&pairing](std::uint32_t wanted) {
        for (int i = 0; i < 500 && pairing() != wanted; ++i) Sleep(20);
        return pairing() == wanted;
    };
    auto touch = [count = 0u]() mutable { write("Software\\ZabrionHub\\ConfigTime", "time", ++count); };
    const auto holds = [&](const std::string& text) {
        writeFile(path, enciphered(text));
        touch();
    };
    holds("youtube.pairing=1\n");
    EXPECT_EQ(ReloadDataFile(dataFile()), 1u) << "no folder is configured";
    writeWide(kDataFolder.name, folder_ + u"gone\\");
    EXPECT_EQ(ReloadDataFile(dataFile()), 1u) << "a folder that does not exist";
    EXPECT_EQ(dataFile().read()->loaded, 1u);
    EXPECT_EQ(configTimeWatcherId(), 0u);

    writeWide(kDataFolder.name, folder_);
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    EXPECT_EQ(pairing(), 1u);
    const auto watcher = configTimeWatcherId();
    EXPECT_NE(watcher, 0u);
    holds("youtube.pairing=2\nlisten.skip=*.net\n");
    EXPECT_TRUE(becomes(2));
    EXPECT_TRUE(RegistrySettings().listenSkipped("a.net"));
    holds("");
    EXPECT_TRUE(becomes(0)) << "an empty file";
    writeFile(path, enciphered("youtube.pairing=1\n"));
    {
        const Handle writer(CreateFileW(wide(path), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        Published<ZabFcRecord> record;
        EXPECT_EQ(ReloadDataFile(record), 0u);
        EXPECT_EQ(record.read()->contents, "") << "somebody is writing the file";
        touch();
        Sleep(300);
        EXPECT_EQ(pairing(), 0u);
    }
    EXPECT_TRUE(becomes(1)) << "the watcher comes back when the writer is done";
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    EXPECT_EQ(configTimeWatcherId(), watcher) << "started once";

    EXPECT_TRUE(endConfigTimeWatcher());
    RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\ZabrionHub\\ConfigTime");
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    Sleep(300);
    holds("youtube.pairing=2\n");
    EXPECT_TRUE(becomes(2)) << "a key that appears later is watched";
    EXPECT_TRUE(endConfigTimeWatcher());
    DeleteFileW(wide(path));
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    EXPECT_EQ(dataFile().read()->contents, "") << "a file that is gone";
}

TEST_F(SettingsFiles, LanguageFilesOfTheChosenLanguageAreOverlaid) {
    CreateDirectoryW(wide(folder_ + u"Languages"), nullptr);
    writeFile(folder_ + u"Languages\\zab_de.lng",
              "\xEF\xBB\xBFlang=0407\r\n20850=Video\\r\\n\r\n20851=T\xC3\xB6ne\r\n");
    writeFile(folder_ + u"Languages\\zab_fr.lng", "lang=040c\r\n20851=son\r\n");
    writeFile(folder_ + u"Languages\\other_de.lng", "lang=0407\r\n20851=another name\r\n");
    writeWide(kExePath.name, folder_ + u"ZABMan.exe");
    const auto loaded = [](std::optional<std::uint32_t> language) {
        if (language) write(kRootKeyPath, kLanguageId, *language);
        MessageTexts texts;
        LoadLanguage(texts);
        return std::string(texts[TextId::video].view()) + "|" + std::string(texts[TextId::audio].view());
    };
    EXPECT_EQ(loaded(std::nullopt), "video|audio") << "no language is chosen";
    EXPECT_EQ(loaded(0x10407), "Video\r\n|T\xC3\xB6ne") << "the low 16 bits count";
    EXPECT_EQ(loaded(0x40C), "video|son") << "a file without a byte order mark";
    EXPECT_EQ(loaded(0x409), "video|audio") << "no file of this language";
    writeFile(folder_ + u"Languages\\zab_en.lng", "lang=9\r\n20851=sound\r\n");
    EXPECT_EQ(loaded(9), "video|audio") << "English has its texts built in";
}

TEST_F(SettingsKeyboard, EveryKeySteersUnderItsOwnName) {
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);  // a thread with a keyboard state of its own
    const auto hold = [](std::initializer_list<BYTE> keys) {
        BYTE state[256] = {};
        for (const BYTE key : keys) state[key] = 0x80;
        SetKeyboardState(state);
    };
    std::map<Keys, BYTE> codes{{kAltKey, VK_MENU},
                               {kShiftKey, VK_SHIFT},
                               {kCtrlKey, VK_CONTROL},
                               {kInsertKey, VK_INSERT},
                               {kDeleteKey, VK_DELETE}};
    const auto steer = [&](const char* use, std::span<const KeySetting> keys, bool (*steers)() noexcept) {
        for (const auto& [name, key] : keys) {
            hold({codes[key]});
            EXPECT_FALSE(steers()) << name << " is not configured";
            write(kSpecialKeysPath, name, 1);
            EXPECT_FALSE(steers()) << "no key is enabled";
            write(kSpecialKeysPath, use, 2);
            EXPECT_TRUE(steers()) << name;
            hold({});
            EXPECT_FALSE(steers()) << name << " is not held";
            write(kSpecialKeysPath, name, 0u);
            write(kSpecialKeysPath, use, 0u);
        }
    };
    steer(kUseKeyToPrevent, kPreventKeys, IsPreventKeyDown);
    steer(kUseKeyToForce, kForceKeys, IsForceKeyDown);

    for (const char* name : {kUseKeyToForce, "InsF", kCheckMouse}) write(kSpecialKeysPath, name, 1);
    hold({VK_INSERT});
    EXPECT_FALSE(IsForceKeyDown()) << "no press yet";
    recordMousePressKeys();
    EXPECT_TRUE(IsForceKeyDown());
    EXPECT_TRUE(WereForceKeysDownAtMousePress(false, false, false, true, true));
    hold({VK_INSERT, 'A'});
    EXPECT_FALSE(IsForceKeyDown()) << "a letter is held too";
    hold({});
    recordMousePressKeys();
    hold({VK_INSERT});
    EXPECT_FALSE(IsForceKeyDown()) << "the key came after the press";
    hold({});
}

TEST_F(SettingsBrowser, NobodyWaitsLongForTheSharedLists) {
    EXPECT_FALSE(SharedListLock(OnTimeout::skip)) << "no mutex yet";
    EXPECT_TRUE(SharedListLock(OnTimeout::goOn));
    createSharedListMutex();
    static std::optional<SharedListLock> forgotten;
    std::thread([] { forgotten.emplace(OnTimeout::skip); }).join();
    const SharedListLock held(OnTimeout::skip);
    EXPECT_TRUE(held.held()) << "from a thread that ended with it";
    std::thread([] {
        const ULONGLONG start = GetTickCount64();
        const SharedListLock other(OnTimeout::goOn);
        EXPECT_FALSE(other.held());
        EXPECT_TRUE(other);
        EXPECT_GE(GetTickCount64() - start, 900u);
    }).join();
}

}  // namespace
}  // namespace zab
