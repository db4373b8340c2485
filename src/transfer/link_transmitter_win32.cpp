#include "transfer/link_transmitter_win32.h"

#include <string>
#include <string_view>

#include "binding/browser_text_win32.h"
#include "binding/browser_thread.h"
#include "binding/guard.h"
#include "binding/text.h"
#include "transfer/extra_data.h"
#include "transfer/failure_report.h"
#include "transfer/failure_report_win32.h"
#include "transfer/local_copy_win32.h"
#include "web/url.h"

namespace zab {
namespace {

std::string_view textOf(const char* text) noexcept { return text == nullptr ? std::string_view{} : text; }

/// Null for an empty text. Throws when the text cannot be converted: half a download is none.
Bstr optionalBstr(std::string_view text) {
    if (text.empty()) return {};
    const auto converted = utf16FromNarrow(text, kAnsiCodePage);
    if (!converted) throw std::bad_alloc{};
    return bstrOf(*converted);
}

/// What the server's method takes as text.
struct MethodTexts {
    Bstr url, referrer, cookies, postData, user, password, fileName;
};

/// Elements without a value stay null in the array. Nothing when there is no memory for all of it.
SafeArray safeArrayOf(const TransferExtraData& elements) noexcept {
    return guarded(SafeArray{}, [&] {
        SAFEARRAYBOUND bounds{static_cast<ULONG>(elements.size()), 0};
        SafeArray array(SafeArrayCreate(VT_BSTR, 1, &bounds));
        for (LONG i = 0; array && i < static_cast<LONG>(elements.size()); ++i) {
            const auto& element = elements[static_cast<std::size_t>(i)];
            if (!element) continue;  // putting a null would make an empty text of it on some systems
            const Bstr text = element->empty() ? bstrOf({}) : optionalBstr(*element);
            if (FAILED(SafeArrayPutElement(array.get(), &i, text.get()))) return SafeArray{};
        }
        return array;
    });
}

/// Everything that the call needs is copied before it, since the browser goes on running during it.
HRESULT call(LinkTransmitterSession& session, const MethodTexts& texts, std::uint32_t flags,
             ExtraDataSource& source) {
    const HRESULT connected = session.connect();
    if (FAILED(connected)) return connected;
    source.page = session.access().of(source.pageUrl);
    source.second = session.access().of(source.secondUrl);
    const SafeArray array = safeArrayOf(extraDataOf(source));

    VARIANT extraData{};  // does not own: `array` does
    if (array) {
        extraData.vt = VT_ARRAY | VT_BSTR;
        extraData.parray = array.get();
    }
    VARIANT reserved{};
    const HRESULT answer = session.server()->SendLinkToZab(
        texts.url.get(), texts.referrer.get(), texts.cookies.get(), texts.postData.get(), texts.user.get(),
        texts.password.get(), nullptr, texts.fileName.get(), static_cast<LONG>(flags), &extraData, &reserved);
    if (!isTransportFailure(static_cast<std::uint32_t>(answer))) return S_OK;
    session.forgetServer();
    return answer;
}

}  // namespace

HRESULT LinkTransmitterSession::connect() noexcept {
    if (server_) return S_OK;
    if (!apartment_) apartment_.emplace();
    void* given = nullptr;
    const HRESULT status =
        CoCreateInstance(kLinkTransmitterClass, nullptr, CLSCTX_LOCAL_SERVER, ILinkTransmitter::kIID, &given);
    if (FAILED(status)) return status;
    server_.reset(static_cast<ILinkTransmitter*>(given));
    return server_ ? S_OK : E_NOINTERFACE;
}

bool SendToLinkTransmitter(const char* url, const char* cookies, const char* user, const char* password,
                           const char* referrer, const char* userAgent, const char* fileName,
                           const char* postData, std::int32_t postLength, const char* postContentType,
                           const char* typeHint, const char* pageTitle, std::int32_t bodyOffered,
                           std::uint64_t sizeBytes, std::int32_t, std::uint32_t flags, const char* contentType,
                           const char* pageUrl, const char* secondUrl, const char* extraData,
                           std::int32_t extraDataGiven, const char* description, std::int32_t* retryLater,
                           LinkTransmitterSession* session) {
    if (retryLater != nullptr) *retryLater = 0;
    if (url == nullptr) return false;
    return guarded(false, [&] {
        const std::string_view address = withoutFragment(url);
        const bool posts = postData != nullptr && postLength > 0;
        const MethodTexts texts{
            .url = address.empty() ? bstrOf({}) : optionalBstr(address),
            .referrer = optionalBstr(textOf(referrer)),
            .cookies = optionalBstr(textOf(cookies)),
            .postData = posts ? optionalBstr({postData, static_cast<std::size_t>(postLength)}) : Bstr{},
            .user = optionalBstr(textOf(user)),
            .password = optionalBstr(textOf(password)),
            .fileName = optionalBstr(textOf(fileName)),
        };
        const bool looksForCopy = bodyOffered == 1 && onBrowserThread();
        const std::string bodyFile = looksForCopy ? localCopyOf(address, sizeBytes) : std::string{};
        ExtraDataSource source{
            .userAgent = textOf(userAgent),
            .bodyFile = bodyFile,
            .pageTitle = textOf(pageTitle),
            .typeHint = textOf(typeHint),
            .postContentType = textOf(postContentType),
            .postGiven = postData != nullptr,
            .contentType = textOf(contentType),
            .sizeBytes = sizeBytes,
            .pageUrl = textOf(pageUrl),
            .page = {},
            .secondUrl = textOf(secondUrl),
            .second = {},
            .extraData = textOf(extraData),
            .extraDataGiven = extraDataGiven != 0,
            .description = textOf(description),
        };

        LinkTransmitterSession own;
        const HRESULT status = call(session != nullptr ? *session : own, texts, flags, source);
        if (SUCCEEDED(status)) return true;
        if (status == RPC_E_CANTCALLOUT_ININPUTSYNCCALL && retryLater != nullptr) {
            *retryLater = 1;
        } else {
            startTransferFailureReport(static_cast<std::uint32_t>(status));
        }
        return false;
    });
}

}  // namespace zab
