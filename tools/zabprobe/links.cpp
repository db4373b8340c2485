// Commands about whole pages: which links the module would offer.

#include "web/html_parser.h"
#include "zabprobe/command.h"
#include "zabprobe/text_json.h"

namespace zabprobe {
namespace {

// In the order of LinkSource.
constexpr const char* kSourceNames[] = {"link", "media", "script"};

void linksOptions(CLI::App& command, Arguments& arguments) {
    takesFile(command, arguments);
    command.add_option("--base", arguments.url, "The page's own address");
}

Answer runLinks(const Arguments& arguments) {
    zab::CLinksArray links;
    zab::harvestPage(arguments.bytes(), arguments.url, links);
    Json all = Json::array();
    for (const zab::PageLink& link : links)
        all.push_back({{"url", asJson(link.url)},
                       {"text", asJson(link.text)},
                       {"source", kSourceNames[static_cast<std::size_t>(link.source)]}});
    return {links.count() > 0, std::move(all)};
}

constexpr Command kCommands[] = {
    {"links", "Links, media sources and script addresses of an HTML page", linksOptions, runLinks},
};

}  // namespace

std::span<const Command> pageCommands() { return kCommands; }

}  // namespace zabprobe
