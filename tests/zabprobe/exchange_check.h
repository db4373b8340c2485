// What holds for every text that claims to be exchanges or a capture; for the fuzz target.
#pragma once

#include <stdexcept>
#include <string_view>

#include "media/parsers/must.h"
#include "zabprobe/exchange_reader.h"

namespace zabtest {

inline void checkExchanges(std::string_view text) {
    zab::GivenSettings settings;
    settings.extensionList = "zip";
    settings.integration = false;
    zab::CapturedHeaders scratch;
    const auto decide = [&](const zabprobe::Exchange& exchange) {
        const zab::Decision decision = zabprobe::decideExchange(exchange, settings, scratch);
        must(decision.outcome != zab::Outcome::transfer);  // the integration is off
        must(!zab::sentenceOf(decision).empty());
    };
    for (const auto visit : {zabprobe::visitExchanges, zabprobe::visitHarEntries}) {
        try {
            visit(text, decide);
        } catch (const std::runtime_error&) {  // no JSON
        }
    }
}

}  // namespace zabtest
