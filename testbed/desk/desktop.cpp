// Settings and keys of the desktop, laid on the desk.
#include "browser/desktop.h"

#include "browser/debug_lines.h"
#include "desk/desk.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace zab::testbed {

SettingsTree::SettingsTree() {
    removeAll();
    set("zabvers", "1.0").set("ExePath", kProgram);
}

SettingsTree::~SettingsTree() { removeAll(); }

void SettingsTree::removeAll() { desk().settings.clear(); }

SettingsTree& SettingsTree::set(const std::string& path, std::string_view text) {
    desk().settings[path] = std::string(text);
    return *this;
}

SettingsTree& SettingsTree::set(const std::string& path, std::uint32_t number) {
    desk().settings[path] = number;
    return *this;
}

SettingsTree& SettingsTree::remove(const std::string& path) {
    desk().settings.erase(path);
    return *this;
}

void SettingsTree::touchConfigTime() {}  // nobody watches

SettingsTree& SettingsTree::setCompanions() { return set("ExePath", kCompanions); }

HeldKeys::HeldKeys(const std::vector<std::uint8_t>& keys) {
    desk().keyboard = {};
    for (const auto key : keys) desk().keyboard[key] = 0x80;
}

HeldKeys::~HeldKeys() { desk().keyboard = {}; }

std::optional<std::uint32_t> SettingsTree::number(const std::string& path) {
    const auto found = desk().settings.find(path);
    const auto* number = found == desk().settings.end() ? nullptr : std::get_if<std::uint32_t>(&found->second);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

bool messageBoxIsOpen() { return !desk().boxes.empty(); }

std::optional<ShownBox> answerMessageBox(int, std::chrono::milliseconds) {
    if (!messageBoxIsOpen()) return std::nullopt;
    auto box = std::move(desk().boxes.front());
    desk().boxes.erase(desk().boxes.begin());
    return box;
}

void putCursor(std::int32_t x, std::int32_t y) { desk().cursor = {x, y}; }

DebugLines::DebugLines(bool claimDebugger) : handler_(nullptr), before_(0) {
    desk().debuggerWatches = claimDebugger;
    desk().debuggerText = &DebugLines::add;
    take();
}

DebugLines::~DebugLines() = default;

std::size_t heapBytes() {
    return __sanitizer_get_current_allocated_bytes != nullptr ? __sanitizer_get_current_allocated_bytes() : 0;
}

}  // namespace zab::testbed
