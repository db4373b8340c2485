// Slot numbers here are those of the published interfaces and of the extension's contract, written down once
// more: they do not come from the classes that the module calls through.
#include <algorithm>

#include "binding/interfaces/cookies.h"
#include "binding/interfaces/streams.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

constexpr nsresult kStreamClosed = 0x80470002;

/// Whether streams are of the generation that counts in 64 bits.
bool isNewer(const Browser& browser) { return browser.options().version >= 17; }

/// A browser's object that does nothing but tell.
template <class T>
struct Holding : BedObject {
    Holding(Browser& browser, const char* name, const Interface& primary, T what)
        : BedObject(browser, name, primary), told(std::move(what)) {}
    T told;
};
using CookieObject = Holding<Cookie>;
using CookieList = Holding<std::size_t>;  // the number of the next
using Uri = Holding<std::string>;

/// Gives an object that nobody but the module holds.
nsresult giveNew(const Call& call, std::uint32_t n, BedObject& object, const nsIID& iid = nsISupports::kIID) {
    call.give(n, &object, iid);
    object.letGo();
    return NS_OK;
}

/// Shows the headers to the visitor of the browser's generation.
nsresult visit(const Call& call, const Headers& headers) {
    auto& browser = call.browser;
    const bool older = browser.options().version < 7;
    const auto& iid = older ? nsIHttpHeaderVisitor::kIID : nsIHttpHeaderVisitor_7::kIID;
    void* visitor = nullptr;
    browser.callModule(StandInCall::queryInterface, call.pointer<void>(1),
                       reinterpret_cast<std::uint64_t>(&iid), reinterpret_cast<std::uint64_t>(&visitor));
    if (visitor == nullptr) return NS_ERROR_NO_INTERFACE;
    const auto operation = older ? StandInCall::visitHeader : StandInCall::visitHeader7;
    for (const auto& [name, value] : headers) {
        const PassedText nameText(browser.runtime(), name), valueText(browser.runtime(), value);
        const auto status = browser.callModule(operation, visitor, nameText.argument(), valueText.argument());
        if (failed(static_cast<nsresult>(status))) browser.violates("a header visitor fails");
    }
    browser.callModule(StandInCall::release, visitor);
    return NS_OK;
}

template <class Operation>
struct Meant;
/// What an operation works on is the class of its second parameter.
template <class Operation, class T>
struct Meant<nsresult (Operation::*)(const Call&, T&) const> {
    using Object = T;
};
template <auto Run>
using ObjectOf = typename Meant<decltype(&decltype(Run)::operator())>::Object;

constexpr std::uint32_t kSelf = ~0u;
/// An operation on the object that is its argument number N, or on the one that is called.
template <auto Run, std::uint32_t N = 0>
nsresult on(const Call& call) {
    auto* object = N == kSelf ? &call.as<ObjectOf<Run>>() : call.object<ObjectOf<Run>>(N);
    return object == nullptr ? NS_ERROR_FAILURE : Run(call, *object);
}
template <auto Run>
constexpr auto of = &on<Run, kSelf>;

}  // namespace

/// What reaches into the browser itself.
struct Operations {
    static nsresult getServiceByContract(const Call& call) {
        return call.browser.service(call.pointer<const char>(0), call.pointer<const nsIID>(1),
                                    call.pointer<void*>(2));
    }
    static nsresult addObserver(const Call& call) {
        auto* observer = call.pointer<nsIObserver>(0);
        if ((call.number(2) & 0xFF) != 0) call.browser.violates("an observer is added weakly");
        call.browser.callModule(StandInCall::addRef, observer);
        call.browser.observations_.push_back({observer, call.pointer<const char>(1)});
        return NS_OK;
    }
    static nsresult removeObserver(const Call& call) {
        const Browser::Observation wanted{call.pointer<nsIObserver>(0), call.pointer<const char>(1)};
        if (std::erase(call.browser.observations_, wanted) == 0) return NS_ERROR_FAILURE;
        call.browser.callModule(StandInCall::release, wanted.observer);
        return NS_OK;
    }
    static nsresult setHost(const Call& call) {
        call.browser.host_ = call.object<BedObject>(0);
        return NS_OK;
    }
    static nsresult refresh(const Call& call) {
        ++call.browser.refreshes_;
        return NS_OK;
    }
};

