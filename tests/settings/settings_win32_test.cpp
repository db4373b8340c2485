// The settings on a real registry, real change signals, real files and a real keyboard state.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "binding/handle_win32.h"
#include "binding/utf.h"
#include "browser/desktop.h"
#include "browser/hands.h"
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

/// The settings of an installed download manager, and a folder for files.
class Settings : public testing::Test {
  protected:
    Settings() { std::filesystem::create_directories(folder + "Languages"); }
    ~Settings() override { closeSharedState(); }

    static void writeRaw(const char* name, DWORD type, const std::string& data) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kRootKeyPath, name, type, data.data(),
                        static_cast<DWORD>(data.size()));
    }

    testbed::SettingsTree settings;
    const std::string folder = (std::filesystem::temp_directory_path() / "zab settings test\\").string();
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
        writeRaw("Extensions", raw.first, raw.second);
        return extensionList();
    };
    zabtest::expectReadings(text, texts);
    const auto number = [](DWORD type, const std::string& raw) {
        writeRaw("LanguageID", type, raw);
        return languageId();
    };
    EXPECT_EQ(number(REG_DWORD, "\x07\x04\0\0"s), 0x407u);
    EXPECT_EQ(number(REG_DWORD, "\x07"s), std::nullopt) << "cut short";
    EXPECT_EQ(number(REG_BINARY, "\x07\x04\0\0"s), std::nullopt) << "bytes";
    settings.set("ExceptionServers", std::string(100000, ' ') + "*.net");
    EXPECT_TRUE(readExceptionServers(kExceptionServers).IsListed("http://a.net/"))
        << "a list has no small buffer";
    EXPECT_FALSE(readExceptionServers(kPanelExceptionServers).IsListed("http://a.net/")) << "a missing one";
}

TEST_F(Settings, OfAnInstallationUnderTheRunningBrowserAreRead) {
    for (const std::uint32_t number : {0u, 1u}) {
        testbed::SettingsTree::removeAll();
        settings.set("zabvers", "6.42").set("Extensions", std::to_string(number));
        settings.set("SpecialKeys\\UseKeyToForce", number);
        EXPECT_EQ(extensionList(), std::to_string(number));
        EXPECT_EQ(specialKeysKey()->number(kUseKeyToForce), number);
    }
}

TEST_F(Settings, NameTheFolderOfTheCompanions) {
    constexpr char16_t kProgram[] = u"C:\\Pro\u0144ram\\ZAB\\ZABMan.exe";
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\ZabrionHub", L"ExePath", REG_SZ, kProgram, sizeof kProgram);
    EXPECT_EQ(companionPath(u"zabftype64.dll"), u"C:\\Pro\u0144ram\\ZAB\\zabftype64.dll");
    settings.set("ExePath", "ZABMan.exe");
    EXPECT_EQ(companionPath(u"zabftype64.dll"), std::nullopt) << "no folder";
    settings.set("ExePath", std::string(260, 'x'));
    EXPECT_EQ(exePath(), std::nullopt) << "longer than 520 bytes";
}

TEST_F(Settings, SwitchesCountAtOnce) {
    EXPECT_EQ(IsBrowserIntegrationEnabled(), 1u) << "before there is a record";
    EXPECT_EQ(GetPanelViewFlag(), 1u) << "no key";
    EXPECT_EQ(RegisterBrowser(), Registration::created);
    EXPECT_EQ(RegisterBrowser(), Registration::known);
    for (const std::uint32_t value : {0u, 1u, 2u, 3u}) {
        settings.set("ZABBI\\zab_edge_tests\\int", value).set("ZABBI\\Firefox\\DwnlPanel\\PanelView", value);
        EXPECT_EQ(IsBrowserIntegrationEnabled(), value == 0 ? 0u : 1u) << value;
        EXPECT_EQ(GetPanelViewFlag(), value == 2 ? 0u : 1u) << value;
    }
}

TEST_F(Settings, OfABrowserWithAShortNameAreThoseOfItsLongOne) {
    const std::string longPath = folder + "a browser with a long name.exe";
    std::ofstream(longPath) << "x";
    char16_t shortPath[MAX_PATH] = u"";
    ASSERT_NE(GetShortPathNameW(wide(utf16FromUtf8(longPath).c_str()), wide(shortPath), MAX_PATH), 0u);
    if (!looksShortened(shortPath)) GTEST_SKIP() << "this file system has no short names";
    EXPECT_EQ(fileStemOf(longPathOf(shortPath).value_or(u"")), u"a browser with a long name");
    EXPECT_EQ(longPathOf(utf16FromUtf8(folder) + u"gone~1.exe"), std::nullopt);
}

