#include "binding/browser_thread.h"

#include <gtest/gtest.h>

#include <thread>

namespace zab {
namespace {

TEST(BrowserThread, IsThatOfTheFirstCall) {
    EXPECT_FALSE(onBrowserThread()) << "nobody has called";
    noteBrowserThread();
    EXPECT_TRUE(onBrowserThread());
    bool other = true;
    std::thread([&] {
        noteBrowserThread();
        other = onBrowserThread();
    }).join();
    EXPECT_FALSE(other);
    EXPECT_TRUE(onBrowserThread()) << "a later call changes nothing";
}

}  // namespace
}  // namespace zab
