// zab_browser: the stand-in browser as a program. Makes real HTTP exchanges with the module loaded; what it
// reads and writes is told in exchange_list.md.
#include <CLI/CLI.hpp>
#include <atomic>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <thread>

#include "binding/browser_version.h"
#include "binding/library_win32.h"
#include "binding/utf.h"
#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/top_window.h"
#include "browser/web_client.h"

namespace {

using namespace zab::testbed;
using nlohmann::json;

constexpr int kBadInput = 2;
constexpr int kTooLong = 3;
constexpr int kPatienceSeconds = 60;
constexpr int kMostHops = 20;
constexpr std::size_t kPacketBytes = 1400;
constexpr std::uint32_t kReplacesLoad = 0x40000;

std::atomic<int> g_secondsLeft{kPatienceSeconds};

void endWhenAnExchangeHangs() {
    std::thread([] {
        while (--g_secondsLeft > 0) std::this_thread::sleep_for(std::chrono::seconds(1));
        std::cerr << "zab_browser: the time of an exchange ran out\n";
        TerminateProcess(GetCurrentProcess(), kTooLong);
    }).detach();
}

std::vector<std::uint8_t> keysOf(const json& exchange) {
    const struct {
        const char* name;
        std::uint8_t code;
    } names[] = {{"ctrl", VK_CONTROL},
                 {"alt", VK_MENU},
                 {"shift", VK_SHIFT},
                 {"insert", VK_INSERT},
                 {"delete", VK_DELETE}};
    std::vector<std::uint8_t> keys;
    for (const auto& key : exchange.value("keys", std::vector<std::string>{})) {
        const auto* row =
            std::find_if(std::begin(names), std::end(names), [&](auto& n) { return key == n.name; });
        if (row != std::end(names)) keys.push_back(row->code);
        if (key.size() == 1) keys.push_back(static_cast<std::uint8_t>(std::toupper(key[0])));
    }
    return keys;
}

std::uint32_t loadFlagsOf(const json& exchange) {
    const auto load = exchange.value("load", "top");
    const auto named = load == "top" ? kTopLevelLoad : load == "document" ? kDocumentLoad : kEmbedded;
    return exchange.value("loadFlags", named);
}

/// A form as the browser holds it for sending: its own header block, then the bytes.
Upload uploadOf(const std::string& form, const std::string& type) {
    return {.bytes = "Content-Type: " + type + "\r\nContent-Length: " + std::to_string(form.size()) +
                     "\r\n\r\n" + form};
}

std::string fileNameOf(HMODULE module) {
    char path[MAX_PATH];
    const std::string whole(path, GetModuleFileNameA(module, path, MAX_PATH));
    return whole.substr(whole.rfind('\\') + 1);
}

/// What this program's own version resource says; empty without one.
std::string programVersion() {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::vector<char> block(GetFileVersionInfoSizeA(path, nullptr));
    void* text = nullptr;
    UINT length = 0;
    if (block.empty() || !GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueA(block.data(), "\\StringFileInfo\\040904b0\\FileVersion", &text, &length))
        return {};
    return static_cast<const char*>(text);
}

/// Whose generation of interfaces this program shows; without a version resource the oldest one in range.
int generationOf(const std::string& version) {
    return version.empty() ? zab::kUnknownBrowserVersion : zab::majorOfFileVersion(zab::utf16FromUtf8(version));
}

class Program {
  public:
    explicit Program(BrowserOptions options) : browser_(std::move(options)) { browser_.startsUp(); }

    void introduces() {
        const json line{{"browser", fileNameOf(nullptr)},
                        {"version", programVersion()},
                        {"runtime", fileNameOf(static_cast<HMODULE>(browser_.runtime().handle()))},
                        {"observed", browser_.observedTopics()}};
        browser_.takesDebugLines();
        print(line);
    }

    void keeps(const json& cookies) {
        for (const json& cookie : cookies)
            browser_.cookies.push_back(
                {.name = cookie.at("name"), .value = cookie.at("value"), .host = cookie.at("host")});
    }

    /// Makes an exchange, or does what the user does instead.
    void performs(const json& step) {
        const bool isChoice = step.contains("chooses");
        if (!isChoice && !step.contains("downloadsAll")) return makes(step);
        isChoice ? chooses(step.at("page").at("id"), step.at("chooses")) : downloadsAll(step);
        print({{"name", step.value("name", "")},
               {"url", step.at(isChoice ? "chooses" : "url")},
               {"method", isChoice ? "MENU" : "ALL"},
               {"cancelled", "menu"}});
    }

