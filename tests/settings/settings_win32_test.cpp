// The settings on a real registry, real change signals, real files and a real keyboard state.
#include <gtest/gtest.h>

#include <map>
#include <span>
#include <thread>

#include "binding/handle_win32.h"
#include "binding/version_resource_win32.h"
#include "entry/modifier_keys.h"
#include "entry/registry_settings.h"
#include "readings.h"
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

TEST_F(Settings, ReadsAreTypedAndBounded) {
    using namespace std::string_literals;
    using Raw = std::pair<DWORD, std::string>;
    const zabtest::ReadingOf<std::optional<std::string>, Raw> texts[] = {
        {{REG_EXPAND_SZ, "zip exe\0"s}, "zip exe", "the other kind of text"},
        {{REG_SZ, "zip"}, "zip", "without its terminator"},
        {{REG_SZ, "zip\0exe\0"s}, "zip", "ends at the first one"},
        {{REG_SZ, std::string(1998, 'x') + '\0'}, std::string(1998, 'x'), "1,999 bytes with the terminator"},
        {{REG_SZ, std::string(1999, 'x') + '\0'}, std::nullopt, "2,000"},
        {{REG_SZ, std::string(1999, 'x')}, std::nullopt, "2,000 with the one that is missing"},
        {{REG_SZ, std::string(70000, 'x')}, std::nullopt, "far longer than any buffer"},
        {{REG_BINARY, "zip\0"s}, std::nullopt, "bytes"},
    };
    const auto text = [](const Raw& raw) {
        writeRaw(kRootKeyPath, kExtensions.name, raw.first, raw.second);
        return extensionList();
    };
    zabtest::expectReadings(text, texts);
    const auto number = [](DWORD type, const std::string& raw) {
        writeRaw(kRootKeyPath, kLanguageId, type, raw);
        return languageId();
    };
    EXPECT_EQ(number(REG_DWORD, "\x07\x04\0\0"s), 0x407u);
    EXPECT_EQ(number(REG_DWORD, "\x07"s), std::nullopt) << "cut short";
    EXPECT_EQ(number(REG_BINARY, "\x07\x04\0\0"s), std::nullopt) << "bytes";
    write(kRootKeyPath, kExceptionServers.name, std::string(100000, ' ') + "*.net");
    EXPECT_TRUE(readExceptionServers(kExceptionServers).IsListed("http://a.net/"))
        << "a list has no small buffer";
    EXPECT_FALSE(readExceptionServers(kPanelExceptionServers).IsListed("http://a.net/")) << "a missing one";
}

TEST_F(Settings, AnInstallationUnderTheRunningBrowserIsRead) {
    for (const std::uint32_t number : {0u, 1u}) {
        RegDeleteTreeA(HKEY_CURRENT_USER, kTree);
        write(kRootKeyPath, kExtensions.name, std::to_string(number));
        write(kSpecialKeysPath, kUseKeyToForce, number);
        EXPECT_EQ(extensionList(), std::to_string(number));
        EXPECT_EQ(specialKeysKey()->number(kUseKeyToForce), number);
    }
}

TEST_F(Settings, CompanionsLieBesideTheProgramFile) {
    writeWide(kExePath.name, u"C:\\Pro\u0144ram\\ZAB\\ZABMan.exe");
    EXPECT_EQ(companionPath(u"zabftype64.dll"), u"C:\\Pro\u0144ram\\ZAB\\zabftype64.dll");
    writeWide(kExePath.name, u"ZABMan.exe");
    EXPECT_EQ(companionPath(u"zabftype64.dll"), std::nullopt) << "no folder";
    writeWide(kExePath.name, std::u16string(260, u'x'));
    EXPECT_EQ(exePath(), std::nullopt) << "longer than 520 bytes";
}

