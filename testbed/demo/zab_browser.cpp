// zab_browser: the stand-in browser as a program. Plays a list of exchanges (exchange_list.md) with the module
// loaded, over real HTTP, and shows in one table what came of each.
#include <CLI/CLI.hpp>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <thread>

#include "binding/browser_version.h"
#include "binding/library_win32.h"
#include "binding/utf.h"
#include "binding/version_resource_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"
#include "demo/report.h"
#include "demo/web_client.h"
#include "site/fingerprint.h"
#include "web/url_resolve.h"

namespace {

using namespace zab::demo;
using namespace zab::testbed;

constexpr int kUnexpected = 1, kBadInput = 2, kTooLong = 3;
constexpr int kPatienceSeconds = 60, kMostHops = 20;
constexpr std::size_t kPacketBytes = 1400;
constexpr std::uint32_t kReplacesLoad = 0x40000;
// The browser's own request to this address ends a redirect that was taken over.
constexpr std::string_view kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";

std::atomic<int> g_secondsLeft{kPatienceSeconds};

void endWhenAnExchangeHangs() {
    std::thread([] {
        while (--g_secondsLeft > 0) std::this_thread::sleep_for(std::chrono::seconds(1));
        std::cerr << "zab_browser: the time of an exchange ran out\n";
        TerminateProcess(GetCurrentProcess(), kTooLong);
    }).detach();
}

/// "**********Examine transfer: The server names ..." gives the sentence; of several lines the last counts.
std::string reasonIn(const std::vector<std::string>& debugLines) {
    constexpr std::string_view kPrefix = "**********Examine ";
    std::string reason = "-";
    for (const auto& line : debugLines)
        if (const auto colon = line.find(": "); line.starts_with(kPrefix) && colon != line.npos)
            reason = line.substr(colon + 2);
    return reason;
}

/// What this program's own version resource says; empty without one.
std::u16string programVersion() {
    return zab::versionResourceText(zab::executablePath().value_or(u""), u"FileVersion").value_or(u"");
}

std::string fileNameOf(void* module) {
    char path[MAX_PATH];
    const std::string whole(path, GetModuleFileNameA(static_cast<HMODULE>(module), path, MAX_PATH));
    return whole.substr(whole.rfind('\\') + 1);
}

class Program {
  public:
    explicit Program(BrowserOptions options) : browser(std::move(options)) {
        browser.startsUp();
        std::cout << fileNameOf(nullptr) << ' ' << zab::utf8FromUtf16(programVersion()) << " with "
                  << fileNameOf(browser.runtime().handle()) << "\n\n";
    }

    /// Makes an exchange, or does what the user does instead.
    void plays(const json& step) {
        toCome_ = step.value("expected", json());
        if (step.contains("chooses")) {
            chooses(step.at("page").at("id"), step.at("chooses"));
        } else if (step.contains("downloadsAll")) {
            downloadsAll(step);
        } else {
            makes(step);
        }
        while (!toCome_.empty()) {
            Row& row = newRow("-", toCome_.front().at("url"));
            row.faults.push_back("the browser did not come to it");
        }
    }

    /// Every page goes away. What the module still holds then, and what no browser would survive; empty is
    /// right.
    std::string leavesAllPages() {
        for (const auto& [id, page] : pages_) leaves(*page);
        std::string wrong = browser.unbalanced();
        for (const auto& violation : browser.violations()) wrong += violation + "; ";
        return wrong;
    }

    std::vector<Row> rows;
    std::optional<TopWindow> window{};  // opens with the first page that is shown
    Browser browser;

    /// What the button of a page offers, as the button library was told it.
    static json entriesOf(std::uint64_t page) {
        using Entries = std::uint32_t(std::uint64_t documentId, char16_t* text, std::uint32_t capacity);
        json entries = json::array();
        const auto told = buttonLibrary<Entries>("StandIn_Entries");
        if (told == nullptr) return entries;
        std::u16string lines(told(page, nullptr, 0), u'\0');
        told(page, lines.data(), static_cast<std::uint32_t>(lines.size()));
        std::istringstream stream(zab::utf8FromUtf16(lines));
        for (std::string link, label; std::getline(stream, link, '\t') && std::getline(stream, label);)
            entries.push_back({{"link", link}, {"label", label}});
        return entries;
    }

  private:
    /// Of the stand-in button library, once the module has loaded it.
    template <class Function>
    static Function* buttonLibrary(const char* name) {
        return zab::exportOf<Function>(GetModuleHandleA("zabbrbtn64.dll"), name);
    }

    Row& newRow(std::string method, const std::string& url) {
        Row& row = rows.emplace_back(Row{.method = std::move(method), .url = url});
        if (toCome_.is_null()) {
            row.expected = nullptr;
        } else if (toCome_.empty()) {
            row.faults.push_back("one hop more than expected");
        } else {
            row.expected = toCome_.front();
            toCome_.erase(0);
        }
        row.compare("URL", url, row.expects("url"));
        return row;
    }