namespace {

constexpr Operation kServiceManagerRows[] = {{4, &Operations::getServiceByContract}};
constexpr Operation kObserverServiceRows[] = {{3, &Operations::addObserver}, {4, &Operations::removeObserver}};

constexpr Operation kCookieRows[] = {
    {3, of<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.name); }>},
    {4, of<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.value); }>},
    {5, of<[](const Call& call, CookieObject& cookie) {
         return call.setBoolean(0, cookie.told.host.starts_with('.'));
     }>},
    {6, of<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.host); }>},
    {7, of<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.path); }>},
    {8, of<[](const Call& call, CookieObject& cookie) { return call.setBoolean(0, cookie.told.secure); }>},
    {9, of<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.expires); }>}};

constexpr Interface kCookie{"cookie", nsICookie::kIIDs[0], kCookieRows};

constexpr Operation kEnumeratorRows[] = {
    {3, of<[](const Call& call, CookieList& list) {
         return call.setBoolean(0, list.told < call.browser.cookies.size());
     }>},
    {4, of<[](const Call& call, CookieList& list) {
         const auto& cookies = call.browser.cookies;
         if (list.told >= cookies.size()) return NS_ERROR_FAILURE;
         const int version = call.browser.options().version;
         auto& cookie = call.browser.make<CookieObject>("cookie", kSupports, cookies[list.told++]);
         cookie.answersTo(kCookie, nsICookie::kIIDs[version < 19 ? 0 : version < 46 ? 1 : 2]);
         return giveNew(call, 0, cookie);
     }>}};
constexpr Interface kEnumerator{"enumerator", nsISimpleEnumerator::kIID, kEnumeratorRows};

constexpr Operation kCookieManagerRows[] = {{4, [](const Call& call) {
                                                 auto& list = call.browser.make<CookieList>("cookie enumerator",
                                                                                            kSupports, 0u);
                                                 list.answersTo(kEnumerator);
                                                 return giveNew(call, 0, list, nsISimpleEnumerator::kIID);
                                             }}};

constexpr Operation kInputStreamRows[] = {
    {3, of<[](const Call&, UploadStream& stream) {
         stream.upload.closed = true;
         return NS_OK;
     }>},
    {4, of<[](const Call& call, UploadStream& stream) {
         if (stream.upload.closed) return kStreamClosed;
         const std::uint64_t left =
             stream.upload.claims.value_or(stream.upload.bytes.size() - stream.upload.position);
         if (isNewer(call.browser)) return call.set(0, left);
         return call.set(0, static_cast<std::uint32_t>(std::min<std::uint64_t>(left, 0xFFFFFFFF)));
     }>},
    {5, of<[](const Call& call, UploadStream& stream) {
         if (stream.upload.closed) return kStreamClosed;
         const auto count =
             stream.upload.bytes.copy(call.pointer<char>(0), call.number(1), stream.upload.position);
         stream.upload.position += count;
         return call.set(2, static_cast<std::uint32_t>(count));
     }>}};
constexpr Operation kSeekableRows[] = {
    {3, of<[](const Call& call, UploadStream& stream) {
         if (call.number(0) != 0 || stream.upload.bytes.size() < call.whole(1)) return NS_ERROR_FAILURE;
         stream.upload.position = call.whole(1);
         return NS_OK;
     }>},
    {4, of<[](const Call& call, UploadStream& stream) { return call.set(0, stream.upload.position); }>}};
constexpr Operation kUploadChannelRows[] = {
    {4, of<[](const Call& call, Channel& channel) {
         const bool newer = isNewer(call.browser);
         return call.give(0, channel.upload, newer ? nsIInputStream::kIID17 : nsIInputStream::kIID);
     }>}};