TEST_F(Settings, TheDataFileIsReadAgainAtEachChange) {
    const std::string path = folder + "zabfc.dat";
    const auto becomes = [](std::uint32_t wanted) {
        for (int i = 0; i < 500 && dataFile().read()->youtubePairing != wanted; ++i) Sleep(20);
        return dataFile().read()->youtubePairing == wanted;
    };
    const auto write = [&path](std::string_view text) {
        std::ofstream file;
        // The watcher shares the file with nobody while it reads.
        testbed::waitsFor([&] { return file.open(path, std::ios::binary), file.is_open(); });
        file << applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    };
    const auto holds = [&](std::string_view text) {
        write(text);
        settings.touchConfigTime();
    };
    holds("youtube.pairing=1\n");
    EXPECT_EQ(ReloadDataFile(dataFile()), 1u) << "no folder is configured";
    settings.set("AppDataZABFolder", folder + "gone\\");
    EXPECT_EQ(ReloadDataFile(dataFile()), 1u) << "a folder that does not exist";
    EXPECT_EQ(dataFile().read()->loaded, 1u);
    EXPECT_EQ(configTimeWatcherId(), 0u);

    settings.set("AppDataZABFolder", folder);
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    const auto watcher = configTimeWatcherId();
    EXPECT_NE(watcher, 0u);
    holds("youtube.pairing=2\nlisten.skip=*.net\n");
    EXPECT_TRUE(becomes(2));
    EXPECT_TRUE(RegistrySettings().listenSkipped("a.net"));
    holds("");
    EXPECT_TRUE(becomes(0)) << "an empty file";
    write("youtube.pairing=1\n");
    {
        const Handle writer(CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        settings.touchConfigTime();
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
    DeleteFileA(path.c_str());
    EXPECT_EQ(ReloadDataFile(dataFile()), 0u);
    EXPECT_EQ(dataFile().read()->contents, "") << "a file that is gone";
}

TEST_F(Settings, LanguageFilesOfTheChosenLanguageAreOverlaid) {
    const std::pair<const char*, const char*> files[] = {
        {"zab_de.lng", "\xEF\xBB\xBFlang=0407\r\n20850=Video\r\n20851=T\xC3\xB6ne\r\n"},
        {"zab_fr.lng", "lang=040c\r\n20851=son\r\n"},
        {"zab_en.lng", "lang=9\r\n20851=sound\r\n"},
        {"other_de.lng", "lang=0407\r\n20851=another name\r\n"}};
    for (const auto& [name, contents] : files)
        std::ofstream(folder + "Languages\\" + name, std::ios::binary) << contents;
    settings.set("ExePath", folder + "ZABMan.exe");
    const zabtest::ReadingOf<std::string, std::optional<std::uint32_t>> rows[] = {
        {std::nullopt, "video|audio", "no language is chosen"},
        {0x10407, "Video|T\xC3\xB6ne", "the low 16 bits count"},
        {0x40C, "video|son", "a file without a byte order mark"},
        {0x409, "video|audio", "no file of this language"},
        {9, "video|audio", "English has its texts built in"},
    };
    const auto loaded = [this](std::optional<std::uint32_t> language) {
        if (language) settings.set("LanguageID", *language);
        MessageTexts texts;
        LoadLanguage(texts);
        return std::string(texts[TextId::video].view()).append("|").append(texts[TextId::audio].view());
    };
    zabtest::expectReadings(loaded, rows);
}

TEST_F(Settings, NameTheKeysThatSteer) {
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);  // a thread with a keyboard state of its own
    const std::pair<std::string, std::uint8_t> keys[] = {
        {"AltP", VK_MENU}, {"ShiftP", VK_SHIFT}, {"CtrlP", VK_CONTROL}, {"DelP", VK_DELETE},
        {"AltF", VK_MENU}, {"ShiftF", VK_SHIFT}, {"CtrlF", VK_CONTROL}, {"InsF", VK_INSERT},
    };
    for (const auto& [name, code] : keys) {
        const bool prevents = name.ends_with('P');
        const auto steers = prevents ? IsPreventKeyDown : IsForceKeyDown;
        const std::string use = prevents ? "SpecialKeys\\UseKeyToPrevent" : "SpecialKeys\\UseKeyToForce";
        settings.set("SpecialKeys\\" + name, 1u);
        {
            const testbed::HeldKeys held({code});
            EXPECT_FALSE(steers()) << "no key is enabled";
            settings.set(use, 2u);
            EXPECT_TRUE(steers()) << name;
        }
        EXPECT_FALSE(steers()) << name << " is not held";
        settings.set(use, 0u).set("SpecialKeys\\" + name, 0u);
    }
    settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\InsF", 1u);
    settings.set("SpecialKeys\\CheckMouse", 1u);
    recordMousePressKeys();
    {
        const testbed::HeldKeys held({VK_INSERT});
        EXPECT_FALSE(IsForceKeyDown()) << "the key came after the press";
        recordMousePressKeys();
        EXPECT_TRUE(IsForceKeyDown());
    }
    const testbed::HeldKeys held({VK_INSERT, 'A'});
    EXPECT_FALSE(IsForceKeyDown()) << "a letter is held too";
    EXPECT_TRUE(WereForceKeysDownAtMousePress(false, false, false, true, true));
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
