// Slot numbers here are those of the published interfaces and of the extension's contract, written down once
// more: they do not come from the classes that the module calls through.
#include "browser/operations.h"

#include <algorithm>

#include "binding/interfaces/cookies.h"
#include "binding/interfaces/streams.h"
#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

constexpr nsresult kStreamClosed = 0x80470002;

struct CookieObject : BedObject {
    CookieObject(Browser& browser, Cookie cookie);
    Cookie told;
};

struct CookieList : BedObject {
    explicit CookieList(Browser& browser);
    std::size_t next = 0;
};

struct Uri : BedObject {
    Uri(Browser& browser, std::string address);
    std::string url;
};

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

/// Gives what stands under a name; a name under which nothing stands is an error.
template <class Map>
nsresult setFound(const Call& call, std::uint32_t n, const Map& map, const typename Map::key_type& name) {
    const auto found = map.find(name);
    return found == map.end() ? NS_ERROR_NOT_AVAILABLE : call.set(n, found->second);
}

/// An operation of an object of class T.
template <class T, nsresult (*Run)(const Call&, T&)>
nsresult of(const Call& call) {
    return Run(call, call.as<T>());
}
/// An operation on the object of class T that is its argument number N.
template <class T, std::uint32_t N, nsresult (*Run)(const Call&, T&)>
nsresult on(const Call& call) {
    T* object = call.object<T>(N);
    return object == nullptr ? NS_ERROR_FAILURE : Run(call, *object);
}
template <nsresult (*Run)(const Call&, Channel&)>
constexpr auto onChannel = &on<Channel, 0, Run>;
template <nsresult (*Run)(const Call&, Page&)>
constexpr auto onPage = &on<Page, 0, Run>;
template <nsresult (*Run)(const Call&, Event&)>
constexpr auto onEvent = &on<Event, 0, Run>;

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

constexpr Operation kCookieManagerRows[] = {{4, [](const Call& call) {
                                                 return giveNew(call, 0, call.browser.make<CookieList>(),
                                                                nsISimpleEnumerator::kIID);
                                             }}};
constexpr Operation kEnumeratorRows[] = {
    {3, of<CookieList,
           [](const Call& call, CookieList& list) {
               return call.setBoolean(0, list.next < call.browser.cookies.size());
           }>},
    {4, of<CookieList, [](const Call& call, CookieList& list) {
         const auto& cookies = call.browser.cookies;
         if (list.next >= cookies.size()) return NS_ERROR_FAILURE;
         return giveNew(call, 0, call.browser.make<CookieObject>(cookies[list.next++]));
     }>}};
template <nsresult (*Run)(const Call&, CookieObject&)>
constexpr auto ofCookie = &of<CookieObject, Run>;
constexpr Operation kCookieRows[] = {
    {3, ofCookie<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.name); }>},
    {4, ofCookie<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.value); }>},
    {5, ofCookie<[](const Call& call, CookieObject& cookie) {
         return call.setBoolean(0, cookie.told.host.starts_with('.'));
     }>},
    {6, ofCookie<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.host); }>},
    {7, ofCookie<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.path); }>},
    {8,
     ofCookie<[](const Call& call, CookieObject& cookie) { return call.setBoolean(0, cookie.told.secure); }>},
    {9, ofCookie<[](const Call& call, CookieObject& cookie) { return call.set(0, cookie.told.expires); }>}};

template <nsresult (*Run)(const Call&, Upload&)>
nsresult ofUpload(const Call& call) {
    return Run(call, call.as<UploadStream>().upload);
}
constexpr Operation kInputStreamRows[] = {
    {3, ofUpload<[](const Call&, Upload& upload) {
         upload.closed = true;
         return NS_OK;
     }>},
    {4, ofUpload<[](const Call& call, Upload& upload) {
         if (upload.closed) return kStreamClosed;
         const std::uint64_t left = upload.claims.value_or(upload.bytes.size() - upload.position);
         if (call.browser.options().version >= 17) return call.set(0, left);
         return call.set(0, static_cast<std::uint32_t>(std::min<std::uint64_t>(left, 0xFFFFFFFF)));
     }>},
    {5, ofUpload<[](const Call& call, Upload& upload) {
         if (upload.closed) return kStreamClosed;
         const auto count = upload.bytes.copy(call.pointer<char>(0), call.number(1), upload.position);
         upload.position += count;
         return call.set(2, static_cast<std::uint32_t>(count));
     }>}};
constexpr Operation kSeekableRows[] = {
    {3, ofUpload<[](const Call& call, Upload& upload) {
         if (call.number(0) != 0 || upload.bytes.size() < call.whole(1)) return NS_ERROR_FAILURE;
         upload.position = call.whole(1);
         return NS_OK;
     }>},
    {4, ofUpload<[](const Call& call, Upload& upload) { return call.set(0, upload.position); }>}};