    static void asTransfer(Row& row, const std::string& url) {
        row.outcome = "transfer";
        row.taken = url.substr(0, url.find('#'));
    }

    /// The choice comes to this thread as a message, and so does what the module makes of it.
    void chooses(std::uint64_t page, const std::string& link) {
        Row& row = newRow("MENU", link);
        const auto choose = buttonLibrary<int(std::uint64_t, const char16_t*)>("StandIn_Choose");
        if (choose == nullptr || choose(page, zab::utf16FromUtf8(link).c_str()) == 0) {
            row.faults.push_back("no button offers it");
            return;
        }
        bool served = false;
        serves([&] { return std::exchange(served, true); });
        asTransfer(row, link);
    }

    /// The extension hands the page over with the cookies that it knows for it.
    void downloadsAll(const json& step) {
        const auto passed = [this](const json& text) {
            return PassedText(browser.runtime(), zab::utf16FromUtf8(text.get<std::string>()));
        };
        const PassedText markup = passed(step.at("downloadsAll")), url = passed(step.at("page").at("url")),
                         cookies = passed(step.at("cookies"));
        browser.intoModule([&] { return browser.module().DownloadAllWithZAB(markup, url, cookies); });
        asTransfer(newRow("ALL", step.at("url")), step.at("url"));
    }

    void makes(const json& exchange) {
        const HeldKeys keys(exchange.value("keys", std::vector<std::uint8_t>{}));
        std::string closing = exchange.value("closes", ""), form = exchange.value("body", "");
        Request request{.url = exchange.at("url"),
                        .loadFlags = exchange.value("loadFlags", kTopLevelLoad),
                        .page = pageOf(exchange)};
        const json headers = exchange.value("headers", json::object());
        for (const auto& [name, value] : headers.items()) request.headers.emplace_back(name, value);
        if (!form.empty()) {
            // As the browser holds it for sending: its own header block, then the bytes.
            const std::string type = exchange.at("bodyType");
            request.method = "POST";
            request.headers.emplace_back("Content-Type", type);
            request.upload =
                Upload{.bytes = "Content-Type: " + type + "\r\nContent-Length: " + std::to_string(form.size()) +
                                "\r\n\r\n" + form};
        }
        for (int hop = 0; hop < kMostHops && !request.url.empty(); ++hop) {
            g_secondsLeft = kPatienceSeconds;
            const auto next = hops(request,
                                   {.url = request.url,
                                    .method = request.method,
                                    .headers = request.headers,
                                    .body = std::exchange(form, {}),
                                    .server = exchange.value("connect", "")},
                                   std::exchange(closing, {}));
            // A redirect is followed with a plain request.
            request.url = next;
            request.method = "GET";
            request.upload.reset();
            request.loadFlags |= kReplacesLoad;
            std::erase_if(request.headers, [](const auto& header) { return header.first == "Content-Type"; });
        }
    }

    /// One request and its answer; gives the URL that it redirects to, or nothing.
    std::string hops(const Request& request, const WebRequest& web, const std::string& closing) {
        Row& row = newRow(request.method, request.url);
        browser.takesDebugLines();
        auto* closed = closing == "window" ? &browser.opensWindow() : nullptr;
        auto& channel = browser.requests(request);
        if (!closing.empty()) closes(channel, closed, row);
        std::string next;
        if (channel.cancelled()) {
            if (request.url == kSentinel) {
                row.outcome = "cancel";
            } else {
                asTransfer(row, request.url);
            }
        } else if (request.url.starts_with("http")) {
            try {
                next = answered(channel, fetch(web), row);
            } catch (const std::exception& error) {
                row.faults.emplace_back(error.what());
            }
        }
        row.compare("outcome", row.outcome, row.expects("outcome"));
        row.reason = reasonIn(browser.takesDebugLines());
        browser.finishes(channel);
        // The button of a page that is shown keeps it.
        if (!row.expected.is_object() || !row.expected.value("shown", false))
            row.compare("held by the module afterwards", browser.unbalanced(), "");
        return next;
    }

    std::string answered(Channel& channel, const WebAnswer& answer, Row& row) {
        browser.answers(channel, answer.status, answer.headers);
        const auto location = channel.responseHeader("Location");
        if (!channel.written.empty())
            for (const auto& [name, value] : answer.headers)
                if (name == "Location") asTransfer(row, value);
        if (channel.cancelled()) asTransfer(row, channel.request.url);
        const bool moves = location && answer.status / 100 == 3;
        const std::string_view body = moves || channel.cancelled() ? "" : std::string_view(answer.body);
        browser.receives(channel, body, kPacketBytes);
        row.compare("file of the browser", body.empty() ? "" : zab::site::fingerprintOf(body),
                    row.expects("browserFile"));
        return moves && !channel.cancelled() ? zab::resolveUrl(channel.request.url, *location) : "";
    }

