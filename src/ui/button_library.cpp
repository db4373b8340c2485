#include "ui/button_library.h"

#include <algorithm>

#include "binding/utf.h"

namespace zab {
namespace {

std::vector<const char16_t*> pointersTo(const std::vector<std::u16string>& texts) {
    std::vector<const char16_t*> pointers;
    pointers.reserve(texts.size());
    for (const std::u16string& text : texts) pointers.push_back(text.c_str());
    return pointers;
}

}  // namespace

WindowHandle createButton(IZABButtonManager& manager, const ButtonPlan& plan) {
    const std::int32_t rect[4] = {plan.rect.left, plan.rect.top, plan.rect.right, plan.rect.bottom};
    return static_cast<WindowHandle>(
        manager.CreateButton(plan.parent, rect, plan.caption.c_str(), plan.controller));
}

void setEntries(IZABButtonManager& manager, WindowHandle button, const ButtonPlan& plan, const Menu& menu) {
    const std::u16string url = utf16FromUtf8(plan.pageUrl);
    const auto labels = pointersTo(menu.labels), links = pointersTo(menu.links);
    const std::size_t count = std::min(labels.size(), links.size());
    manager.SetEntries(button, plan.document, url.c_str(), static_cast<std::uint32_t>(count), labels.data(),
                       links.data());
}

}  // namespace zab
