// A media request: what the button library, the panel or another process asks the module to transfer.
//
// It comes as a row of items: a tag (u8), the length of the value in bytes (u16, little-endian), a byte without
// meaning, then the value, UTF-16LE without terminator. What is asked for is named by an address, which need
// not be one that the browser knows: two markers in it stand for others.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binding/byte_reader.h"
#include "page/object_requests.h"

namespace zab {

struct MediaRequest {
    std::u16string mediaUrl;
    std::u16string pageUrl;
    std::u16string description;
    std::u16string streamName;
    std::u16string referrer;
    std::u16string cookies;
    std::u16string pageIdentity;  // the document ID, decimal
    std::u16string extension;     // without dot; "flv" when the payload does not tell it
    ObjectKind kind = ObjectKind::unknown;
};

/// Reads to the end, or up to the first item that claims more than there is. An item without a value and an
/// unknown tag are skipped; of a repeated tag the last counts. A text ends at its first NUL.
MediaRequest decodeMediaRequest(Bytes payload);

/// The addresses under which `mediaUrl` may be known, in the order in which they are tried.
std::vector<std::string> addressesOf(std::string_view mediaUrl);

/// By its extension or its stream's name.
ObjectKind requestedKind(const MediaRequest& request);

}  // namespace zab
