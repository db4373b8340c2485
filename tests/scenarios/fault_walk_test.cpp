// Faults are counted, not guessed: of everything that the module calls during an exchange, the first call
// fails, then the second, and so on, until a run ends without reaching its fault.
#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "binding/text.h"
#include "scenarios/recorded.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

constexpr const char* kCaught = "zip rar 7z gz exe msi";

constexpr nsresult kFails = NS_ERROR_FAILURE;
/// The browser says that it has done what it has not: out-parameters stay as the module made them.
constexpr nsresult kDoesNothing = 1;

using Texts = std::set<std::string>;
using enum ExtraElement;

const Texts kOfThePage = {nameOf(pageTitle), nameOf(pageUrl), nameOf(pageCookies), nameOf(pageUser),
                          nameOf(pagePassword)};
const Texts kOfTheRequest = {"referrer", "cookies", "user", "password", nameOf(userAgent)};
const Texts kOfTheResponse = {nameOf(contentType), nameOf(size)};
const Texts kOfThePost = {"postData", nameOf(postContentType)};
constexpr std::uint32_t kBodyNotCaptured = 0x1000008;
const Texts kOfTheJar = {nameOf(pageCookies)};

/// What a transfer may lack when an operation of such a name, or one that begins so, has failed.
const struct {
    std::vector<std::string_view> operations;
    std::vector<Texts> lacks;
} kLacks[] = {
    {{"helper5.65"}, {kOfTheResponse}},
    {{"helper5.68"}, {kOfTheRequest}},
    {{"helper5.70", "helper5.72"}, {kOfThePage}},
    {{"helper5.49", "inputStream.", "seekableStream.", "uploadChannel."}, {kOfThePost}},
    {{"cookie", "enumerator.", "service @mozilla.org/cookiemanager;1"}, {kOfTheJar}},
    {{"NS_GetServiceManager", "serviceManager."}, {kOfTheJar}},  // without a helper there is no transfer
    {{"nsISupports.0"}, {kOfTheJar, kOfThePost}},  // a cookie, and a body's channel, as what they are
    {{"NS_CStringContainerInit"}, {kOfThePage, kOfThePost}},
    {{"NS_StringContainerInit"}, {kOfThePage}},
    {{"NS_StringGetData"}, {{nameOf(pageTitle)}}},
    {{"NS_CStringGetData"}, {kOfThePage, kOfTheRequest, kOfTheResponse, kOfThePost}},
};

/// Builds the extra data, of which half would be wrong: it is all there, or all of it is absent.
const Texts kBuildsExtraData = {"MultiByteToWideChar", "SysAllocStringLen", "SafeArrayCreate",
                                "SafeArrayPutElement"};

/// What a transfer may tell otherwise.
const struct {
    nsresult fault;
    std::string_view operation, text;
    const char* why;
} kDiffers[] = {
    {kFails, "NS_CStringGetData", "extra 6", "of two headers that tell a size, one was not seen"},
    {kDoesNothing, "cookie.3", "extra 9", "a name that was not written is an empty name"},
    {kDoesNothing, "cookie.4", "extra 9", "and a value an empty value"},
};

/// What fails when the download manager has the download already: the browser keeps it too.
const Texts kBehindTheTransfer = {"helper5.61", "helper5.64", "NS_CStringContainerInit", "NS_CStringSetData"};

bool mayLack(const std::string& text, const std::string& operation) {
    return std::ranges::any_of(kLacks, [&](const auto& row) {
        return std::ranges::any_of(row.operations, [&](auto name) { return operation.starts_with(name); }) &&
               std::ranges::any_of(row.lacks, [&](const Texts& texts) { return texts.contains(text); });
    });
}

bool mayDiffer(const std::string& text, const std::string& operation, nsresult fault) {
    return std::ranges::any_of(kDiffers, [&](const auto& row) {
        return row.fault == fault && row.operation == operation && row.text == text;
    });
}

bool isExtra(const std::string& text) { return text.starts_with("extra "); }

bool hasExtraData(const Told& told) {
    return std::ranges::any_of(told.texts, [](const auto& text) { return isExtra(text.first); });
}

