#include "ui/media_request.h"

#include <optional>

#include "binding/text.h"
#include "binding/utf.h"
#include "page/media_entry.h"

namespace zab {
namespace {

struct FieldTag {
    std::uint8_t tag;
    std::u16string MediaRequest::*field;
};

constexpr FieldTag kFieldTags[] = {
    {3, &MediaRequest::extension},     {30, &MediaRequest::mediaUrl},    {31, &MediaRequest::pageUrl},
    {32, &MediaRequest::pageIdentity}, {33, &MediaRequest::streamName},  {34, &MediaRequest::cookies},
    {35, &MediaRequest::referrer},     {36, &MediaRequest::description},
};

constexpr std::u16string_view kAudioStream = u"mp3:";

/// What stands behind it is the address, without its scheme.
constexpr std::string_view kImportMarker = "/[[IMPORT]]/";
/// What stands before it is the address.
constexpr std::string_view kDynamicMarker = "/[[DYNAMIC]]/";

struct Item {
    std::uint8_t tag;
    Bytes value;
};

std::optional<Item> nextItem(ByteReader& payload) {
    const auto tag = payload.u8();
    const auto length = payload.u16le();
    payload.skip(1);
    if (!tag || !length) return std::nullopt;
    const auto value = payload.take(*length);
    if (!value) return std::nullopt;
    return Item{*tag, *value};
}

std::u16string textOf(Bytes value) {
    std::u16string text;
    text.reserve(value.size() / 2);
    ByteReader units(value);
    while (const auto unit = units.u16le()) {
        if (*unit == 0) break;
        text.push_back(static_cast<char16_t>(*unit));
    }
    return text;
}

}  // namespace

MediaRequest decodeMediaRequest(Bytes payload) {
    MediaRequest request;
    request.extension = u"flv";
    ByteReader reader(payload);
    while (const auto item = nextItem(reader)) {
        if (item->value.empty()) continue;
        for (const FieldTag& row : kFieldTags)
            if (row.tag == item->tag) request.*row.field = textOf(item->value);
    }
    return request;
}

std::vector<std::string> addressesOf(std::string_view mediaUrl) {
    std::vector<std::string> addresses{std::string(mediaUrl)};
    if (const auto at = mediaUrl.find(kImportMarker); at != std::string_view::npos)
        addresses.push_back(std::string("http://").append(mediaUrl.substr(at + kImportMarker.size())));
    if (const auto at = mediaUrl.find(kDynamicMarker); at != std::string_view::npos)
        addresses.emplace_back(mediaUrl.substr(0, at));
    return addresses;
}

ObjectKind requestedKind(const MediaRequest& request) {
    if (request.streamName.starts_with(kAudioStream)) return ObjectKind::audio;
    const std::string extension = utf8FromUtf16(request.extension);
    // Deliberate: the panel asks for an M4A as for a film. Held by MediaChoice.AudioIsTold.
    return isAudioExtension(extension) && !equalsIgnoringCase(extension, "m4a") ? ObjectKind::audio
                                                                                : ObjectKind::video;
}

}  // namespace zab
