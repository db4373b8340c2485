// A download button as a real window: a caption in the upper right corner of the place that it is given, and a
// real menu. All of it on the library's own thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "binding/wide_win32.h"

namespace zab::testbed {

struct ButtonEntry {
    std::u16string label, link;
};

/// What a choice tells of besides its link.
struct ButtonPage {
    std::uint64_t documentId = 0;
    std::u16string url;
    std::vector<ButtonEntry> entries;
};

/// The class name of the windows, by which a test finds them.
inline constexpr const wchar_t* kButtonClass = L"ZAB stand-in button";

/// Not visible yet; null when it cannot be made. Obeys 0x469 (move) and WM_CLOSE; a choice in its menu goes to
/// `controller`.
HWND makeButtonWindow(HWND parent, const RECT& place, const std::u16string& caption, HWND controller);
/// Ignored for a window that is none of these.
void setButtonPage(HWND button, ButtonPage page);
/// The entries of this document's button.
std::vector<ButtonEntry> entriesOf(std::uint64_t documentId);
/// As if the user had chosen this link in the menu of the document's button; false: it has none.
bool choose(std::uint64_t documentId, const std::u16string& link);

}  // namespace zab::testbed
