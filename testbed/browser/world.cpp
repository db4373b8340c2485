#include "browser/world.h"

#include "binding/text.h"
#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

std::u16string decimal(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

}  // namespace

Page::Page(Browser& browser, std::string address, std::u16string pageTitle, std::uint64_t documentId)
    : EventTarget(browser, "page " + address),
      url(std::move(address)),
      title(std::move(pageTitle)),
      domWindow(browser.make<DomWindow>()) {
    attributes[u"zabmzcc-ext-docid"] = decimal(documentId);
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
