// Text on the debugger output of this process, caught inside it.
#pragma once

#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace zab::testbed {

/// Catches from its making to its end. Narrow text stays as it was written; wide text becomes UTF-8, or the
/// system's code page where the system itself turns it narrow, as Wine does.
class DebugLines {
  public:
    /// `claimDebugger`: the process tells whoever asks that a debugger watches it.
    explicit DebugLines(bool claimDebugger);
    // Not trivially under Windows. NOLINTNEXTLINE(performance-trivially-destructible)
    ~DebugLines();
    DebugLines(const DebugLines&) = delete;
    DebugLines& operator=(const DebugLines&) = delete;

    /// Complete lines since the last call, without their ends; a write without an end is completed by the next.
    static std::vector<std::string> take() {
        const std::lock_guard lock(lock_);
        std::vector<std::string> lines;
        const auto end = text_.rfind('\n') + 1;
        std::istringstream complete(text_.substr(0, end));
        for (std::string line; std::getline(complete, line);)
            lines.push_back(line.substr(0, line.size() - line.ends_with('\r')));
        text_.erase(0, end);
        return lines;
    }

    /// What the process writes; any thread.
    static void add(std::string_view text) {
        const std::lock_guard lock(lock_);
        text_ += text;
    }

  private:
    static inline std::mutex lock_;
    static inline std::string text_;
    void* handler_;
    unsigned char before_;  // the process's own answer to whether it is debugged
};

}  // namespace zab::testbed
