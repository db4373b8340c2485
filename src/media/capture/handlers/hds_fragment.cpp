// One fragment of an HDS stream whose manifest was not seen: a link with the pattern of its fragments' names.

#include "binding/text.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "page/media_entry.h"
#include "web/url.h"

namespace zab {

void offerHdsFragment(CaptureRun& run) {
    const std::string_view url = run.context().url;
    const std::string_view name = lastSegmentOf(url);
    const auto fragment = findHdsFragmentName(name);
    if (!fragment) return;
    const auto nameBegin = static_cast<std::size_t>(name.data() - url.data());
    const std::string_view before = url.substr(0, nameBegin + fragment->begin);
    const auto isKnown = [before](const OfferedMedia& media) {
        return media.streams().knowsFragmentsOf(before);
    };
    if (run.page().ask(isKnown)) return;
    run.page().change([before](OfferedMedia& media) { media.streams().addFragmentsOf(before); });

    MediaEntry entry = run.entry();
    entry.link = std::string(textOf(LinkScheme::hdsFragment))
                     .append(before)
                     .append(kHdsFragmentPattern)
                     .append(url.substr(nameBegin + fragment->end));
    entry.description = trimRight(percentDecoded(name.substr(0, fragment->begin)), "-_");
    if (entry.description.empty()) entry.description = entry.page.title;
    entry.extension = kFlvExtension;
    run.offer(std::move(entry));
}

}  // namespace zab
