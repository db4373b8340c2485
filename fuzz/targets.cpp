#include "fuzz/targets.h"

#include <string>

#include "intercept/intercept_check.h"
#include "media/capture/capture_check.h"
#include "media/parsers/dash_check.h"
#include "media/parsers/hds_check.h"
#include "media/parsers/hls_check.h"
#include "media/parsers/mp4_check.h"
#include "media/parsers/site_checks.h"
#include "media/parsers/tag_scanner_check.h"
#include "scenarios/any_order.h"
#include "settings/data_file_check.h"
#include "settings/language_file_check.h"
#include "ui/media_request_check.h"
#include "web/encoding_check.h"
#include "web/html_check.h"
#include "zabprobe/exchange_check.h"

namespace zabfuzz {
namespace {

using namespace zabtest;

/// A check that takes numbers.
template <auto kCheck>
void onBytes(std::string_view bytes) {
    kCheck({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

/// A day in the stand-in browser.
void checkAnyOrder(std::string_view bytes) {
    const std::string faults =
        zab::testbed::faultsOfAnyOrder({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    if (!faults.empty()) throw ClaimFailed(faults);
}

constexpr Target kTargets[] = {
    {"any_order", checkAnyOrder},
    {"capture", checkCapture},
    {"dash", checkDash},
    {"data_file", onBytes<checkDataFile>},
    {"decide", checkDecide},
    {"encoding", checkEncoding},
    {"facebook", checkSite<facebookEntries>},
    {"har", checkExchanges},
    {"hds", checkHds},
    {"header_line", checkHeaderLine},
    {"header_visitor", checkHeaderVisitor},
    {"hls", checkHls},
    {"html", checkHtml},
    {"language_file", checkLanguageFile},
    {"media_request", onBytes<checkMediaRequest>},
    {"mp4", onBytes<checkMp4>},
    {"same_stream", checkSameStream},
    {"script_links", checkScriptLinks},
    {"tag_scanner", checkTagScanner},
    {"url", checkUrl},
    {"vimeo", checkSite<vimeoRenditions>},
    {"youtube", checkYoutube},
};

}  // namespace

std::span<const Target> targets() noexcept { return kTargets; }

}  // namespace zabfuzz
