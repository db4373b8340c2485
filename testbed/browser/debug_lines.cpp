#include "browser/debug_lines.h"

#include <mutex>

namespace zab::testbed {
namespace {

std::mutex g_lock;
std::string g_text;

}  // namespace

void DebugLines::add(std::string_view text) {
    const std::lock_guard lock(g_lock);
    g_text += text;
}

std::vector<std::string> DebugLines::take() {
    const std::lock_guard lock(g_lock);
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (auto end = g_text.find('\n'); end != std::string::npos; end = g_text.find('\n', begin)) {
        lines.push_back(g_text.substr(begin, end - begin));
        if (!lines.back().empty() && lines.back().back() == '\r') lines.back().pop_back();
        begin = end + 1;
    }
    g_text.erase(0, begin);
    return lines;
}

}  // namespace zab::testbed