/// What went wrong, each in a line, with the exchange that showed it first.
using Wrongs = std::map<std::string, std::string>;

void compare(const Told& right, const Told& told, const std::string& operation, nsresult fault,
             std::vector<std::string>& wrongs) {
    const bool noExtraData = kBuildsExtraData.contains(operation) && !hasExtraData(told);
    for (const auto& [name, text] : right.texts)
        if (!told.texts.contains(name) && !mayLack(name, operation) && !(noExtraData && isExtra(name)))
            wrongs.push_back(name + " is gone");
    for (const auto& [name, text] : told.texts)
        if (text != right.text(name) && !mayDiffer(name, operation, fault))
            wrongs.push_back(
                std::string(name).append(" is ").append(text).append(", not ").append(right.text(name)));
    if (told.flags != right.flags && !(told.flags == kBodyNotCaptured && mayLack("postData", operation)))
        wrongs.push_back("flags are " + std::to_string(told.flags));
}

/// How an exchange ended for the user.
struct Ending {
    bool leftBrowser;  // cancelled there, or its redirect led away
    std::vector<Told> told;
};

Ending endingOf(Browser& browser, HookedSystem& system, Channel& channel) {
    browser.finishes(channel);
    Ending ending{channel.cancelled() || !channel.written.empty(), system.takesTold()};
    browser.sweeps();  // the next channel may get this one's address
    return ending;
}

std::vector<std::string> wrongsOf(const Ending& clean, const Ending& ending, const std::string& operation,
                                  nsresult fault) {
    std::vector<std::string> wrongs;
    if (ending.told.empty()) {
        if (ending.leftBrowser) wrongs.push_back("the download is lost");
        return wrongs;
    }
    if (ending.told.size() > clean.told.size()) return {"more is transferred"};
    if (!ending.leftBrowser && !kBehindTheTransfer.contains(operation))
        wrongs.push_back("it is downloaded twice");
    compare(clean.told[0], ending.told[0], operation, fault, wrongs);
    return wrongs;
}

/// Exchanges of one shape take the same way through the module, so one of them is walked; none is when it has
/// no shape. Under Wine those of the system's own calls: the same for each that is handed over with a body.
std::string shapeOf(const zabprobe::Exchange& exchange) {
    constexpr std::string_view kRead[] = {"content-type",     "content-disposition",
                                          "content-length",   "content-range",
                                          "content-encoding", "location",
                                          "referer",          "cookie",
                                          "authorization"};
    GivenSettings settings;
    settings.extensionList = kCaught;
    CapturedHeaders scratch;
    const Decision decision = zabprobe::decideExchange(exchange, settings, scratch);
#ifdef _WIN32
    if (exchange.bodySize <= 0 || decision.outcome != Outcome::transfer) return {};
#endif
    std::string shape = exchange.method + std::to_string(exchange.status) + sentenceOf(decision);
    for (const auto& headers : {exchange.requestHeaders, exchange.responseHeaders})
        for (const auto name : kRead)
            shape += std::ranges::any_of(
                         headers, [&](const Header& header) { return equalsIgnoringCase(header.first, name); })
                         ? '1'
                         : '0';
    return shape;
}

/// Gives how many faults there were.
std::uint32_t walk(const zabprobe::Exchange& exchange, nsresult fault, Wrongs& all) {
    Browser browser;
    HookedSystem system(browser);
    browser.startsUp();
    auto& page = browser.opensPage("http://127.0.0.1:8080/", u"The test site");
    browser.cookies = {{.name = "theme", .value = "dark", .host = "127.0.0.1"}};
    const Ending clean = endingOf(browser, system, play(browser, exchange, &page));
    for (std::uint32_t n = 1;; ++n) {
        browser.faults().failNth(n, {}, fault);
        Channel& channel = play(browser, exchange, &page);
        const std::string operation = browser.faults().failedOperation();
        std::vector<std::string> wrongs{system.unbalanced()};
        const bool reached = browser.faults().reached();
        browser.faults().none();
        const Ending ending = endingOf(browser, system, channel);
        wrongs.push_back(browser.unbalanced());
        std::ranges::move(wrongsOf(clean, ending, operation, fault), std::back_inserter(wrongs));
        std::ranges::copy(browser.violations(), std::back_inserter(wrongs));
        for (const auto& wrong : wrongs)
            if (!wrong.empty())
                all.try_emplace(std::string(operation).append(" fails: ").append(wrong), exchange.url);
        if (!reached) return n - 1;
    }
}

