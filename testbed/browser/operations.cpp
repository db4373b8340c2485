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
    CookieObject(Browser& browser, Cookie told);
    Cookie cookie;
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

}  // namespace

struct Operations {
    // Services of the browser

    static nsresult getServiceByContract(const Call& call) {
        return call.browser.service(call.pointer<const char>(0), call.pointer<const nsIID>(1),
                                    call.pointer<void*>(2));
    }
    static nsresult removeObserver(const Call& call) {
        auto& browser = call.browser;
        auto* observer = call.pointer<nsIObserver>(0);
        const std::string topic = call.pointer<const char>(1);
        if (std::erase_if(browser.observations_,
                          [&](const auto& row) { return row.observer == observer && row.topic == topic; }) == 0)
            return NS_ERROR_FAILURE;
        browser.callModule(StandInCall::release, observer);
        return NS_OK;
    }
    static nsresult addObserver(const Call& call) {
        auto& browser = call.browser;
        auto* observer = call.pointer<nsIObserver>(0);
        if ((call.number(2) & 0xFF) != 0) browser.violates("an observer is added weakly");
        browser.callModule(StandInCall::addRef, observer);
        browser.observations_.push_back({observer, call.pointer<const char>(1)});
        return NS_OK;
    }

    // Cookies

    static nsresult enumerator(const Call& call) {
        return giveNew(call, 0, call.browser.make<CookieList>(), nsISimpleEnumerator::kIID);
    }
    static nsresult hasMoreElements(const Call& call) {
        return call.setBoolean(0, call.as<CookieList>().next < call.browser.cookies.size());
    }
    static nsresult getNext(const Call& call) {
        auto& next = call.as<CookieList>().next;
        const auto& cookies = call.browser.cookies;
        if (next >= cookies.size()) return NS_ERROR_FAILURE;
        return giveNew(call, 0, call.browser.make<CookieObject>(cookies[next++]));
    }
    template <auto Text>
    static nsresult cookieText(const Call& call) {
        return call.set(0, std::string_view(call.as<CookieObject>().cookie.*Text));
    }
    static nsresult cookieIsDomain(const Call& call) {
        return call.setBoolean(0, call.as<CookieObject>().cookie.host.starts_with('.'));
    }
    static nsresult cookieIsSecure(const Call& call) {
        return call.setBoolean(0, call.as<CookieObject>().cookie.secure);
    }
    static nsresult cookieExpires(const Call& call) {
        return call.set<std::uint64_t>(0, call.as<CookieObject>().cookie.expires);
    }

    // Upload streams

    static nsresult closeStream(const Call& call) {
        call.as<UploadStream>().upload.closed = true;
        return NS_OK;
    }
    static nsresult available(const Call& call) {
        const auto& upload = call.as<UploadStream>().upload;
        if (upload.closed) return kStreamClosed;
        const std::uint64_t left = upload.claims.value_or(upload.bytes.size() - upload.position);
        if (call.browser.options().version >= 17) return call.set<std::uint64_t>(0, left);
        return call.set<std::uint32_t>(0,
                                       static_cast<std::uint32_t>(std::min<std::uint64_t>(left, 0xFFFFFFFF)));
    }
    static nsresult read(const Call& call) {
        auto& upload = call.as<UploadStream>().upload;
        if (upload.closed) return kStreamClosed;
        const auto count = upload.bytes.copy(call.pointer<char>(0), call.number(1), upload.position);
        upload.position += count;
        return call.set<std::uint32_t>(2, static_cast<std::uint32_t>(count));
    }
    static nsresult seek(const Call& call) {
        auto& upload = call.as<UploadStream>().upload;
        if (call.number(0) != 0 || call.whole(1) > upload.bytes.size()) return NS_ERROR_FAILURE;
        upload.position = call.whole(1);
        return NS_OK;
    }
    static nsresult tell(const Call& call) {
        return call.set<std::uint64_t>(0, call.as<UploadStream>().upload.position);
    }
    static nsresult uploadStream(const Call& call) {
        const bool older = call.browser.options().version < 17;
        return call.give(0, call.as<Channel>().upload, older ? nsIInputStream::kIID : nsIInputStream::kIID17);
    }

    // Helpers: a channel

