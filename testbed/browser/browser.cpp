#include "browser/browser.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "binding/never_destroyed.h"
#include "browser/base_window.h"
#include "browser/library.h"

namespace zab::testbed {
namespace {

std::uint64_t argument(const void* pointer) { return reinterpret_cast<std::uint64_t>(pointer); }

}  // namespace

std::set<std::string> allEntryPoints() {
    std::set<std::string> names;
    for (const auto& entry : kRuntimeEntryPoints) names.emplace(entry.name);
    return names;
}

Browser::Browser(BrowserOptions options)
    : options_(std::move(options)),
      exports_(options_.runtime.empty() ? loadModule() : ModuleExports{}),
      runtime_(!options_.runtime.empty() ? options_.runtime
               : isLoaded("xpcom.dll")   ? "xpcom.dll"
                                         : "xul.dll"),
      hostCalls_{this, &onCall, &onEnter, &onRefused, &onServiceManager},
      debug_(options_.debuggerPresent),
      thread_(std::this_thread::get_id()) {
    runtime_.setHost(&hostCalls_);
    serviceManager_ = &make<BedObject>("service manager");
    serviceManager_->answersTo(kServiceManager);
    for (const auto& row : services()) {
        if (options_.missingServices.count(row.contract) != 0) continue;
        services_[row.contract] = &make<BedObject>(row.interface.name);
        services_[row.contract]->answersTo(row.interface);
    }
    // The module looks its entry points up while it is loaded, and only then.
    constexpr int kFirstWithoutFree = 40;
    if (options_.version >= kFirstWithoutFree) options_.hiddenEntries.insert("NS_Free");
    const auto hidden = hidesExports(runtime_.handle(), options_.hiddenEntries);
    if (!options_.runtime.empty()) exports_ = loadModule();
    containersAtStart_ = *runtime_.containers;
}

ModuleExports Browser::loadModule() const {
    return ModuleExports(options_.freshCopy ? loadFreshModule(options_.module, options_.version)
                                            : loadLibrary(options_.module));
}

Browser::~Browser() {
    endsResponses();
    for (const auto& object : objects_) endsListening(*object);
    shutsDown();
    runtime_.setHost(nullptr);
    // The copy of the module stays loaded and may still point at what it holds: the objects outlive the
    // browser.
    static NeverDestroyed<std::vector<std::unique_ptr<BedObject>>> graveyard;
    std::ranges::move(objects_, std::back_inserter(graveyard.get()));
}

// What happens.

nsresult Browser::startsUp() {
    auto& host = make<BedObject>("extension");
    const nsresult connected =
        static_cast<nsresult>(intoModule([&] { return exports_.InitCC(host.asSupports()); }));
    intoModule([&] { return exports_.Observe(nullptr, "profile-after-change"); });
    containersAtStart_ = *runtime_.containers;
    return connected;
}

void Browser::shutsDown() {
    for (const auto& row : std::exchange(observations_, {})) callModule(StandInCall::release, row.observer);
}

Page& Browser::opensPage(std::string url, std::u16string title, std::uint64_t documentId) {
    static std::uint64_t next = 100;
    return make<Page>(std::move(url), std::move(title), documentId == 0 ? ++next : documentId);
}

void Browser::dropsPage(Page& page) {
    page.domWindow.docShell.letGo();
    page.domWindow.target.letGo();
    page.domWindow.letGo();
    page.letGo();
}

Channel& Browser::requests(Request request) {
    auto& channel = make<Channel>(std::move(request));
    notifies("http-on-modify-request", &channel);
    return channel;
}

Channel& Browser::clicks(std::string url, Page* page) {
    Headers headers{{"User-Agent", "Stand-in/52.9"}};
    if (page != nullptr) headers.emplace_back("Referer", page->url);
    return requests({.url = std::move(url), .headers = std::move(headers), .page = page});
}

void Browser::answers(Channel& channel, std::uint32_t status, Headers headers, const char* topic) {
    channel.status = status;
    channel.responseHeaders = std::move(headers);
    notifies(topic, &channel);
}

bool Browser::wants(iZABSListener* listener) {
    std::uint32_t word = 0;
    callModule(StandInCall::wantsMoreData, listener, argument(&word));
    return word != 0;
}

bool Browser::wantsMore(const Channel& channel) {
    return std::ranges::any_of(channel.listeners, [this](auto* listener) { return wants(listener); });
}

void Browser::receives(Channel& channel, std::string_view body, std::size_t chunkBytes) {
    while (!body.empty() && wantsMore(channel)) {
        const std::string_view chunk = body.substr(0, chunkBytes == 0 ? body.size() : chunkBytes);
        body.remove_prefix(chunk.size());
        const auto listeners = channel.listeners;
        for (auto* listener : listeners) {
            if (!wants(listener)) continue;
            if (callModule(StandInCall::responseData, listener, argument(chunk.data()), chunk.size()) != NS_OK)
                violates("a body listener fails");
        }
    }
}

void Browser::finishes(Channel& channel) {
    releasesListeners(channel);
    if (channel.upload != nullptr) channel.upload->letGo();
    channel.letGo();
}

void Browser::releasesListeners(Channel& channel) {
    for (auto* listener : std::exchange(channel.listeners, {})) callModule(StandInCall::release, listener);
}

void Browser::endsListening(BedObject& object) {
    if (auto* target = dynamic_cast<EventTarget*>(&object))
        for (const auto& [type, listener] : std::exchange(target->listeners, {}))
            callModule(StandInCall::release, listener);
}

void Browser::endsResponses() {
    // The end of a body may make the module ask for new objects. NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t i = 0; i < objects_.size(); ++i)
        if (auto* channel = dynamic_cast<Channel*>(objects_[i].get())) releasesListeners(*channel);
}

ChromeWindow& Browser::opensWindow() {
    auto& window = make<ChromeWindow>();
    notifies("domwindowopened", &window);
    return window;
}

void Browser::closesWindow(ChromeWindow& window) { notifies("domwindowclosed", &window); }

void Browser::mouse(std::u16string type, Page* page, std::u16string selectedLinks) {
    auto& event = make<Event>(std::move(type), page);
    event.selectedLinks = std::move(selectedLinks);
    intoModule([&] { return exports_.OnME(event.asSupports()); });
    event.letGo();
}

void Browser::fires(const std::u16string& type, Page& page) {
    auto& event = make<Event>(type, &page);
    auto listeners = page.domWindow.target.listeners;
    if (type == u"unload") listeners.insert(listeners.end(), page.listeners.begin(), page.listeners.end());
    std::vector<void*> called;  // they live on until the last of them has heard
    for (const auto& [own, listener] : listeners) {
        if (own != type) continue;
        callModule(StandInCall::queryInterface, listener, argument(&nsIDOMEventListener::kIID),
                   argument(&called.emplace_back()));
        if (called.back() == nullptr) violates("a listener is none");
    }
    std::erase(called, nullptr);
    for (void* listener : called) callModule(StandInCall::handleEvent, listener, argument(event.asSupports()));
    for (void* listener : called) callModule(StandInCall::release, listener);
    event.letGo();
}

void Browser::tells(nsresult (*which)(const nsAString*), std::u16string_view documentId) {
    const PassedText text(runtime_, documentId);
    intoModule([&] { return which(text); });
}

void Browser::onNext(std::string operation, std::function<void()> action) {
    interruptions_[std::move(operation)] = std::move(action);
}

void Browser::notifies(const char* topic, BedObject* subject) {
    const auto observers = observations_;
    for (const auto& row : observers)
        if (row.topic == topic)
            callModule(StandInCall::observe, row.observer,
                       argument(subject == nullptr ? nullptr : subject->asSupports()), argument(topic));
}

void Browser::sweeps() {
    // Letting go may make new objects. NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t i = 0; i < objects_.size(); ++i)
        if (objects_[i]->dead()) endsListening(*objects_[i]);
    std::erase_if(objects_, [](const auto& object) { return object->dead(); });
}

// What the module did.

std::vector<std::string> Browser::observedTopics() const {
    std::vector<std::string> topics;
    for (const auto& row : observations_) topics.push_back(row.topic);
    return topics;
}

std::vector<nsIObserver*> Browser::observers() const {
    std::vector<nsIObserver*> all;
    for (const auto& row : observations_) all.push_back(row.observer);
    return all;
}

std::string Browser::unbalanced() {
    endsResponses();
    std::string text;
    for (const auto& object : objects_)
        if (object->references() != 0)
            text += std::to_string(object->references()) + " of " + object->name() + "; ";
    const auto held = *runtime_.containers - containersAtStart_;
    if (held != 0) text += std::to_string(held) + " string containers; ";
    return text;
}

// Calls in both directions.

bool Browser::moduleRuns(bool runs) {
    const auto now = std::chrono::steady_clock::now();
    if (moduleRuns_) moduleTime_ += now - runsSince_;
    runsSince_ = now;
    return std::exchange(moduleRuns_, runs);
}

std::uint64_t Browser::intoModule(const std::function<std::uint64_t()>& call) {
    const bool before = moduleRuns(true);
    const auto result = call();
    moduleRuns(before);
    return result;
}

std::uint64_t Browser::callModule(StandInCall which, void* object, std::uint64_t a, std::uint64_t b,
                                  std::uint64_t c) {
    return intoModule([&] { return runtime_.callModule(which, object, a, b, c); });
}

std::uint64_t Browser::onCall(void* context, StandInObject* raw, std::uint32_t slot,
                              const std::uint64_t* arguments) {
    auto& browser = *static_cast<Browser*>(context);
    const bool before = browser.moduleRuns(false);
    const auto result = browser.called(*static_cast<BedObject::Handle*>(raw->context), slot, arguments);
    browser.moduleRuns(before);
    return result;
}

std::uint64_t Browser::called(BedObject::Handle& handle, std::uint32_t slot, const std::uint64_t* arguments) {
    auto& object = *handle.owner;
    const std::string operation = std::string(handle.interface->name) + "." + std::to_string(slot);
    if (std::this_thread::get_id() != thread_) offThread(operation + " is called on a thread of the module");
    if (object.dead()) violates(operation + " of a dead " + object.name());
    if (slot == 1) return static_cast<std::uint32_t>(++handle.references);
    if (slot == 2) {
        if (handle.references == 0) violates(object.name() + " is released too often");
        return static_cast<std::uint32_t>(--handle.references);
    }
    if (operation.starts_with("helper") && slot != 0) ++helperCalls_;
    if (auto interruption = interruptions_.extract(operation)) interruption.mapped()();
    if (const nsresult fault = faults_.step(operation); fault != NS_OK) return fault;
    if (slot == 0)
        return queried(object, reinterpret_cast<const nsIID*>(arguments[0]),
                       reinterpret_cast<void**>(arguments[1]));
    for (const auto& row : handle.interface->operations)
        if (row.slot == slot || row.slot == kEverySlot) return row.run(Call(*this, object, slot, arguments));
    violates(operation + " is no operation that the module may call");
    return NS_ERROR_NOT_IMPLEMENTED;
}

void Browser::offThread(const std::string& what) {
#ifdef _WIN32
    // As a browser does, which would not know whom else to stop.
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
#else
    violates(what);
#endif
}

nsresult Browser::queried(BedObject& object, const nsIID* iid, void** result) {
    auto* handle = object.handleFor(*iid);
    *result = handle == nullptr ? nullptr : &handle->raw;
    if (handle == nullptr) return NS_ERROR_NO_INTERFACE;
    ++handle->references;
    return NS_OK;
}

nsresult Browser::onEnter(void* context, const char* entryPoint) {
    auto& browser = *static_cast<Browser*>(context);
    return browser.moduleRuns_ ? browser.faults_.step(entryPoint) : NS_OK;
}

void Browser::onRefused(void* context, const char* entryPoint) {
    static_cast<Browser*>(context)->violates(std::string(entryPoint) + " is no entry that the module may call");
}

nsresult Browser::onServiceManager(void* context, nsIServiceManager** out) {
    auto& browser = *static_cast<Browser*>(context);
    return browser.queried(*browser.serviceManager_, &nsIServiceManager::kIID, reinterpret_cast<void**>(out));
}

nsresult Browser::service(const std::string& contract, const nsIID* iid, void** result) {
    *result = nullptr;
    if (const nsresult fault = faults_.step("service " + contract); fault != NS_OK) return fault;
    const auto found = services_.find(contract);
    return found == services_.end() ? 0x80040154 : queried(*found->second, iid, result);  // not registered
}

}  // namespace zab::testbed
