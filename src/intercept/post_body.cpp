#include "intercept/post_body.h"

#include <algorithm>
#include <optional>

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/streams.h"
#include "binding/text.h"
#include "binding/upload_channel.h"
#include "intercept/header_capture.h"

namespace zab {
namespace {

template <class Stream>
InterfacePtr<Stream> queryEither(nsISupports* object, const nsIID& first, const nsIID& second) noexcept {
    auto stream = query<Stream>(object, first);
    return stream ? std::move(stream) : query<Stream>(object, second);
}

InterfacePtr<nsISeekableStream> seekable(nsISupports* stream) noexcept {
    return queryEither<nsISeekableStream>(stream, nsISeekableStream::kIID, nsISeekableStream::kIIDBefore17);
}

bool isPost(iZABHelper5& helper, nsISupports* channel) {
    NarrowContainer method;
    return method.ready() && !failed(helper.GetRequestMethod(channel, method.get())) &&
           equalsIgnoringCase(method.view(), "POST");
}

/// The upload stream of a POST request; nothing for every other request.
InterfacePtr<nsIInputStream> uploadStream(iZABHelper5& helper, nsISupports* channel) {
    if (!isPost(helper, channel)) return {};
    const auto upload = GetUploadChannel(channel);
    if (!upload) return {};
    nsISupports* raw = nullptr;
    if (failed(upload->GetUploadStream(&raw))) return {};
    const InterfacePtr<nsISupports> stream(raw);
    return queryEither<nsIInputStream>(stream.get(), nsIInputStream::kIID, nsIInputStream::kIID17);
}

/// Bytes that the stream says it has; nothing when it cannot say.
std::optional<std::uint64_t> available(nsIInputStream& stream) noexcept {
    std::uint64_t count = 0;
    if (failed(stream.Available(&count))) return std::nullopt;
    return count;
}

/// Reads what the stream says it has. A stream may say more or less than it gives; what it gives counts.
CapturedPost readBody(nsIInputStream& stream, std::uint64_t count) {
    CapturedPost post;
    if (count > kLargestPostBody) {
        post.unavailable = true;
        return post;
    }
    std::string buffer(static_cast<std::size_t>(count), '\0');
    std::uint32_t bytesRead = 0;
    if (failed(stream.Read(buffer.data(), static_cast<std::uint32_t>(count), &bytesRead))) return post;
    buffer.resize(std::min<std::size_t>(bytesRead, buffer.size()));
    const PostStream parts = splitPostStream(buffer);
    post.contentType = parts.contentType;
    post.body = parts.body;
    return post;
}

}  // namespace

CapturedPost CapturePostBodyForResponse(iZABHelper5& helper, nsISupports* channel) {
    const auto stream = uploadStream(helper, channel);
    if (!stream) return {};
    auto count = available(*stream.get());
    if (count == 0) {
        const auto position = seekable(stream.get());
        std::int64_t sent = 0;
        if (!position || failed(position->Tell(&sent))) return {};
        if (sent > static_cast<std::int64_t>(kLargestPostBody))
            return {.body = {}, .contentType = {}, .unavailable = true};
        if (failed(position->Seek(nsISeekableStream::kSeekSet, 0))) return {};
        count = available(*stream.get());
    }
    return count.value_or(0) == 0 ? CapturedPost{} : readBody(*stream.get(), *count);
}

CapturedPost CapturePostBodyForRequest(iZABHelper5& helper, nsISupports* channel, std::string_view url) {
    const auto stream = uploadStream(helper, channel);
    if (!stream) return {};
    CapturedPost post;
    if (const auto count = available(*stream.get()).value_or(0); count != 0) {
        post = readBody(*stream.get(), count);
        const auto position = post.unavailable ? InterfacePtr<nsISeekableStream>{} : seekable(stream.get());
        if (position) position->Seek(nsISeekableStream::kSeekSet, 0);
    }
    if (post.body.empty() && isOnStorageHost(url)) post.unavailable = true;
    return post;
}

}  // namespace zab
