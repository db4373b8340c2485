// Whether, and how, a page may offer media of one type: what the user set for the download panel.
//
// Registry values in, an answer out; reading them is the edge's work. They are read anew for each entry, so a
// change takes effect with the next one. Texts are narrow.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "media/capture/media_display.h"
#include "settings/exception_servers.h"

namespace zab {

/// The panel's settings as they stand for one extension.
struct PanelValues {
    bool keyOpen = false;               // without the panel's key there is none of the values below
    bool everyType = false;             // each type is offered, whatever else is set
    std::optional<std::uint32_t> type;  // what is set for the extension; absent: the built-in list decides
    std::uint32_t minimumSize = 0;      // bytes, of the extension's files
    std::uint32_t captureWithoutPanel = 0;
    CExceptionServersList exceptedPages;
};

/// The name of an extension's value; nothing for an extension that can have none.
std::optional<std::string> panelValueName(std::string_view extension);

struct PanelGate {
    bool refused = false;           // media of this type is not offered
    bool excepted = false;          // the page is one on which the user wants no panel
    std::uint32_t captureFlag = 0;  // 1: taken down without showing anything
    std::uint32_t minimumSize = 0;  // bytes
    bool operator==(const PanelGate&) const = default;
};

PanelGate panelGate(std::string_view pageUrl, std::string_view extension, const PanelValues& values) noexcept;

/// `size` in bytes; 0: unknown.
constexpr EntryFate fateOf(const PanelGate& gate, std::uint64_t size) noexcept {
    if (gate.refused || (size != 0 && size < gate.minimumSize)) return EntryFate::dropped;
    if (gate.captureFlag == 1) return EntryFate::kept;
    return gate.excepted ? EntryFate::dropped : EntryFate::shown;
}

/// The same by the settings as they stand now. Any thread.
EntryFate entryFate(std::string_view pageUrl, std::string_view extension, std::uint64_t size);

}  // namespace zab