void walkAllShapes(nsresult fault) {
    SettingsTree settings;
    settings.set("Extensions", kCaught);
    std::set<std::string> shapes{""};
    std::uint32_t faults = 0;
    Wrongs wrongs;
    for (const auto& exchange : recordedExchanges(""))
        if (shapes.insert(shapeOf(exchange)).second) faults += walk(exchange, fault, wrongs);
    for (const auto& [wrong, url] : wrongs) ADD_FAILURE() << wrong << " (" << url << ")";
    EXPECT_GT(faults, 100 * (shapes.size() - 1)) << "in each of them";
    EXPECT_GT(shapes.size(), 1u);
}

TEST(FaultWalk, NoFaultOfAnExchangeLosesItsDownload) { walkAllShapes(kFails); }

TEST(FaultWalk, NoEmptySuccessLosesADownload) { walkAllShapes(kDoesNothing); }

constexpr HookedImport kHeap[] = {
    {"malloc"}, {"calloc", 0, nullptr, "malloc"}, {"realloc", 0, nullptr, "malloc"}};

/// Each with a module of its own, for which the exchange is the first.
TEST(AllocationFaults, LeaveTheDownloadWithTheBrowser) {
    SettingsTree settings;
    settings.set("Extensions", kCaught);
    for (const bool lasts : {false, true}) {
        std::uint32_t faults = 0;
        for (bool reached = true; reached; ++faults) {
            SoundBrowser browser{{.debuggerPresent = false}};
            HookedSystem system(browser);
            const ImportHook heap(browser, kHeap);
            browser.startsUp();
            browser.cookies = {{.name = "theme", .value = "dark", .host = "h.example"}};
            const Request request{.url = "http://h.example/a.zip",
                                  .method = "POST",
                                  .headers = {{"Cookie", "a=b"}, {"Authorization", "Basic YTpi"}},
                                  .page = &browser.opensPage("http://h.example/"),
                                  .upload = Upload{.bytes = "a=b"}};
            lasts ? browser.faults().failFrom(faults + 1, "malloc")
                  : browser.faults().failNth(faults + 1, "malloc");
            auto& channel = browser.requests(request);
            browser.answers(channel, 200, kZip);
            reached = browser.faults().reached();
            browser.faults().none();
            browser.finishes(channel);
            EXPECT_EQ(channel.cancelled(), system.takesTold().size() == 1) << faults;
            EXPECT_EQ(system.unbalanced(), "") << faults;
        }
        EXPECT_GT(faults, 40u);
    }
}

TEST(StartUpFaults, StopNeitherTheBrowserNorTheNextDownload) {
    bool reached = true;
    std::uint32_t faults = 0, caught = 0;
    for (; reached; ++faults) {
        SettingsTree settings;
        settings.set("Extensions", kCaught);
        Browser browser;
        HookedSystem system(browser);
        browser.faults().failNth(faults + 1);
        browser.startsUp();
        auto& window = browser.opensWindow();
        auto& first = browser.clicks("http://h.example/a.zip");
        browser.answers(first, 200);
        reached = browser.faults().reached();
        const std::string where = browser.faults().failedOperation();
        browser.faults().none();
        browser.closesWindow(window);
        auto& second = browser.clicks("http://h.example/b.zip");
        browser.answers(second, 200);
        browser.finishes(first);
        browser.finishes(second);
        caught += second.cancelled();
        EXPECT_EQ(browser.violations(), std::vector<std::string>{}) << where;
    }
    EXPECT_GT(faults, 50u);
    EXPECT_GT(caught, faults / 2) << "most faults are of the moment";
}

}  // namespace
}  // namespace zab::testbed