    static nsresult requestMethod(const Call& call, Channel& channel) {
        return call.set(1, std::string_view(channel.request.method));
    }
    static nsresult getUri(const Call& call, Channel& channel) {
        return giveNew(call, 1, call.browser.make<Uri>(channel.request.url));
    }
    static nsresult uriSpec(const Call& call) { return call.set(0, std::string_view(call.as<Uri>().url)); }
    static nsresult loadFlags(const Call& call, Channel& channel) {
        return call.set<std::uint32_t>(1, channel.request.loadFlags);
    }
    static nsresult cancel(const Call& call, Channel& channel) {
        channel.cancels.push_back(call.number(1));
        return NS_OK;
    }
    static nsresult responseStatus(const Call& call, Channel& channel) {
        return channel.status == 0 ? NS_ERROR_NOT_AVAILABLE : call.set<std::uint32_t>(1, channel.status);
    }
    static nsresult getResponseHeader(const Call& call, Channel& channel) {
        const auto value = channel.responseHeader(call.text(1));
        return value ? call.set(2, std::string_view(*value)) : NS_ERROR_NOT_AVAILABLE;
    }
    static nsresult setResponseHeader(const Call& call, Channel& channel) {
        if (call.number(3) != 0) call.browser.violates("a response header is merged");
        channel.written.emplace_back(call.text(1), call.text(2));
        return NS_OK;
    }
    static nsresult visitResponseHeaders(const Call& call, Channel& channel) {
        return visit(call, channel.responseHeaders);
    }
    static nsresult visitRequestHeaders(const Call& call, Channel& channel) {
        return visit(call, channel.request.headers);
    }
    static nsresult visit(const Call& call, const Headers& headers) {
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
            const auto status =
                browser.callModule(operation, visitor, nameText.argument(), valueText.argument());
            if (failed(static_cast<nsresult>(status))) browser.violates("a header visitor fails");
        }
        browser.callModule(StandInCall::release, visitor);
        return NS_OK;
    }
    static nsresult channelDocument(const Call& call, Channel& channel) {
        return call.give(1, channel.request.page);
    }
    static nsresult attachListener(const Call& call) {
        auto* listener = call.pointer<iZABSListener>(0);
        auto* channel = call.object<Channel>(1);
        if (listener == nullptr || channel == nullptr) return NS_ERROR_FAILURE;
        call.browser.callModule(StandInCall::addRef, listener);
        channel->listeners.push_back(listener);
        return NS_OK;
    }
    static nsresult bodyFile(const Call& call) {
        const auto found = call.browser.bodyFiles.find(call.text(0));
        if (found == call.browser.bodyFiles.end()) return NS_ERROR_NOT_AVAILABLE;
        return call.set(1, std::u16string_view(found->second));
    }

    // Helpers: a document

    static nsresult pageIdentity(const Call& call, Page& page) {
        call.set<std::uint32_t>(1, page.window);
        call.set<std::uint32_t>(2, page.tab);
        return call.set<std::uint64_t>(3, page.nativeWindow);
    }
    static nsresult pageInfo(const Call& call, Page& page) {
        call.set(1, std::string_view(page.url));
        return call.set(2, std::u16string_view(page.title));
    }
    static nsresult elementBox(const Call& call, Page& page) {
        const auto found = page.boxes.find(call.wide(1));
        if (found == page.boxes.end()) return NS_ERROR_NOT_AVAILABLE;
        for (std::uint32_t i = 0; i < 4; ++i) call.set<std::int32_t>(2 + i, found->second[i]);
        return NS_OK;
    }
    static nsresult documentWindow(const Call& call, Page& page) { return call.give(1, &page.domWindow); }
    static nsresult documentAttribute(const Call& call, Page& page) {
        const auto found = page.attributes.find(call.wide(0));
        if (found == page.attributes.end()) return NS_ERROR_NOT_AVAILABLE;
        return call.set(2, std::u16string_view(found->second));
    }

    // Helpers: windows and events

    static nsresult eventType(const Call& call, Event& event) {
        return call.set(1, std::u16string_view(event.type));
    }
    static nsresult targetDocument(const Call& call, Event& event) {
        return event.page == nullptr ? NS_ERROR_FAILURE : call.give(1, event.page);
    }
    static nsresult selectedLinks(const Call& call, Event& event) {
        return call.set(1, std::u16string_view(event.selectedLinks));
    }
    static nsresult docShell(const Call& call) {
        const bool asked = *call.pointer<const nsIID>(0) == kDocCharsetIID;
        if (asked) return call.give(1, &call.as<DomWindow>().docShell);
        *call.pointer<void*>(1) = nullptr;
        return NS_ERROR_NO_INTERFACE;
    }
    /// Of a top-level window, or of a document's.
    static nsresult windowEventTarget(const Call& call) {
        if (auto* window = call.object<ChromeWindow>(0)) return call.give(1, &window->target);
        if (auto* window = call.object<DomWindow>(0)) return call.give(1, &window->target);
        return NS_ERROR_FAILURE;
    }
    static nsresult addEventListener(const Call& call, EventTarget& target) {
        auto* listener = call.pointer<nsISupports>(2);
        if (call.number(3) != 1) call.browser.violates("a listener is added without capture");
        call.browser.callModule(StandInCall::addRef, listener);
        target.listeners.emplace_back(call.wide(0), listener);
        return NS_OK;
    }
    static nsresult removeEventListener(const Call& call, EventTarget& target) {
        const std::pair wanted(call.wide(0), call.pointer<nsISupports>(2));
        if (std::erase(target.listeners, wanted) == 0) return NS_ERROR_FAILURE;
        call.browser.callModule(StandInCall::release, wanted.second);
        return NS_OK;
    }
    static nsresult selectedTab(const Call& call) {
        auto* tab = call.browser.selectedTab;
        return tab == nullptr ? NS_ERROR_NOT_AVAILABLE : call.give(0, tab);
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

using O = Operations;

/// An operation on the object of class T that is its argument number N.
template <class T, std::uint32_t N, nsresult (*Run)(const Call&, T&)>
nsresult on(const Call& call) {
    T* object = call.object<T>(N);
    return object == nullptr ? NS_ERROR_FAILURE : Run(call, *object);
}
template <nsresult (*Run)(const Call&, Channel&)>
constexpr auto ofChannel = &on<Channel, 0, Run>;
template <nsresult (*Run)(const Call&, Page&)>
constexpr auto ofPage = &on<Page, 0, Run>;
template <nsresult (*Run)(const Call&, Event&)>
constexpr auto ofEvent = &on<Event, 0, Run>;

constexpr Operation kRequestorRows[] = {{3, &O::docShell}};
constexpr Operation kServiceManagerRows[] = {{4, &O::getServiceByContract}};
constexpr Operation kObserverServiceRows[] = {{3, &O::addObserver}, {4, &O::removeObserver}};
constexpr Operation kCookieManagerRows[] = {{4, &O::enumerator}};
constexpr Operation kEnumeratorRows[] = {{3, &O::hasMoreElements}, {4, &O::getNext}};
constexpr Operation kCookieRows[] = {{3, &O::cookieText<&Cookie::name>},
                                     {4, &O::cookieText<&Cookie::value>},
                                     {5, &O::cookieIsDomain},
                                     {6, &O::cookieText<&Cookie::host>},
                                     {7, &O::cookieText<&Cookie::path>},
                                     {8, &O::cookieIsSecure},
                                     {9, &O::cookieExpires}};
constexpr Operation kInputStreamRows[] = {{3, &O::closeStream}, {4, &O::available}, {5, &O::read}};
constexpr Operation kSeekableRows[] = {{3, &O::seek}, {4, &O::tell}};
constexpr Operation kUploadChannelRows[] = {{4, &O::uploadStream}};
constexpr Operation kUriRows[] = {{5, &O::uriSpec}};
constexpr Operation kHelperRows[] = {{3, &O::selectedTab}};
constexpr Operation kHelper5Rows[] = {{17, ofEvent<&O::eventType>},
                                      {19, &on<EventTarget, 1, &O::addEventListener>},
                                      {49, ofChannel<&O::requestMethod>},
                                      {57, &O::bodyFile},
                                      {59, ofChannel<&O::getUri>},
                                      {60, ofChannel<&O::loadFlags>},
                                      {61, ofChannel<&O::cancel>},
                                      {62, ofChannel<&O::responseStatus>},
                                      {63, ofChannel<&O::getResponseHeader>},
                                      {64, ofChannel<&O::setResponseHeader>},
                                      {65, ofChannel<&O::visitResponseHeaders>},
                                      {66, ofEvent<&O::targetDocument>},
                                      {67, &on<EventTarget, 1, &O::removeEventListener>},
                                      {68, ofChannel<&O::visitRequestHeaders>},
                                      {69, &O::windowEventTarget},
                                      {70, ofChannel<&O::channelDocument>},
                                      {71, ofPage<&O::pageIdentity>},
                                      {72, ofPage<&O::pageInfo>},
                                      {73, ofPage<&O::elementBox>},
                                      {74, ofPage<&O::documentWindow>},
                                      {75, ofEvent<&O::selectedLinks>}};
constexpr Operation kHelper8Rows[] = {{3, &O::setHost}};
constexpr Operation kHelper9Rows[] = {{3, &O::attachListener}};
constexpr Operation kHelper11Rows[] = {{4, &O::refresh}, {7, &on<Page, 1, &O::documentAttribute>}};

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

CookieObject::CookieObject(Browser& browser, Cookie told)
    : BedObject(browser, "cookie"), cookie(std::move(told)) {
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
