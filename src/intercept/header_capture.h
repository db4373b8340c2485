// What the headers of one HTTP exchange say, gathered header by header, and the parts of a POST stream.
//
// One record serves every examination in turn: visiting writes the fields that a header names and clears none,
// so whoever begins an examination clears the record first. Texts are narrow, bytes as the browser gives them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

struct CapturedHeaders {
    bool visitRequestHeaders = false;  // which headers are walked: the request's, or the response's
    bool isAttachment = false;
    bool lengthFromRange = false;  // `contentLength` is the total of Content-Range and stays
    bool isInline = false;         // "inline" stands before any file name
    bool isGzip = false;
    bool isEncoded = false;  // by any content coding, gzip among them: the length is not that of the file
    bool postBodyUnavailable = false;  // there is a POST body and it could not be captured
    std::string url;
    std::string referer;
    std::string cookie;
    std::string authorization;  // of the Basic scheme only, the whole value
    std::string userAgent;
    std::string fileName;            // of Content-Disposition; "utf-8''" before a name that is UTF-8
    std::string contentTypeName;     // the "name" parameter of Content-Type
    std::string contentType;         // up to its first ";"
    std::int64_t contentLength = 0;  // bytes; 0: not told
    std::string postContentType;

    /// For the next examination. Keeps the memory of texts of ordinary length, so that an examination of an
    /// ordinary response allocates nothing.
    void clear() noexcept;
};

/// Takes one header of the exchange. Name and value end at their first NUL.
void visitHeader(CapturedHeaders& record, std::string_view name, std::string_view value);

/// Larger POST bodies are not captured (bytes).
inline constexpr std::uint64_t kLargestPostBody = 50'000;

/// An upload stream: its own header block, when it has one, and the body proper. Views into the stream.
struct PostStream {
    bool hasHeaderBlock = false;
    std::string_view body;         // all of the stream when it has no header block
    std::string_view contentType;  // whole, with its parameters
};
PostStream splitPostStream(std::string_view bytes) noexcept;

/// Whether a request whose POST body could not be read goes to the storage service whose uploads never can.
bool isOnStorageHost(std::string_view url) noexcept;

}  // namespace zab
