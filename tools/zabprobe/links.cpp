// Commands about whole pages: which links the module would offer.

#include "intercept/file_judge.h"
#include "web/html_parser.h"
#include "zabprobe/command.h"
#include "zabprobe/text_json.h"

namespace zabprobe {
namespace {

// In the order of LinkSource.
constexpr const char* kSourceNames[] = {"link", "script", "media"};

// In the order of LinkReason.
constexpr const char* kReasons[] = {"in the catch list", "a media file", "a link of the text", "in a script",
                                    "a part of the page"};

constexpr Option kOptions[] = {
    kFile,
    {"--base", "The page's own address", &Arguments::url},
    kExtensions,
    {"--explain", "A table for people, with the reasons, in place of the JSON", &Arguments::explain},
};

std::string tableOf(const zab::CHTMLParser& page) {
    std::string table;
    for (const zab::PageLink& link : page.links()) {
        const std::string reason = kReasons[static_cast<std::size_t>(link.reason)];
        table += std::to_string(zab::rankOf(link.reason) + 1) + "  " + reason +
                 std::string(20 - reason.size(), ' ') + link.url;
        if (!link.text.empty()) table += "  [" + link.text + "]";
        table += '\n';
    }
    return table + std::to_string(page.links().count()) + " links, " + std::to_string(page.leftOut()) +
           " left out\n";
}

Answer runLinks(const Arguments& arguments) {
    zab::GivenSettings settings;
    settings.extensionList = arguments.extensions;
    zab::CHTMLParser page(arguments.url, arguments.url, zab::fileJudgeOf(settings));
    page.feed(arguments.bytes());
    page.finish();
    Json all = Json::array();
    for (const zab::PageLink& link : page.links())
        all.push_back({{"url", asJson(link.url)},
                       {"text", asJson(link.text)},
                       {"source", kSourceNames[static_cast<std::size_t>(link.source)]}});
    return {page.links().count() > 0, std::move(all),
            arguments.explain ? std::optional(tableOf(page)) : std::nullopt};
}

constexpr Command kCommands[] = {
    {"links", "Links, media sources and script addresses of an HTML page", kOptions, runLinks},
};

}  // namespace

std::span<const Command> pageCommands() { return kCommands; }

}  // namespace zabprobe
