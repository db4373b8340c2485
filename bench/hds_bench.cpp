#include "bench/bench.h"
#include "binding/interface_ptr.h"
#include "media/parsers/hds.h"

namespace {

using zabbench::repeated;

std::function<void()> parseManifest(const std::string& body) {
    return [&body] { zab::InterfacePtr<zab::CF4MParser>(new zab::CF4MParser)->parse(body); };
}

/// n renditions, each with a bootstrap box and metadata of the usual size.
std::string manifest(std::size_t n) {
    const std::string box(2'000, 'A');
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><manifest xmlns=\"http://ns.adobe.com/f4m/1.0\">"
           "<baseURL>http://media.example.com/video</baseURL><duration>3600.5</duration>" +
           repeated("<bootstrapInfo profile=\"named\" id=\"bootstrap%\">" + box +
                        "</bootstrapInfo><media streamId=\"video%\" url=\"video_%_\" "
                        "bootstrapInfoId=\"bootstrap%\" bitrate=\"%\">"
                        "<metadata>AgAKb25NZXRhRGF0YQgAAAAAAAhkdXJhdGlvbgBArCEAAAAAAAAGaGVpZ2h0AECGgAAAAAAA</"
                        "metadata></media>",
                    n) +
           "</manifest>";
}

constexpr const char* kBootstrap = "<bootstrapInfo id=b>A</bootstrapInfo>";
constexpr const char* kMetadata =
    "<metadata>AgAKb25NZXRhRGF0YQgAAAAAAAhkdXJhdGlvbgBArCEAAAAAAAAGaGVpZ2h0AECGgAAAAAAA";

std::string equalHeights(std::size_t n) { return kBootstrap + repeated("<media height=720 />", n); }
std::string unclosedMedia(std::size_t n) {
    return kBootstrap + repeated("<media a ", n) + kMetadata + std::string(20 * n, 'A') + "</metadata>";
}
std::string nestedMetadata(std::size_t n) {
    return kBootstrap + repeated(std::string("<media a ") + kMetadata, n) + "</metadata>";
}
std::string distinctIds(std::size_t n) {
    return repeated("<bootstrapInfo id=%>", n) + "</bootstrapInfo>" + repeated("<media bootstrapInfoId=% >", n);
}
std::string listsThroughEachOther(std::size_t n) { return kBootstrap + repeated("<media url='1' a=' b=", n); }

const zabbench::Case kCases[] = {
    {"hds", "manifest", manifest, 20, parseManifest},
    {"hds", "equal heights", equalHeights, 20'000, parseManifest},
    {"hds", "unclosed media", unclosedMedia, 20'000, parseManifest},
    {"hds", "nested metadata", nestedMetadata, 10'000, parseManifest},
    {"hds", "distinct ids", distinctIds, 20'000, parseManifest},
    {"hds", "lists through each other", listsThroughEachOther, 40'000, parseManifest},
};

}  // namespace
