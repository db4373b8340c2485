// The extensions of files that are media by themselves.
#pragma once

#include <string_view>

#include "binding/text.h"

namespace zab {

inline constexpr std::string_view kMediaExtensions[] = {
    "3gp", "aac", "asf", "avi", "flv", "m4a", "m4v",  "mkv", "mov", "mp3",  "mp4", "mpe", "mpeg",
    "mpg", "mpa", "ogg", "ogv", "ra",  "rm",  "rmvb", "ts",  "wav", "webm", "wma", "wmv",
};

constexpr bool isMediaExtension(std::string_view extension) noexcept {
    return isOneOfIgnoringCase(extension, kMediaExtensions);
}

}  // namespace zab
