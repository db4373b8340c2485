// Raw response-header lines: what one line, name and line end included, says about the body.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

struct ResponseHeaderInfo {
    std::string fileName;         // of Content-Disposition; "utf-8''" before a name that is UTF-8
    std::string contentTypeName;  // the "name" parameter of Content-Type, without quotes
    std::string contentType;      // up to its first ";"
    bool isAttachment = false;
    std::int64_t contentLength = 0;  // bytes; 0: not told
};

/// Reads one line into `info`; fields that the line does not speak of keep their values. The line ends at its
/// first NUL. False: none of the three headers that are read (content-length, Content-Disposition,
/// Content-Type; blanks may stand before the name).
bool ParseResponseHeaderLine(ResponseHeaderInfo& info, std::string_view line);

/// Reads a content length: nothing changes when no number begins there, a negative one counts as 0.
void scanContentLength(std::string_view text, std::int64_t& contentLength) noexcept;

}  // namespace zab
