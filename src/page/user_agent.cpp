#include "page/user_agent.h"

#include <mutex>

#include "binding/never_destroyed.h"

namespace zab {
namespace {

struct UserAgent {
    std::mutex mutex;
    std::string text;
};

UserAgent& userAgent() {
    // Never destroyed: another thread's transfer may still ask while the browser ends.
    static NeverDestroyed<UserAgent> record;
    return record.get();
}

}  // namespace

void noteUserAgent(std::string_view headerValue) {
    if (headerValue.empty()) return;
    UserAgent& known = userAgent();
    const std::lock_guard hold(known.mutex);
    if (known.text != headerValue) known.text = headerValue;
}

std::string lastUserAgent() {
    UserAgent& known = userAgent();
    const std::lock_guard hold(known.mutex);
    return known.text;
}

}  // namespace zab