constexpr Operation kUploadChannelRows[] = {
    {4, of<Channel, [](const Call& call, Channel& channel) {
         const bool older = call.browser.options().version < 17;
         return call.give(0, channel.upload, older ? nsIInputStream::kIID : nsIInputStream::kIID17);
     }>}};
constexpr Operation kUriRows[] = {
    {5, of<Uri, [](const Call& call, Uri& uri) { return call.set(0, uri.url); }>}};
constexpr Operation kRequestorRows[] = {{3, of<DomWindow, [](const Call& call, DomWindow& window) {
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
    {17, onEvent<[](const Call& call, Event& event) { return call.set(1, event.type); }>},
    {19, on<EventTarget, 1, [](const Call& call, EventTarget& target) {
         auto* listener = call.pointer<nsISupports>(2);
         if (call.number(3) != 1) call.browser.violates("a listener is added without capture");
         call.browser.callModule(StandInCall::addRef, listener);
         target.listeners.emplace_back(call.wide(0), listener);
         return NS_OK;
     }>},
    {49, onChannel<[](const Call& call, Channel& channel) { return call.set(1, channel.request.method); }>},
    {57, [](const Call& call) { return setFound(call, 1, call.browser.bodyFiles, call.text(0)); }},
    {59, onChannel<[](const Call& call, Channel& channel) {
         return giveNew(call, 1, call.browser.make<Uri>(channel.request.url));
     }>},
    {60, onChannel<[](const Call& call, Channel& channel) { return call.set(1, channel.request.loadFlags); }>},
    {61, onChannel<[](const Call& call, Channel& channel) {
         channel.cancels.push_back(call.number(1));
         return NS_OK;
     }>},
    {62, onChannel<[](const Call& call, Channel& channel) {
         return channel.status == 0 ? NS_ERROR_NOT_AVAILABLE : call.set(1, channel.status);
     }>},
    {63, onChannel<[](const Call& call, Channel& channel) {
         const auto value = channel.responseHeader(call.text(1));
         return value ? call.set(2, *value) : NS_ERROR_NOT_AVAILABLE;
     }>},
    {64, onChannel<[](const Call& call, Channel& channel) {
         if (call.number(3) != 0) call.browser.violates("a response header is merged");
         channel.written.emplace_back(call.text(1), call.text(2));
         return NS_OK;
     }>},
    {65, onChannel<[](const Call& call, Channel& channel) { return visit(call, channel.responseHeaders); }>},
    {66, onEvent<[](const Call& call, Event& event) {
         return event.page == nullptr ? NS_ERROR_FAILURE : call.give(1, event.page);
     }>},
    {67, on<EventTarget, 1, [](const Call& call, EventTarget& target) {
         const std::pair wanted(call.wide(0), call.pointer<nsISupports>(2));
         if (std::erase(target.listeners, wanted) == 0) return NS_ERROR_FAILURE;
         call.browser.callModule(StandInCall::release, wanted.second);
         return NS_OK;
     }>},
    {68, onChannel<[](const Call& call, Channel& channel) { return visit(call, channel.request.headers); }>},
    // The event target of a top-level window, or of a document's.
    {69, [](const Call& call) {
         if (auto* window = call.object<ChromeWindow>(0)) return call.give(1, &window->target);
         auto* window = call.object<DomWindow>(0);
         return window == nullptr ? NS_ERROR_FAILURE : call.give(1, &window->target);
     }},
    {70, onChannel<[](const Call& call, Channel& channel) { return call.give(1, channel.request.page); }>},
    {71, onPage<[](const Call& call, Page& page) {
         call.set(1, page.window);
         call.set(2, page.tab);
         return call.set(3, page.nativeWindow);
     }>},
    {72, onPage<[](const Call& call, Page& page) {
         call.set(1, page.url);
         return call.set(2, page.title);
     }>},
    {73, onPage<[](const Call& call, Page& page) {
         const auto found = page.boxes.find(call.wide(1));
         if (found == page.boxes.end()) return NS_ERROR_NOT_AVAILABLE;
         for (std::uint32_t i = 0; i < 4; ++i) call.set(2 + i, found->second[i]);
         return NS_OK;
     }>},
    {74, onPage<[](const Call& call, Page& page) { return call.give(1, &page.domWindow); }>},
    {75, onEvent<[](const Call& call, Event& event) { return call.set(1, event.selectedLinks); }>}};
constexpr Operation kHelper8Rows[] = {{3, &Operations::setHost}};
constexpr Operation kHelper9Rows[] = {{3, on<Channel, 1, [](const Call& call, Channel& channel) {
                                           auto* listener = call.pointer<iZABSListener>(0);
                                           if (listener == nullptr) return NS_ERROR_FAILURE;
                                           call.browser.callModule(StandInCall::addRef, listener);
                                           channel.listeners.push_back(listener);
                                           return NS_OK;
                                       }>}};
constexpr Operation kHelper11Rows[] = {{4, &Operations::refresh},
                                       {7, on<Page, 1, [](const Call& call, Page& page) {
                                            return setFound(call, 2, page.attributes, call.wide(0));
                                        }>}};

template <class T>
constexpr Interface published(const char* name, std::span<const Operation> rows, const nsIID& iid = T::kIID) {
    return {name, {&iid, 1}, rows};
}

constexpr Interface kObserverService = published<nsIObserverService>("observerService", kObserverServiceRows);
constexpr Interface kRequestor = published<nsIInterfaceRequestor>("interfaceRequestor", kRequestorRows);
constexpr Interface kCookieManager = published<nsICookieManager>("cookieManager", kCookieManagerRows);
constexpr Interface kEnumerator = published<nsISimpleEnumerator>("enumerator", kEnumeratorRows);
constexpr Interface kCookies[] = {published<nsICookie>("cookie", kCookieRows, nsICookie::kIIDs[0]),
                                  published<nsICookie>("cookie", kCookieRows, nsICookie::kIIDs[1]),
                                  published<nsICookie>("cookie", kCookieRows, nsICookie::kIIDs[2])};
constexpr Interface kInputStreams[] = {
    published<nsIInputStream>("inputStream", kInputStreamRows),
    published<nsIInputStream>("inputStream", kInputStreamRows, nsIInputStream::kIID17)};
constexpr Interface kSeekables[] = {
    published<nsISeekableStream>("seekableStream", kSeekableRows),
    published<nsISeekableStream>("seekableStream", kSeekableRows, nsISeekableStream::kIIDBefore17)};
constexpr Interface kUploadChannels[] = {published<nsIUploadChannel>("uploadChannel", kUploadChannelRows),
                                         published<nsIUploadChannel17>("uploadChannel", kUploadChannelRows)};
constexpr Interface kHelper = published<iZABHelper>("helper", kHelperRows);
constexpr Interface kHelper5 = published<iZABHelper5>("helper5", kHelper5Rows);
constexpr Interface kHelper8 = published<iZABHelper8>("helper8", kHelper8Rows);
constexpr Interface kHelper9 = published<iZABHelper9>("helper9", kHelper9Rows);
constexpr Interface kHelper11 = published<iZABHelper11>("helper11", kHelper11Rows);
/// The one object whose own operations stand behind its nsISupports pointer.
constexpr Interface kUri = published<nsISupports>("helperUri", kUriRows);

constexpr Service kServices[] = {{nsIObserverService::kContract, &kObserverService},
                                 {nsICookieManager::kContract, &kCookieManager},
                                 {iZABHelper::kContract, &kHelper},
                                 {iZABHelper5::kContract, &kHelper5},
                                 {iZABHelper8::kContract, &kHelper8},
                                 {iZABHelper9::kContract, &kHelper9},
                                 {iZABHelper11::kContract, &kHelper11}};

CookieObject::CookieObject(Browser& browser, Cookie cookie)
    : BedObject(browser, "cookie"), told(std::move(cookie)) {
    const int version = browser.options().version;
    answersTo(kCookies[version < 19 ? 0 : version < 46 ? 1 : 2]);
}

CookieList::CookieList(Browser& browser) : BedObject(browser, "cookie enumerator") { answersTo(kEnumerator); }

Uri::Uri(Browser& browser, std::string address) : BedObject(browser, "uri", kUri), url(std::move(address)) {}

}  // namespace

const Interface kServiceManager = published<nsIServiceManager>("serviceManager", kServiceManagerRows);

std::span<const Service> services() { return kServices; }

UploadStream::UploadStream(Browser& browser, Upload told)
    : BedObject(browser, "upload stream"), upload(std::move(told)) {
    answersTo(kInputStreams[browser.options().version >= 17]);
    if (upload.seekable) answersTo(kSeekables[upload.oldestSeekable]);
}

DomWindow::DomWindow(Browser& browser)
    : BedObject(browser, "DOM window"),
      docShell(browser.make<BaseWindow>(windowLayoutOf(browser.options().version))),
      target(browser.make<EventTarget>()) {
    answersTo(kRequestor);
}

Channel::Channel(Browser& browser, Request told)
    : BedObject(browser, "channel of " + told.url), request(std::move(told)) {
    answersTo(kUploadChannels[browser.options().version >= 17]);
    if (request.upload) upload = &browser.make<UploadStream>(*request.upload);
}

}  // namespace zab::testbed