    /// Every page goes away; what the module holds then, it has forgotten to give back.
    void leavesAllPages() {
        for (const auto& [id, page] : pages_) {
            browser_.mouse(u"unload", page);
            browser_.unloads(zab::utf16FromUtf8(std::to_string(id)));
        }
        print({{"heldAtEnd", browser_.unbalanced()}});
    }

    /// What the pages' buttons offer, as the button library was told it.
    void tellsOffers() const {
        const auto entries = libraryFunction<EntriesFunction>("StandIn_Entries");
        if (entries == nullptr) return;
        for (const auto& [id, page] : pages_) {
            std::u16string lines(entries(id, nullptr, 0), u'\0');
            entries(id, lines.data(), static_cast<std::uint32_t>(lines.size()));
            if (!lines.empty()) print({{"page", id}, {"entries", entriesOf(zab::utf8FromUtf16(lines))}});
        }
    }

  private:
    using EntriesFunction = std::uint32_t(std::uint64_t documentId, char16_t* text, std::uint32_t capacity);
    using ChooseFunction = int(std::uint64_t documentId, const char16_t* link);

    /// Of the stand-in button library, once the module has loaded it.
    template <class Function>
    static Function* libraryFunction(const char* name) {
        return zab::exportOf<Function>(GetModuleHandleA("zabbrbtn64.dll"), name);
    }

    static json entriesOf(const std::string& lines) {
        json entries = json::array();
        std::istringstream stream(lines);
        for (std::string link, label; std::getline(stream, link, '\t') && std::getline(stream, label);)
            entries.push_back({{"link", link}, {"label", label}});
        return entries;
    }

    /// The choice comes to this thread as a message, and so does what the module makes of it.
    void chooses(std::uint64_t page, const std::string& link) {
        const auto choose = libraryFunction<ChooseFunction>("StandIn_Choose");
        if (choose == nullptr || choose(page, zab::utf16FromUtf8(link).c_str()) == 0)
            throw std::runtime_error("no button offers " + link);
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }

    /// The extension hands the page over with the cookies that it knows for it.
    void downloadsAll(const json& step) {
        const auto passed = [this](const json& text) {
            return PassedText(browser_.runtime(), zab::utf16FromUtf8(text.get<std::string>()));
        };
        const PassedText markup = passed(step.at("downloadsAll")), url = passed(step.at("page").at("url")),
                         cookies = passed(step.at("cookies"));
        browser_.intoModule([&] { return browser_.module().DownloadAllWithZAB(markup, url, cookies); });
    }

    void makes(const json& exchange) {
        const HeldKeys keys(keysOf(exchange));
        Closing closing{exchange.value("closes", "")};
        if (closing.what == "window") closing.window = &browser_.opensWindow();
        std::string form = exchange.value("body", "");
        Request request{.url = exchange.at("url"),
                        .method = exchange.value("method", form.empty() ? "GET" : "POST"),
                        .loadFlags = loadFlagsOf(exchange),
                        .page = pageOf(exchange)};
        const json headers = exchange.value("headers", json::object());
        for (const auto& [name, value] : headers.items()) request.headers.emplace_back(name, value);
        if (!form.empty()) {
            const auto type = exchange.value("bodyType", "application/x-www-form-urlencoded");
            request.headers.emplace_back("Content-Type", type);
            request.upload = uploadOf(form, type);
        }
        for (int hop = 0; hop < kMostHops; ++hop) {
            g_secondsLeft = kPatienceSeconds;
            const auto next = hops({exchange.value("name", ""), exchange.value("connect", "")}, request, form,
                                   std::exchange(closing, {}));
            if (next.empty()) return;
            // A redirect is followed with a plain request.
            request.url = next;
            request.method = "GET";
            request.upload.reset();
            request.loadFlags |= kReplacesLoad;
            std::erase_if(request.headers, [](const auto& header) { return header.first == "Content-Type"; });
            form.clear();
        }
    }

    struct Way {
        std::string name;    // of the exchange
        std::string server;  // that is asked in place of the one in the address; empty: that one
    };

    /// What the user closes while the answer is awaited.
    struct Closing {
        std::string what;  // "tab", "window" or ""
        ChromeWindow* window = nullptr;
    };

