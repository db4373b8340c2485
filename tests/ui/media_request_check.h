// What holds for every media request, whatever its bytes, and how one is written.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/must.h"
#include "ui/media_request.h"

namespace zabtest {

/// One item of a payload. The byte without meaning is not 0.
inline std::string requestItem(std::uint8_t tag, std::u16string_view text) {
    const std::size_t size = text.size() * 2;
    std::string item{static_cast<char>(tag), static_cast<char>(size & 0xFF), static_cast<char>(size >> 8),
                     '\x7F'};
    for (const char16_t unit : text) {
        item.push_back(static_cast<char>(unit & 0xFF));
        item.push_back(static_cast<char>(unit >> 8));
    }
    return item;
}

inline constexpr std::u16string zab::MediaRequest::*kRequestFields[] = {
    &zab::MediaRequest::mediaUrl,     &zab::MediaRequest::pageUrl,  &zab::MediaRequest::description,
    &zab::MediaRequest::streamName,   &zab::MediaRequest::referrer, &zab::MediaRequest::cookies,
    &zab::MediaRequest::pageIdentity, &zab::MediaRequest::extension};
inline zab::Bytes bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline void checkMediaRequest(zab::Bytes payload) {
    const zab::MediaRequest request = zab::decodeMediaRequest(payload);
    for (const auto field : kRequestFields) must((request.*field).find(u'\0') == std::u16string::npos);
}

}  // namespace zabtest
