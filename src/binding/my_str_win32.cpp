#include "binding/browser_text_win32.h"
#include "binding/guard.h"
#include "binding/my_str.h"

namespace zab {

void MyStrClass::SetFromWide(const char16_t* wideText, std::uint32_t codePage) noexcept {
    if (wideText == nullptr) return;
    guarded([&] {
        if (const auto converted = narrowFromUtf16(wideText, codePage)) Set(*converted);
    });
}

}  // namespace zab
