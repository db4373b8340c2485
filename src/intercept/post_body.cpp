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

/// Where a stream stands, and the way back from there.
struct Position {
    InterfacePtr<nsISeekableStream> stream;
    std::int64_t sent = 0;  // bytes that were read from it

    bool windBack() const noexcept { return !failed(stream->Seek(nsISeekableStream::kSeekSet, 0)); }
};

/// Nothing for a stream that cannot be wound back: what is read of it, the browser cannot send any more.
std::optional<Position> positionOf(nsISupports* stream) noexcept {
    Position position{
        queryEither<nsISeekableStream>(stream, nsISeekableStream::kIID, nsISeekableStream::kIIDBefore17)};
    if (!position.stream || failed(position.stream->Tell(&position.sent))) return std::nullopt;
    return position;
}

CapturedPost notCaptured() {
    CapturedPost post;
    post.unavailable = true;
    return post;
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
    if (count > kLargestPostBody) return notCaptured();
    CapturedPost post;
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
    const auto position = positionOf(stream.get());
    if (!position) return notCaptured();
    auto count = available(*stream.get());
    if (count == 0) {
        if (position->sent > static_cast<std::int64_t>(kLargestPostBody)) return notCaptured();
        if (!position->windBack()) return {};
        count = available(*stream.get());
    }
    return count.value_or(0) == 0 ? CapturedPost{} : readBody(*stream.get(), *count);
}

CapturedPost CapturePostBodyForRequest(iZABHelper5& helper, nsISupports* channel, std::string_view url) {
    const auto stream = uploadStream(helper, channel);
    if (!stream) return {};
    const auto position = positionOf(stream.get());
    if (!position) return notCaptured();
    CapturedPost post;
    if (const auto count = available(*stream.get()).value_or(0); count != 0) {
        post = readBody(*stream.get(), count);
        if (!post.unavailable) position->windBack();
    }
    if (post.body.empty() && isOnStorageHost(url)) post.unavailable = true;
    return post;
}

}  // namespace zab
