#include "browser/world.h"

#include "binding/text.h"
#include "binding/utf.h"
#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {

Page::Page(Browser& browser, std::string address, std::u16string pageTitle, std::uint64_t documentId)
    : EventTarget(browser, "page " + address),
      url(std::move(address)),
      title(std::move(pageTitle)),
      domWindow(browser.make<DomWindow>()) {
    attributes[u"zabmzcc-ext-docid"] = utf16FromUtf8(std::to_string(documentId));
}

ChromeWindow::ChromeWindow(Browser& browser)
    : BedObject(browser, "window"), target(browser.make<EventTarget>()) {}

std::optional<std::string> Channel::responseHeader(std::string_view name) const {
    for (const auto* headers : {&written, &responseHeaders})
        for (const auto& [key, value] : *headers)
            if (equalsIgnoringCase(key, name)) return value;
    return std::nullopt;
}

}  // namespace zab::testbed
