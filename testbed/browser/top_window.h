// The browser's own window on the screen: an address, a page with a film and links, and what lies over it.
// Needs a display.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zab::testbed {

/// Native handles as numbers, as the extension tells them.
using NativeWindow = std::uint64_t;

/// A top-level window of this thread, visible until it goes out of scope.
class TopWindow {
  public:
    explicit TopWindow(std::u16string address = u"http://site.example/", std::u16string title = u"Page");
    ~TopWindow();
    TopWindow(const TopWindow&) = delete;
    TopWindow& operator=(const TopWindow&) = delete;

    [[nodiscard]] NativeWindow handle() const { return handle_; }
    /// Of the part that shows the page: x, y, width, height.
    [[nodiscard]] std::array<std::int32_t, 4> contentBox() const;
    /// The download buttons over it that are visible, or all.
    [[nodiscard]] std::vector<NativeWindow> buttons(bool all = false) const;
    /// In its client area.
    void putsCursor(std::int32_t x, std::int32_t y) const;
    /// Shows the page's links as selected.
    void selectsLinks();

    struct Look {
        std::u16string address, title;
        bool linksSelected = false;
    };

  private:
    Look look_;
    NativeWindow handle_;
};

}  // namespace zab::testbed
