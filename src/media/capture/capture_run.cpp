#include "media/capture/capture_run.h"

#include "binding/text.h"
#include "intercept/url.h"
#include "media/capture/descriptions.h"

namespace zab {

MediaEntry CaptureRun::plainEntry(std::string link) const {
    MediaEntry plain = entry();
    plain.description = fileNameOf(link);
    if (plain.description.empty()) plain.description = context_.page.title;
    plain.extension = lowered(extensionOf(lastSegmentOf(link)));
    plain.kind = entryKindOf(plain.extension);
    plain.link = std::move(link);
    return plain;
}

}  // namespace zab
