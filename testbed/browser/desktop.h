// What stands around the browser on a desktop: the download manager's settings, the keys that are held, and the
// message boxes that the process shows.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zab::testbed {

/// The download manager's settings tree under HKEY_CURRENT_USER: new at its making, gone at its end. It begins
/// with what an installed download manager has: a version mark and a program path.
class SettingsTree {
  public:
    static constexpr const char* kProgram = "C:\\ZabrionHub\\zabrion.exe";

    SettingsTree();
    ~SettingsTree();
    SettingsTree(const SettingsTree&) = delete;
    SettingsTree& operator=(const SettingsTree&) = delete;

    /// `path` is a value's name, behind the keys below the tree's root: "SpecialKeys\\CtrlF".
    SettingsTree& set(const std::string& path, std::string_view text);
    SettingsTree& set(const std::string& path, std::uint32_t number);
    SettingsTree& remove(const std::string& path);
    /// Names a program in the folder of the stand-in companion libraries.
    SettingsTree& setCompanions();
    [[nodiscard]] static std::optional<std::uint32_t> number(const std::string& path);
    [[nodiscard]] static std::optional<std::string> text(const std::string& path);
    /// The change that the download manager signals when it has written settings.
    void touchConfigTime();

    static void removeAll();
};

// Virtual-key codes, and buttons of message boxes.
inline constexpr std::uint8_t kShift = 0x10, kControl = 0x11, kAlt = 0x12;
inline constexpr int kOk = 1, kNo = 7;

/// Holds keys down, for this thread, until it goes out of scope. Virtual-key codes.
class HeldKeys {
  public:
    explicit HeldKeys(const std::vector<std::uint8_t>& keys);
    ~HeldKeys();
    HeldKeys(const HeldKeys&) = delete;
    HeldKeys& operator=(const HeldKeys&) = delete;
};

void putCursor(std::int32_t x, std::int32_t y);

struct ShownBox {
    std::u16string title, text;
};

/// Waits for a message box, the first of the display (no other program of the bed shows any), reads it and
/// presses a button (IDOK, IDYES, IDNO ...). Needs a display.
std::optional<ShownBox> answerMessageBox(int button,
                                         std::chrono::milliseconds patience = std::chrono::seconds(10));
/// Whether a message box is open on the display now.
bool messageBoxIsOpen();

}  // namespace zab::testbed