constexpr Operation kUriRows[] = {{5, of<[](const Call& call, Uri& uri) { return call.set(0, uri.told); }>}};
/// The one object whose own operations stand behind its nsISupports pointer.
constexpr Interface kUri{"helperUri", nsISupports::kIID, kUriRows};
constexpr Operation kRequestorRows[] = {{3, of<[](const Call& call, DomWindow& window) {
                                             if (*call.pointer<const nsIID>(0) == kDocCharsetIID)
                                                 return call.give(1, &window.docShell);
                                             *call.pointer<void*>(1) = nullptr;
                                             return NS_ERROR_NO_INTERFACE;
                                         }>}};

constexpr Operation kHelperRows[] = {{3, [](const Call& call) {
                                          auto* tab = call.browser.selectedTab;
                                          return tab == nullptr ? NS_ERROR_NOT_AVAILABLE : call.give(0, tab);
                                      }}};
constexpr Operation kHelper5Rows[] = {
    {17, on<[](const Call& call, Event& event) { return call.set(1, event.type); }>},
    {19, on<[](const Call& call, EventTarget& target) {
         auto* listener = call.pointer<nsISupports>(2);
         if (call.number(3) != 1) call.browser.violates("a listener is added without capture");
         call.browser.callModule(StandInCall::addRef, listener);
         target.listeners.emplace_back(call.wide(0), listener);
         return NS_OK;
     }, 1>},
    {49, on<[](const Call& call, Channel& channel) { return call.set(1, channel.request.method); }>},
    {57, [](const Call&) { return NS_ERROR_NOT_AVAILABLE; }},  // no body lies in a file
    {59, on<[](const Call& call, Channel& channel) {
         return giveNew(call, 1, call.browser.make<Uri>("uri", kUri, channel.request.url));
     }>},
    {60, on<[](const Call& call, Channel& channel) { return call.set(1, channel.request.loadFlags); }>},
    {61, on<[](const Call& call, Channel& channel) {
         channel.cancels.push_back(call.number(1));
         return NS_OK;
     }>},
    {62, on<[](const Call& call, Channel& channel) {
         return channel.status == 0 ? NS_ERROR_NOT_AVAILABLE : call.set(1, channel.status);
     }>},
    {63, on<[](const Call& call, Channel& channel) {
         const auto value = channel.responseHeader(call.text(1));
         return value ? call.set(2, *value) : NS_ERROR_NOT_AVAILABLE;
     }>},
    {64, on<[](const Call& call, Channel& channel) {
         if (call.number(3) != 0) call.browser.violates("a response header is merged");
         channel.written.emplace_back(call.text(1), call.text(2));
         return NS_OK;
     }>},
    {65, on<[](const Call& call, Channel& channel) { return visit(call, channel.responseHeaders); }>},
    {66, on<[](const Call& call, Event& event) {
         return event.page == nullptr ? NS_ERROR_FAILURE : call.give(1, event.page);
     }>},
    {67, on<[](const Call& call, EventTarget& target) {
         const std::pair wanted(call.wide(0), call.pointer<nsISupports>(2));
         if (std::erase(target.listeners, wanted) == 0) return NS_ERROR_FAILURE;
         call.browser.callModule(StandInCall::release, wanted.second);
         return NS_OK;
     }, 1>},
    {68, on<[](const Call& call, Channel& channel) { return visit(call, channel.request.headers); }>},
    // The event target of a top-level window, or of a document's.
    {69, [](const Call& call) {
         if (auto* window = call.object<ChromeWindow>(0)) return call.give(1, &window->target);
         auto* window = call.object<DomWindow>(0);
         return window == nullptr ? NS_ERROR_FAILURE : call.give(1, &window->target);
     }},
    {70, on<[](const Call& call, Channel& channel) { return call.give(1, channel.request.page); }>},
    {71, on<[](const Call& call, Page& page) {
         call.set(1, page.window);
         call.set(2, page.tab);
         return call.set(3, page.nativeWindow);
     }>},
    {72, on<[](const Call& call, Page& page) {
         call.set(1, page.url);
         return call.set(2, page.title);
     }>},
    {73, on<[](const Call& call, Page& page) {
         const auto found = page.boxes.find(call.wide(1));
         if (found == page.boxes.end()) return NS_ERROR_NOT_AVAILABLE;
         for (std::uint32_t i = 0; i < 4; ++i) call.set(2 + i, found->second[i]);
         return NS_OK;
     }>},
    {74, on<[](const Call& call, Page& page) { return call.give(1, &page.domWindow); }>},
    {75, on<[](const Call& call, Event& event) { return call.set(1, event.selectedLinks); }>}};
