// The body handlers: what a body of each kind offers.
//
// Each takes all that counts of a body and puts its entries into the page of the run, in the order of the body.
// A body that is not what its kind promises offers nothing. Texts end at their first NUL.
#pragma once

#include <string_view>

#include "intercept/kinds.h"
#include "media/capture/capture_run.h"

namespace zab {

void offerPage(std::string_view body, CaptureRun& run);
void offerLinkText(std::string_view body, CaptureRun& run);
void offerYouTubeVideoInfo(std::string_view body, CaptureRun& run);
void offerYouTubeWatchPage(std::string_view body, CaptureRun& run);
void offerFragmentManifest(std::string_view body, CaptureRun& run);
void offerHls(std::string_view body, CaptureRun& run);
void offerVimeo(std::string_view body, CaptureRun& run);
void offerHds(std::string_view body, CaptureRun& run);
void offerYouTubeDash(std::string_view body, CaptureRun& run);
void offerFacebook(std::string_view body, CaptureRun& run);

// These two ask a library of the download manager.
void offerDash(std::string_view body, CaptureRun& run);
void offerSniffed(std::string_view body, CaptureRun& run);

/// Tells the page where the segments of a DASH manifest lie.
void noteDashPlaces(std::string_view url, std::string_view body, PageStreams& streams);

/// Whether the response is a segment, or another part, of a stream that the page knows: no file of its own.
bool isPartOfStream(const CaptureRun& run);

/// The stream that a fragment belongs to, once its bytes were found to be playable.
void offerHdsFragment(CaptureRun& run);

/// A request of the video CDN for a part of a stream: marks the stream in the page's catalogues, or is an entry
/// when these do not know its video.
void offerPlayback(CaptureRun& run);

/// The response itself, a media file.
void offerOwnEntry(CaptureRun& run);

using BodyHandler = void (*)(std::string_view body, CaptureRun& run);

/// Null for the kinds that have no handler of whole bodies.
BodyHandler bodyHandlerOf(MediaKind kind) noexcept;

}  // namespace zab