    /// The page goes away, and with it what the load belongs to.
    void closes(Channel& channel, const Closing& closing, json& line) {
        Page* page = std::exchange(channel.request.page, nullptr);
        if (page != nullptr) {
            const auto known = std::find_if(pages_.begin(), pages_.end(),
                                            [page](const auto& row) { return row.second == page; });
            browser_.mouse(u"unload", page);
            browser_.unloads(zab::utf16FromUtf8(std::to_string(known->first)));
            Browser::dropsPage(*page);
            pages_.erase(known);
        }
        if (closing.window == nullptr) return;
        browser_.closesWindow(*closing.window);
        line["windowListeners"] = closing.window->target.listeners.size();
        closing.window->target.letGo();
        closing.window->letGo();
    }

    /// One request and its answer; gives the URL that it redirects to, or nothing.
    std::string hops(const Way& way, const Request& request, const std::string& form, const Closing& closing) {
        const auto callsBefore = browser_.helperCalls();
        browser_.takesDebugLines();
        json line{{"name", way.name}, {"url", request.url}, {"method", request.method}, {"cancelled", ""},
                  {"status", 0},      {"location", ""},     {"newLocation", ""},        {"bytes", 0},
                  {"sha256", ""},     {"error", ""}};
        auto& channel = browser_.requests(request);
        if (!closing.what.empty()) closes(channel, closing, line);
        std::string next;
        if (channel.cancelled()) {
            line["cancelled"] = "request";
        } else {
            try {
                next = fetches(channel, form, way.server, line);
            } catch (const std::exception& error) {
                line["error"] = error.what();
            }
        }
        line["cancelStatus"] = channel.cancelled() ? channel.cancels.front() : 0;
        line["listeners"] = channel.listeners.size();
        browser_.finishes(channel);
        line["helperCalls"] = browser_.helperCalls() - callsBefore;
        line["held"] = browser_.unbalanced();
        line["debug"] = browser_.takesDebugLines();
        if (!browser_.violations().empty()) line["violations"] = browser_.violations();
        print(line);
        return next;
    }

    std::string fetches(Channel& channel, const std::string& form, const std::string& server, json& line) {
        if (!channel.request.url.starts_with("http")) throw std::runtime_error("only http is fetched");
        const auto answer = fetch(channel.request, form, server);
        line["status"] = answer->status;
        browser_.answers(channel, answer->status, answer->headers);
        for (const auto& [key, value] : answer->headers)
            if (_stricmp(key.c_str(), "Location") == 0) line["location"] = value;
        for (const auto& [key, value] : channel.written)
            if (_stricmp(key.c_str(), "Location") == 0) line["newLocation"] = value;
        if (channel.cancelled()) {
            line["cancelled"] = "response";
            return {};
        }
        const auto location = channel.responseHeader("Location");
        if (location && answer->status / 100 == 3) return resolved(channel.request.url, *location);
        const auto body = answer->body();
        browser_.receives(channel, body, kPacketBytes);
        line["bytes"] = body.size();
        if (!body.empty()) line["sha256"] = sha256Of(body);
        return {};
    }

    Page* pageOf(const json& exchange) {
        const auto told = exchange.find("page");
        if (told == exchange.end()) return nullptr;
        const auto id = told->value("id", std::uint64_t{0});
        auto& page = pages_[id];
        if (page == nullptr) page = &browser_.opensPage({}, {}, id);
        page->url = told->value("url", "");
        page->title = zab::utf16FromUtf8(told->value("title", ""));
        if (told->value("shown", false)) page->nativeWindow = window().handle();
        return page;
    }

    static void print(const json& line) {
        std::cout << line.dump(-1, ' ', false, json::error_handler_t::replace) << std::endl;
    }

    /// Opens with the first page that is shown.
    TopWindow& window() {
        if (!window_) window_.emplace();
        return *window_;
    }

    std::optional<TopWindow> window_;
    Browser browser_;
    std::map<std::uint64_t, Page*> pages_;
};

json listIn(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    json list = json::parse(file);
    return list.is_object() ? list : json{{"exchanges", list}};
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("The stand-in browser: makes every exchange of a list with the module loaded.");
    BrowserOptions options{.runtime = "", .freshCopy = false};
    std::string list;
    app.add_option("--module", options.module, "the module's library")->required();
    app.add_option("--list", list, "JSON file of exchanges")->required();
    app.add_option("--runtime", options.runtime,
                   "runtime that is loaded before the module; else it finds its own");
    CLI11_PARSE(app, argc, argv);
    endWhenAnExchangeHangs();
    try {
        const json steps = listIn(list);
        options.version = generationOf(programVersion());
        Program program(options);
        program.introduces();
        program.keeps(steps.value("cookies", json::array()));
        for (const auto& step : steps.at("exchanges")) program.performs(step);
        program.tellsOffers();
        program.leavesAllPages();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "zab_browser: " << error.what() << '\n';
        return kBadInput;
    }
}