constexpr Operation kHelper8Rows[] = {{3, &Operations::setHost}};
constexpr Operation kHelper9Rows[] = {{3, on<[](const Call& call, Channel& channel) {
                                           auto* listener = call.pointer<iZABSListener>(0);
                                           if (listener == nullptr) return NS_ERROR_FAILURE;
                                           call.browser.callModule(StandInCall::addRef, listener);
                                           channel.listeners.push_back(listener);
                                           return NS_OK;
                                       },
                                             1>}};
constexpr Operation kHelper11Rows[] = {{4, &Operations::refresh},
                                       {7, on<[](const Call& call, Page& page) {
                                            const auto found = page.attributes.find(call.wide(0));
                                            return found == page.attributes.end() ? NS_ERROR_NOT_AVAILABLE
                                                                                  : call.set(2, found->second);
                                        },
                                              1>}};

constexpr Interface kRequestor{"interfaceRequestor", nsIInterfaceRequestor::kIID, kRequestorRows};
constexpr Interface kInputStream{"inputStream", nsIInputStream::kIID, kInputStreamRows};
constexpr Interface kSeekable{"seekableStream", nsISeekableStream::kIID, kSeekableRows};
constexpr Interface kUploadChannel{"uploadChannel", nsIUploadChannel::kIID, kUploadChannelRows};

constexpr Service kServices[] = {
    {nsIObserverService::kContract, {"observerService", nsIObserverService::kIID, kObserverServiceRows}},
    {nsICookieManager::kContract, {"cookieManager", nsICookieManager::kIID, kCookieManagerRows}},
    {iZABHelper::kContract, {"helper", iZABHelper::kIID, kHelperRows}},
    {iZABHelper5::kContract, {"helper5", iZABHelper5::kIID, kHelper5Rows}},
    {iZABHelper8::kContract, {"helper8", iZABHelper8::kIID, kHelper8Rows}},
    {iZABHelper9::kContract, {"helper9", iZABHelper9::kIID, kHelper9Rows}},
    {iZABHelper11::kContract, {"helper11", iZABHelper11::kIID, kHelper11Rows}}};

}  // namespace

const Interface kServiceManager{"serviceManager", nsIServiceManager::kIID, kServiceManagerRows};

std::span<const Service> services() { return kServices; }

UploadStream::UploadStream(Browser& browser, Upload told)
    : BedObject(browser, "upload stream"), upload(std::move(told)) {
    answersTo(kInputStream, isNewer(browser) ? nsIInputStream::kIID17 : nsIInputStream::kIID);
    if (upload.seekable)
        answersTo(kSeekable, upload.oldestSeekable ? nsISeekableStream::kIIDBefore17 : nsISeekableStream::kIID);
}

DomWindow::DomWindow(Browser& browser)
    : BedObject(browser, "DOM window"),
      docShell(browser.make<BaseWindow>(windowLayoutOf(browser.options().version))),
      target(browser.make<EventTarget>()) {
    answersTo(kRequestor);
}

Channel::Channel(Browser& browser, Request told)
    : BedObject(browser, "channel of " + told.url), request(std::move(told)) {
    answersTo(kUploadChannel, isNewer(browser) ? nsIUploadChannel17::kIID : nsIUploadChannel::kIID);
    if (request.upload) upload = &browser.make<UploadStream>(*request.upload);
}

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
