// The test bed itself: what it would hide from a scenario shows here.
#include <gtest/gtest.h>

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "browser/browser.h"

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

}  // namespace
}  // namespace zab::testbed
