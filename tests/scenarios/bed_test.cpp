// The test bed itself: what it would hide from a scenario shows here.
#include <gtest/gtest.h>

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

/// The core of this program, bound to the bed's runtime as the module binds itself.
class BoundBrowser : public Browser {
  public:
    BoundBrowser() { runtimeRecord() = runtime().entries; }
    ~BoundBrowser() { runtimeRecord() = {}; }

    template <class Interface>
    InterfacePtr<Interface> asksFor() {
        InterfacePtr<Interface> result;
        intoModule([&] { return result = zab::service<Interface>(), 0; });
        return result;
    }
};

TEST(Bed, NamesWhatIsStillHeldAndCallsThatNoBrowserWouldUnderstand) {
    BoundBrowser browser;
    auto& channel = browser.requests({.url = "http://site.example/a.zip"});
    EXPECT_EQ(browser.unbalanced(), "");
    const auto helper = browser.asksFor<iZABHelper5>();
    ASSERT_TRUE(helper);
    nsISupports* uri = nullptr;
    EXPECT_EQ(helper->GetURI(channel.asSupports(), &uri), NS_OK);
    {
        const NarrowContainer text;
        EXPECT_EQ(browser.unbalanced(), "1 of helper5; 1 of uri; 1 string containers; ");
    }
    uri->Release();
    uri->AddRef();
    uri->Release();
    std::uint32_t flags = 0;
    std::uint64_t foreign = 0;
    EXPECT_TRUE(failed(helper->GetLoadFlags(reinterpret_cast<nsISupports*>(&foreign), &flags)));
    EXPECT_EQ(helper->Reserved16(), NS_ERROR_NOT_IMPLEMENTED);
    EXPECT_EQ(browser.violations(),
              (std::vector<std::string>{"helperUri.1 of a dead uri",
                                        "helper5.60 gets what is no object of the browser",
                                        "helper5.16 is no operation that the module may call"}));
}

}  // namespace
}  // namespace zab::testbed