TEST_F(Settings, SwitchesCountAtOnce) {
    EXPECT_EQ(IsBrowserIntegrationEnabled(), 1u) << "before there is a record";
    EXPECT_EQ(GetPanelViewFlag(), 1u) << "no key";
    EXPECT_EQ(RegisterBrowser(), Registration::created);
    EXPECT_EQ(RegisterBrowser(), Registration::known);
    const std::string record = kBrowsersPath + asciiOf(fileStemOf(*executablePath()));
    for (const std::uint32_t value : {0u, 1u, 2u, 3u}) {
        write(record.c_str(), kIntegration.name, value);
        write(kPanelKeyPath, kPanelView.name, value);
        EXPECT_EQ(IsBrowserIntegrationEnabled(), value == 0 ? 0u : 1u) << value;
        EXPECT_EQ(GetPanelViewFlag(), value == 2 ? 0u : 1u) << value;
    }
}

TEST_F(Settings, AShortNameIsReadAsTheLongOne) {
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

TEST_F(Settings, TheDataFileIsReadAgainAtEachChange) {
    const std::u16string path = folder_ + u"zabfc.dat";
    const auto becomes = [](std::uint32_t wanted) {
        for (int i = 0; i < 500 && dataFile().read()->youtubePairing != wanted; ++i) Sleep(20);
        return dataFile().read()->youtubePairing == wanted;
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
    EXPECT_EQ(dataFile().read()->youtubePairing, 1u);
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
        touch();
        Sleep(300);
        EXPECT_EQ(dataFile().read()->contents, "") << "somebody is writing the file";
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

TEST_F(Settings, LanguageFilesOfTheChosenLanguageAreOverlaid) {
    CreateDirectoryW(wide(folder_ + u"Languages"), nullptr);
    const std::pair<std::u16string_view, const char*> files[] = {
        {u"zab_de.lng", "\xEF\xBB\xBFlang=0407\r\n20850=Video\r\n20851=T\xC3\xB6ne\r\n"},
        {u"zab_fr.lng", "lang=040c\r\n20851=son\r\n"},
        {u"zab_en.lng", "lang=9\r\n20851=sound\r\n"},
        {u"other_de.lng", "lang=0407\r\n20851=another name\r\n"}};
    for (const auto& [name, contents] : files)
        writeFile(folder_ + u"Languages\\" + std::u16string(name), contents);
    writeWide(kExePath.name, folder_ + u"ZABMan.exe");
    const zabtest::ReadingOf<std::string, std::optional<std::uint32_t>> rows[] = {
        {std::nullopt, "video|audio", "no language is chosen"},
        {0x10407, "Video|T\xC3\xB6ne", "the low 16 bits count"},
        {0x40C, "video|son", "a file without a byte order mark"},
        {0x409, "video|audio", "no file of this language"},
        {9, "video|audio", "English has its texts built in"},
    };
    const auto loaded = [](std::optional<std::uint32_t> language) {
        if (language) write(kRootKeyPath, kLanguageId, *language);
        MessageTexts texts;
        LoadLanguage(texts);
        return std::string(texts[TextId::video].view()).append("|").append(texts[TextId::audio].view());
    };
    zabtest::expectReadings(loaded, rows);
}

TEST_F(Settings, EveryKeySteersUnderItsOwnName) {
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
            write(kSpecialKeysPath, name, 1);
            EXPECT_FALSE(steers()) << "no key is enabled";
            write(kSpecialKeysPath, use, 2);
            EXPECT_TRUE(steers()) << name;
            hold({});
            EXPECT_FALSE(steers()) << name << " is not held";
            for (const char* value : {name, use}) write(kSpecialKeysPath, value, 0u);
        }
    };
    steer(kUseKeyToPrevent, kPreventKeys, IsPreventKeyDown);
    steer(kUseKeyToForce, kForceKeys, IsForceKeyDown);

    for (const char* name : {kUseKeyToForce, "InsF"}) write(kSpecialKeysPath, name, 1);
    hold({VK_INSERT, 'A'});
    EXPECT_FALSE(IsForceKeyDown()) << "a letter is held too";
    recordMousePressKeys();
    EXPECT_TRUE(WereForceKeysDownAtMousePress(false, false, false, true, true));
    hold({});
}

TEST_F(Settings, NobodyWaitsLongForTheSharedLists) {
    EXPECT_FALSE(SharedListLock(OnTimeout::skip)) << "no mutex yet";
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
