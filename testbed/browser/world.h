// What a scenario tells of the web and reads back: pages, channels, streams, cookies, events.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "browser/bed_object.h"

namespace zab::testbed {

using Header = std::pair<std::string, std::string>;
using Headers = std::vector<Header>;

inline constexpr std::uint32_t kEmbedded = 0;
inline constexpr std::uint32_t kDocumentLoad = 0x10000;
inline constexpr std::uint32_t kTopLevelLoad = 0x80000 | kDocumentLoad;

struct BaseWindow;

/// Where events arrive.
struct EventTarget : BedObject {
    explicit EventTarget(Browser& browser, std::string name = "event target")
        : BedObject(browser, std::move(name)) {}

    std::vector<std::pair<std::u16string, nsISupports*>> listeners;  // in order of their registration
};

/// The window of a document. It is no base window: its docshell is, in the layout of the browser's version.
struct DomWindow : BedObject {
    explicit DomWindow(Browser& browser);

    BaseWindow& docShell;
    EventTarget& target;  // where its events arrive
};

/// A document.
struct Page : EventTarget {
    Page(Browser& browser, std::string address, std::u16string pageTitle, std::uint64_t documentId);

    std::string url;
    std::u16string title;
    std::uint32_t window = 1, tab = 1;
    std::uint64_t nativeWindow = 0;
    std::map<std::u16string, std::u16string> attributes;  // the document ID among them
    std::map<std::u16string, std::array<std::int32_t, 4>> boxes;
    DomWindow& domWindow;
};

/// Body of a request as the browser holds it.
struct Upload {
    std::string bytes;
    /// What Available() says; absent: the truth.
    std::optional<std::uint64_t> claims{};
    std::uint64_t position = 0;
    bool closed = false;
    bool seekable = true;
    /// Answers the oldest identifier of the seekable stream only.
    bool oldestSeekable = false;
};

struct UploadStream : BedObject {
    UploadStream(Browser& browser, Upload upload);

    Upload upload;
};

struct Request {
    std::string url;
    std::string method = "GET";
    Headers headers{};
    std::uint32_t loadFlags = kTopLevelLoad;
    Page* page = nullptr;
    std::optional<Upload> upload{};
};

struct Channel : BedObject {
    Channel(Browser& browser, Request request);

    Request request;
    UploadStream* upload = nullptr;
    std::uint32_t status = 0;
    Headers responseHeaders;

    // What the module did.
    std::vector<nsresult> cancels;
    Headers written;  // response headers that it set
    std::vector<iZABSListener*> listeners;

    /// The first header of this name, in any letter case.
    [[nodiscard]] std::optional<std::string> responseHeader(std::string_view name) const;
    [[nodiscard]] bool cancelled() const { return !cancels.empty(); }
};

struct Cookie {
    std::string name, value, host, path = "/";
    bool secure = false;
    std::uint64_t expires = 0;  // seconds since 1970; 0: with the session
};

struct Event : BedObject {
    Event(Browser& browser, std::u16string eventType, Page* eventPage = nullptr)
        : BedObject(browser, "event"), type(std::move(eventType)), page(eventPage) {}

    std::u16string type;
    Page* page;
    std::u16string selectedLinks{};
};

/// A top-level window of the browser: what window notifications tell of.
struct ChromeWindow : BedObject {
    explicit ChromeWindow(Browser& browser);

    EventTarget& target;
};

}  // namespace zab::testbed
