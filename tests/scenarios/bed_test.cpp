// The test bed itself: what it would hide from a scenario shows here.
#include <gtest/gtest.h>

#include <thread>

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "binding/upload_channel.h"
#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"

namespace zab::testbed {
namespace {

/// The module's own core, bound to the bed's runtime as the module binds itself.
class BoundBrowser : public Browser {
  public:
    explicit BoundBrowser(BrowserOptions options = {}) : Browser(std::move(options)) {
        runtimeRecord() = runtime().entries;
    }
    ~BoundBrowser() { runtimeRecord() = {}; }

    template <class Interface>
    InterfacePtr<Interface> asksFor() {
        InterfacePtr<Interface> result;
        intoModule([&] {
            result = zab::service<Interface>();
            return 0;
        });
        return result;
    }
};

TEST(Bed, NamesEveryReferenceAndTextThatIsStillHeld) {
    BoundBrowser browser;
    auto& channel = browser.requests({.url = "http://site.example/a.zip"});
    EXPECT_EQ(browser.unbalanced(), "");
    const auto helper = browser.asksFor<iZABHelper5>();
    ASSERT_TRUE(helper);
    nsISupports* uri = nullptr;
    EXPECT_EQ(helper->GetURI(channel.asSupports(), &uri), NS_OK);
    StringContainerStorage text{};
    zab::runtime().NS_CStringContainerInit(&text);
    auto* url = reinterpret_cast<nsACString*>(&text);
    EXPECT_EQ(static_cast<iZABHelperURI*>(uri)->GetSpec(url), NS_OK);
    EXPECT_EQ(viewOf(url), "http://site.example/a.zip");
    EXPECT_EQ(browser.unbalanced(), "1 of helper5; 1 of uri; 1 string containers; ");
    zab::runtime().NS_CStringContainerFinish(&text);
    uri->Release();
    EXPECT_TRUE(browser.violations().empty());
    uri->AddRef();
    EXPECT_EQ(browser.violations(), std::vector<std::string>{"helperUri.1 of a dead uri"});
    uri->Release();
}

TEST(Bed, NoticesCallsThatNoBrowserWouldUnderstand) {
    BoundBrowser browser;
    const auto helper = browser.asksFor<iZABHelper5>();
    EXPECT_EQ(helper->Reserved16(), NS_ERROR_NOT_IMPLEMENTED);
    std::uint32_t flags = 0;
    std::uint64_t foreign = 0;
    EXPECT_TRUE(failed(helper->GetLoadFlags(reinterpret_cast<nsISupports*>(&foreign), &flags)));
    EXPECT_EQ(browser.violations(),
              (std::vector<std::string>{"helper5.16 is no operation that the module may call",
                                        "helper5.60 gets what is no object of the browser"}));
}

TEST(Bed, FailsTheCountedCallOnly) {
    BoundBrowser browser;
    const std::string lookup = "service @zab/mozilla_cc_helper5;1";
    browser.faults().failNth(2, lookup);
    EXPECT_TRUE(browser.asksFor<iZABHelper5>());
    EXPECT_FALSE(browser.faults().reached());
    EXPECT_FALSE(browser.asksFor<iZABHelper5>());
    EXPECT_TRUE(browser.faults().reached());
    EXPECT_TRUE(browser.asksFor<iZABHelper5>());
    browser.faults().failNth(2);
    EXPECT_FALSE(browser.asksFor<iZABHelper5>());
    EXPECT_EQ(browser.faults().failedOperation(), "serviceManager.0");
}

TEST(Bed, EveryVersionHasItsOwnGenerationOfStreams) {
    for (const int version : {16, 17, 52}) {
        BoundBrowser browser({.version = version});
        auto& channel = browser.requests({.url = "http://site.example/", .upload = Upload{.bytes = "a=b"}});
        const auto upload = GetUploadChannel(channel.asSupports());
        ASSERT_TRUE(upload) << version;
        InterfacePtr<nsISupports> raw;
        EXPECT_EQ(upload->GetUploadStream(raw.put()), NS_OK) << version;
        const auto older = query<nsIInputStream>(raw.get());
        const auto newer = query<nsIInputStream>(raw.get(), nsIInputStream::kIID17);
        EXPECT_EQ(static_cast<bool>(older), version < 17) << version;
        EXPECT_EQ(static_cast<bool>(newer), version >= 17) << version;
        std::uint64_t count = ~0ull;
        EXPECT_EQ((version < 17 ? older : newer)->Available(&count), NS_OK) << version;
        EXPECT_EQ(count, version < 17 ? 0xFFFFFFFF'00000003 : 3) << "the older one writes 32 bits";
    }
}

TEST(Bed, StringsBehaveAsPublished) {
    BoundBrowser browser;
    const PassedText passed(browser.runtime(), std::string_view("name"));
    EXPECT_EQ(viewOf(static_cast<const nsACString*>(passed)), "name");
    EXPECT_EQ(viewOf(static_cast<const nsACString*>(passed)).data()[4], '<') << "no terminator to lean on";
    NarrowContainer text("abcd");
    const struct {
        std::uint32_t offset, cut;
        const char* data;
        std::uint32_t length;
        const char* result;
        const char* why;
    } rows[] = {
        {kAll, 7, "ef", 2, "abcdef", "appended, whatever the cut"},
        {1, 2, "xyz", kAll, "axyzdef", "in the middle, up to the terminator"},
        {4, kAll, nullptr, 5, "axyz", "cut to the end, without data"},
        {99, 1, "!", 1, "axyz!", "an offset behind the end is the end"},
    };
    for (const auto& row : rows) {
        zab::runtime().NS_CStringSetDataRange(text.get(), row.offset, row.cut, row.data, row.length);
        EXPECT_EQ(text.view(), row.result) << row.why;
    }
    WideContainer wideText;
    NarrowContainer source("\xC3\xA4");
    EXPECT_EQ(zab::runtime().NS_CStringToUTF16(source.get(), 1, wideText.get()), NS_OK);
    EXPECT_EQ(wideText.view(), u"\u00E4");
    EXPECT_EQ(zab::runtime().NS_CStringToUTF16(source.get(), 0, wideText.get()), NS_OK);
    EXPECT_EQ(wideText.view(), u"\u00C3\u00A4");
    EXPECT_EQ(zab::runtime().NS_CStringToUTF16(source.get(), 3, wideText.get()), NS_ERROR_NOT_IMPLEMENTED);
}

TEST(Bed, HidesEntryPointsWhileTheModuleLooksForThem) {
    RuntimeLibrary library("xul.dll");
    const auto find = [&](const char* name) {
        return GetProcAddress(static_cast<HMODULE>(library.handle()), name) != nullptr;
    };
    {
        const HiddenExports hidden(library.handle(), allEntryPoints());
        for (const auto& name : allEntryPoints()) EXPECT_FALSE(find(name.c_str())) << name;
    }
    for (const auto& name : allEntryPoints()) EXPECT_TRUE(find(name.c_str())) << name;
}

TEST(Bed, CatchesTheDebuggerOutputOfBothWidths) {
    DebugLines lines(true);
    EXPECT_TRUE(IsDebuggerPresent());
    OutputDebugStringA("**********one ");
    OutputDebugStringW(L"two\r\n");
    EXPECT_EQ(lines.take(), std::vector<std::string>{"**********one two"});
}

TEST(Bed, ReadsAndAnswersMessageBoxes) {
    int pressed = 0;
    std::thread shows([&] { pressed = MessageBoxW(nullptr, L"A message.", L"A title", MB_YESNO); });
    const auto box = answerMessageBox(IDNO);
    shows.join();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->title, u"A title");
    EXPECT_EQ(box->text, u"A message.");
    EXPECT_EQ(pressed, IDNO);
    EXPECT_FALSE(messageBoxIsOpen());
}

TEST(Bed, HoldsKeysAndSettingsOnlyAsLongAsAScenario) {
    {
        SettingsTree settings;
        settings.set("SpecialKeys\\CtrlF", 1u);
        EXPECT_EQ(settings.number("SpecialKeys\\CtrlF"), 1u);
        const HeldKeys keys({VK_CONTROL});
        EXPECT_LT(GetKeyState(VK_CONTROL), 0);
    }
    EXPECT_GE(GetKeyState(VK_CONTROL), 0);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyA(HKEY_CURRENT_USER, "Software\\ZabrionHub", &key), ERROR_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace zab::testbed