    void leaves(Page& page) {
        browser.mouse(u"unload", &page);
        browser.unloads(page.attributes.at(u"zabmzcc-ext-docid"));
    }

    /// The page goes away before the answer, and with it what the load belongs to.
    void closes(Channel& channel, ChromeWindow* closed, Row& row) {
        if (Page* page = std::exchange(channel.request.page, nullptr)) {
            leaves(*page);
            std::erase_if(pages_, [&](const auto& entry) { return entry.second == page; });
            Browser::dropsPage(*page);
        }
        if (closed == nullptr) return;
        browser.closesWindow(*closed);
        row.compare("listeners on the closed window", std::to_string(closed->target.listeners.size()), "0");
        closed->target.letGo();
        closed->letGo();
    }

    Page* pageOf(const json& exchange) {
        const auto told = exchange.find("page");
        if (told == exchange.end()) return nullptr;
        const auto id = told->value("id", std::uint64_t{0});
        auto& page = pages_[id];
        if (page == nullptr) page = &browser.opensPage({}, {}, id);
        page->url = told->value("url", "");
        page->title = zab::utf16FromUtf8(told->value("title", ""));
        if (!told->value("shown", false)) return page;
        if (!window) window.emplace();
        page->nativeWindow = window->handle();
        return page;
    }

    std::map<std::uint64_t, Page*> pages_;  // by document ID
    json toCome_;                           // what is expected of this step still; null: nobody knows
};

/// The settings of the list, and where the download manager notes its transfers.
void laysOut(SettingsTree& tree, const json& settings, const std::filesystem::path& transfers) {
    tree.setCompanions().set("TestbedLog", transfers.string());
    for (const auto& [path, value] : settings.items())
        value.is_string() ? tree.set(path, value.get<std::string>())
                          : tree.set(path, value.get<std::uint32_t>());
}

/// What the download manager noted, with what it leads to when it is downloaded.
std::vector<json> transfersIn(const std::filesystem::path& path) {
    std::vector<json> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string text; std::getline(file, text);) {
        json& line = lines.emplace_back(json::parse(text));
        g_secondsLeft = kPatienceSeconds;
        try {
            line["download"]["file"] = zab::site::fingerprintOf(downloadOf(line));
        } catch (const std::exception& error) {
            line["error"] = error.what();
        }
    }
    return lines;
}

/// Whether everything came as it is expected.
bool run(const BrowserOptions& options, const std::filesystem::path& listFile, bool verbose) {
    std::ifstream file(listFile, std::ios::binary);
    const json list = json::parse(file);
    const auto transfers = listFile.parent_path() / "transfers.jsonl";
    std::optional<SettingsTree> settings;
    std::filesystem::remove(transfers);
    if (list.contains("settings")) laysOut(settings.emplace(), list["settings"], transfers);
    Program program(options);
    for (const json& cookie : list.value("cookies", json::array()))
        program.browser.cookies.push_back(
            {.name = cookie.at("name"), .value = cookie.at("value"), .host = cookie.at("host")});
    for (const auto& step : list.at("exchanges")) program.plays(step);
    std::vector<PageOffer> offers;
    for (const auto& offer : list.value("offers", json::array()))
        offers.push_back({offer.at("title"), Program::entriesOf(offer.at("page")), offer.at("entries")});
    const std::string wrong = program.leavesAllPages();
    if (settings) settle(program.rows, transfersIn(transfers));
    bool isExpected = printTable(std::cout, program.rows, verbose);
    isExpected &= printOffers(std::cout, offers);
    if (!wrong.empty()) std::cout << "NO  at the end: " << wrong << '\n';
    return isExpected && wrong.empty();
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App app("The module at work: every exchange of a list in one table.");
    BrowserOptions options{.runtime = "", .freshCopy = false};
    std::string list;
    bool verbose = false;
    app.add_option("--module", options.module, "the module's library, if not the one beside this program");
    app.add_option("--list", list, "JSON file of exchanges")->required()->check(CLI::ExistingFile);
    app.add_flag("--verbose", verbose,
                 "also what the download manager received (cookies and credentials masked)");
    CLI11_PARSE(app, argc, argv);
    endWhenAnExchangeHangs();
    const auto version = programVersion();
    // Without a version resource it shows the oldest generation of interfaces.
    options.version = version.empty() ? zab::kUnknownBrowserVersion : zab::majorOfFileVersion(version);
    return run(options, std::filesystem::absolute(list), verbose) ? 0 : kUnexpected;
} catch (const std::exception& error) {
    std::fprintf(stderr, "zab_browser: %s\n", error.what());
    return kBadInput;
}
