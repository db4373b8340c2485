// The stand-in browser with its extension: loads runtime and module, plays what happens, and keeps what the
// module did.
//
// One browser at a time in a process. Each loads a copy of the module of its own, which stays loaded: the
// module is never unloaded in a browser's life, and its state starts anew with the copy.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "browser/debug_lines.h"
#include "browser/faults.h"
#include "browser/module_exports.h"
#include "browser/world.h"

namespace zab::testbed {

struct BrowserOptions {
    /// Decides which generation of each interface the browser's objects answer to, and how wide a boolean is.
    /// The module reads its own number from the program's version resource.
    int version = 52;
    /// Beside the program, unless a path. Loaded before the module; empty: the module finds and loads it.
    std::string runtime = "xul.dll";
    std::string module = "zabcchandler7_64.dll";
    bool freshCopy = true;                    // of the module; else the file itself is loaded
    std::set<std::string> hiddenEntries{};    // entry points that the runtime does not export
    std::set<std::string> missingServices{};  // contract IDs
    /// Whether the process claims to be debugged, as far as the module can ask.
    bool debuggerPresent = true;
};

/// The 23 names, for a runtime that exports none of them.
std::set<std::string> allEntryPoints();

class Browser {
  public:
    explicit Browser(BrowserOptions options = {});
    /// Shuts down: gives every object of the module back.
    ~Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    // What happens.

    /// The extension hands itself over and passes the start-up notification on.
    nsresult startsUp();
    /// The observer service lets go of its observers.
    void shutsDown();
    Page& opensPage(std::string url, std::u16string title = u"Page", std::uint64_t documentId = 0);
    /// Lets the document go, and its window.
    static void dropsPage(Page& page);
    /// A request is about to be sent.
    Channel& requests(Request request);
    /// A top-level load of a link, from `page` when there is one.
    Channel& clicks(std::string url, Page* page = nullptr);
    /// The answer's headers have arrived.
    void answers(Channel& channel, std::uint32_t status, Headers headers = {},
                 const char* topic = "http-on-examine-response");
    /// A part of the answer's body arrives, in chunks of this size (0: in one), for the listeners that still
    /// want it; the end gives them back.
    void receives(Channel& channel, std::string_view body, std::size_t chunkBytes = 0);
    /// Whether a listener of the answer wants more of its body.
    bool wantsMore(const Channel& channel);
    void finishes(Channel& channel);
    ChromeWindow& opensWindow();
    void closesWindow(ChromeWindow& window);
    void mouse(std::u16string type, Page* page = nullptr, std::u16string selectedLinks = {});
    /// An event of a page reaches those who listen: "unload" at its window and its document, others at its
    /// window.
    void fires(const std::u16string& type, Page& page);
    void selectsTab(std::u16string_view documentId) { tells(exports_.OnTabSelect, documentId); }
    void reportsSelectedTab(std::u16string_view documentId) { tells(exports_.OnGetSelectedTabID, documentId); }
    /// The extension's own word that a document goes away; its "unload" event is mouse(u"unload", &page).
    void unloads(std::u16string_view documentId) { tells(exports_.OnUnload, documentId); }
    /// Does something else when the module next calls an operation (named as for faults), before the answer.
    void onNext(std::string operation, std::function<void()> action);
    void notifies(const char* topic, BedObject* subject);

    // What the browser holds.

    template <class T, class... Arguments>
    T& make(Arguments&&... arguments) {
        auto object = std::make_unique<T>(*this, std::forward<Arguments>(arguments)...);
        T& result = *object;
        objects_.push_back(std::move(object));
        return result;
    }
    /// Frees what it has let go and the module holds no more.
    void sweeps();
    std::vector<Cookie> cookies;
    BedObject* selectedTab = nullptr;  // what the plain helper answers

    // What the module did.

    [[nodiscard]] std::vector<std::string> observedTopics() const;
    /// In the order of their registration.
    [[nodiscard]] std::vector<nsIObserver*> observers() const;
    [[nodiscard]] std::uint32_t helperCalls() const { return helperCalls_; }
    [[nodiscard]] std::uint32_t refreshes() const { return refreshes_; }
    [[nodiscard]] BedObject* host() const { return host_; }
    /// Debugger lines since the last time they were taken.
    std::vector<std::string> takesDebugLines() { return debug_.take(); }
    /// Calls that no browser would survive or understand; empty is right.
    [[nodiscard]] const std::vector<std::string>& violations() const { return violations_; }
    void violates(std::string what) { violations_.push_back(std::move(what)); }
    /// Ends every response. What the module still holds of the browser's objects and strings, beyond what it
    /// held when it had started up; empty is right.
    [[nodiscard]] std::string unbalanced();

    Faults& faults() { return faults_; }
    [[nodiscard]] const BrowserOptions& options() const { return options_; }
    [[nodiscard]] const RuntimeLibrary& runtime() const { return runtime_; }
    [[nodiscard]] const ModuleExports& module() const { return exports_; }
    /// Everything that calls the module goes through here: faults count only while it runs.
    std::uint64_t intoModule(const std::function<std::uint64_t()>& call);
    /// How long code of the module, and what it calls of the system and of the runtime's strings, has run.
    [[nodiscard]] std::chrono::steady_clock::duration moduleTime() const { return moduleTime_; }
    std::uint64_t callModule(StandInCall which, void* object, std::uint64_t a = 0, std::uint64_t b = 0,
                             std::uint64_t c = 0);

  private:
    friend class Call;
    friend struct Operations;

    struct Observation {
        nsIObserver* observer;
        std::string topic;
        bool operator==(const Observation&) const = default;
    };

    static std::uint64_t onCall(void*, StandInObject* raw, std::uint32_t slot, const std::uint64_t* arguments);
    static nsresult onEnter(void*, const char* entryPoint);
    static void onRefused(void*, const char* entryPoint);
    static nsresult onServiceManager(void*, nsIServiceManager** out);
    std::uint64_t called(BedObject::Handle& handle, std::uint32_t slot, const std::uint64_t* arguments);
    nsresult queried(BedObject& object, const nsIID* iid, void** result);
    nsresult service(const std::string& contract, const nsIID* iid, void** result);
    /// A browser's object was called on another thread: the end under Windows, a violation natively.
    void offThread(const std::string& what);
    ModuleExports loadModule() const;
    void tells(nsresult (*which)(const nsAString*), std::u16string_view documentId);
    /// Whose code runs from now on; gives whose it was.
    bool moduleRuns(bool runs);
    bool wants(iZABSListener* listener);
    void releasesListeners(Channel& channel);
    void endsResponses();
    void endsListening(BedObject& object);

    BrowserOptions options_;
    ModuleExports exports_{};  // before the runtime, which it may have to find
    RuntimeLibrary runtime_;
    StandInHost hostCalls_;
    DebugLines debug_;
    Faults faults_;
    std::map<std::string, std::function<void()>> interruptions_;
    bool moduleRuns_ = false;
    std::chrono::steady_clock::time_point runsSince_{};
    std::chrono::steady_clock::duration moduleTime_{};
    std::thread::id thread_;
    std::vector<std::unique_ptr<BedObject>> objects_;
    std::map<std::string, BedObject*> services_;
    BedObject* serviceManager_;
    BedObject* host_ = nullptr;
    std::vector<Observation> observations_;
    std::uint32_t helperCalls_ = 0;
    std::uint32_t refreshes_ = 0;
    std::int32_t containersAtStart_ = 0;
    std::vector<std::string> violations_;
};

}  // namespace zab::testbed
