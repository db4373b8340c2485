// Entries of YouTube streams, whichever document names them.
#pragma once

#include <string_view>

#include "media/capture/capture_run.h"
#include "media/parsers/itags.h"
#include "page/media_entry.h"

namespace zab {

/// The stream at `address`, with the scheme of the pairing mode.
MediaEntry youtubeEntry(const CaptureRun& run, std::string_view address, const ItagDescription& itag);

}  // namespace zab
