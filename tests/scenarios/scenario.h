// What several scenarios begin with.
#pragma once

#include <gtest/gtest.h>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"
#ifdef _WIN32
#include "transfer/manager_process_win32.h"
#else
#include "desk/manager_process.h"
#endif

namespace zab::testbed {

inline constexpr nsresult kTakenOverStatus = 0xFFFFFFFF;
inline const Headers kZip = {{"Content-Type", "application/zip"}, {"Content-Length", "5000"}};

/// The download manager's own process, which notes what it is told. Registered, until a scenario says
/// otherwise.
class Manager : public ::zab::testing::ManagerProcess {
  public:
    Manager() {
        EXPECT_TRUE(isRegistered(true));
        set("ExePath", SettingsTree::kProgram);
    }
    /// Starts the program only for a change.
    bool isRegistered(bool wanted) {
        static bool registered = false;
        if (registered != wanted && ManagerProcess::isRegistered(wanted)) registered = wanted;
        return registered == wanted;
    }
};

/// An installed download manager and a browser, in which nothing may be left behind.
class Scenario : public ::testing::Test {
  protected:
    ~Scenario() override {
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    SettingsTree settings;
    Manager manager;
    Browser browser;
};

}  // namespace zab::testbed
