// One way to a browser object's base window, whichever layout the browser has.
//
// An adapter serves the module's layout and forwards each operation to the slot of the same meaning. Booleans
// go in as 0 or 1 in a whole register and come out of a zeroed word, so both of the browser's widths are
// served.
#pragma once

#include <cstdint>

#include "binding/adapter.h"
#include "binding/browser_version.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/base_window.h"

namespace zab {

/// `In17` is the layout that version 17 has under the same identifier.
template <BaseWindowLayout Layout, BaseWindowLayout In17 = Layout>
class BaseWindowAdapter final : public Adapter<BaseWindowAdapter<Layout, In17>, nsIBaseWindow> {
    using Operation = BaseWindowOperation;

  public:
    BaseWindowAdapter(InterfacePtr<nsISupports> window, std::int32_t browserMajor) noexcept
        : window_(std::move(window)), layout_(Layout) {
        if (browserMajor == 17) layout_ = In17;
    }

    nsresult InitWindow(void* parentNativeWindow, void* parentWidget, int32_t x, int32_t y, int32_t cx,
                        int32_t cy) override {
        return forward(Operation::initWindow, parentNativeWindow, parentWidget, x, y, cx, cy);
    }
    nsresult Create() override { return forward(Operation::create); }
    nsresult Destroy() override { return forward(Operation::destroy); }
    nsresult SetPosition(int32_t x, int32_t y) override { return forward(Operation::setPosition, x, y); }
    nsresult GetPosition(int32_t* x, int32_t* y) override { return forward(Operation::getPosition, x, y); }
    nsresult SetSize(int32_t cx, int32_t cy, uint32_t repaint) override {
        return forward(Operation::setSize, cx, cy, boolean(repaint));
    }
    nsresult GetSize(int32_t* cx, int32_t* cy) override { return forward(Operation::getSize, cx, cy); }
    nsresult SetPositionAndSize(int32_t x, int32_t y, int32_t cx, int32_t cy, uint32_t repaint) override {
        return forward(Operation::setPositionAndSize, x, y, cx, cy, boolean(repaint));
    }
    nsresult GetPositionAndSize(int32_t* x, int32_t* y, int32_t* cx, int32_t* cy) override {
        return forward(Operation::getPositionAndSize, x, y, cx, cy);
    }
    nsresult Repaint(uint32_t force) override { return forward(Operation::repaint, boolean(force)); }
    nsresult GetParentWidget(void** widget) override { return forward(Operation::getParentWidget, widget); }
    nsresult SetParentWidget(void* widget) override { return forward(Operation::setParentWidget, widget); }
    nsresult GetParentNativeWindow(void** nativeWindow) override {
        return forward(Operation::getParentNativeWindow, nativeWindow);
    }
    nsresult SetParentNativeWindow(void* nativeWindow) override {
        return forward(Operation::setParentNativeWindow, nativeWindow);
    }
    nsresult GetVisibility(uint32_t* visible) override { return forwardOut(Operation::getVisibility, visible); }
    nsresult SetVisibility(uint32_t visible) override {
        return forward(Operation::setVisibility, boolean(visible));
    }
    nsresult GetEnabled(uint32_t* enabled) override { return forwardOut(Operation::getEnabled, enabled); }
    nsresult SetEnabled(uint32_t enabled) override { return forward(Operation::setEnabled, boolean(enabled)); }
    /// The later layouts have no such attribute: it is off, and not implemented.
    nsresult GetBlurSuppression(uint32_t* suppressed) override {
        if (suppressed != nullptr && slotOf(layout_, Operation::getBlurSuppression) == kNoSlot) *suppressed = 0;
        return forwardOut(Operation::getBlurSuppression, suppressed);
    }
    nsresult SetBlurSuppression(uint32_t suppressed) override {
        return forward(Operation::setBlurSuppression, boolean(suppressed));
    }
    nsresult GetMainWidget(void** widget) override { return forward(Operation::getMainWidget, widget); }
    nsresult SetFocus() override { return forward(Operation::setFocus); }
    nsresult GetTitle(char16_t** title) override { return forward(Operation::getTitle, title); }
    nsresult SetTitle(const char16_t* title) override { return forward(Operation::setTitle, title); }

  private:
    static uint32_t boolean(uint32_t word) noexcept { return word != 0 ? 1 : 0; }

    template <class... Arguments>
    nsresult forward(Operation operation, Arguments... arguments) {
        const std::uint8_t slot = slotOf(layout_, operation);
        if (slot == kNoSlot) return NS_ERROR_NOT_IMPLEMENTED;
        return callSlot(window_.get(), slot, arguments...);
    }

    /// The browser writes 1 or 4 bytes into a word of our own; the caller's is written on success only.
    nsresult forwardOut(Operation operation, uint32_t* result) {
        if (result == nullptr) return NS_ERROR_NULL_POINTER;
        uint32_t word = 0;
        const nsresult status = forward(operation, &word);
        if (!failed(status)) *result = word & 0xFF;
        return status;
    }

    InterfacePtr<nsISupports> window_;
    BaseWindowLayout layout_;
};

// Named for the first browser version of each layout.
using nsBaseWindow2 = BaseWindowAdapter<BaseWindowLayout::a>;
using nsBaseWindow10 = BaseWindowAdapter<BaseWindowLayout::b, BaseWindowLayout::b17>;
using nsBaseWindow19 = BaseWindowAdapter<BaseWindowLayout::c>;
using nsBaseWindow45_6_Esr = BaseWindowAdapter<BaseWindowLayout::d>;
using nsBaseWindow47 = BaseWindowAdapter<BaseWindowLayout::e>;

/// The base window of a browser object in the module's layout; nothing when the object answers none of the
/// known identifiers. `browserMajor` only tells two layouts apart that share one identifier.
InterfacePtr<nsIBaseWindow> GetBaseWindow(nsISupports* browserObject,
                                          std::int32_t browserMajor = browserMajorVersion()) noexcept;

/// The docshell of a DOM window: a base window, as the DOM window itself is none. Nothing for other objects.
InterfacePtr<nsISupports> docShellOf(nsISupports* domWindow) noexcept;

}  // namespace zab
