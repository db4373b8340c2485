// The 19 texts that travel beside a transfer's own parameters, and from what each of them is made.
//
// An element without a value is absent, which the download manager tells from an empty one.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "web/encoding.h"

namespace zab {

/// Positions in the array, as the download manager reads them.
enum class ExtraElement : std::uint8_t {
    userAgent,
    bodyFile,  // path of the browser's own copy of the body
    pageTitle,
    typeHint,
    postContentType,
    contentType,
    size,  // decimal
    pageUrl,
    reserved,  // always there, always empty
    pageCookies,
    pageUser,
    pagePassword,
    secondUrl,
    extraData,
    secondCookies,
    secondUser,
    secondPassword,
    description,
    acceptLanguage,  // a header line; absent: the module knows no such value
    count
};

inline constexpr std::size_t kExtraElementCount = static_cast<std::size_t>(ExtraElement::count);
static_assert(kExtraElementCount == 19);

using TransferExtraData = std::array<std::optional<std::string>, kExtraElementCount>;

/// What the browser holds for an address, by which the download manager can ask for it as the browser would.
struct PageAccess {
    std::string cookies;
    std::optional<BasicCredentials> login;
};

/// Views are valid while the array is made.
struct ExtraDataSource {
    std::string_view userAgent;
    std::string_view bodyFile;
    std::string_view pageTitle;
    std::string_view typeHint;
    std::string_view postContentType;
    bool postGiven = false;
    std::string_view contentType;
    std::uint64_t sizeBytes = 0;  // 0: unknown
    std::string_view pageUrl;
    PageAccess page;
    std::string_view secondUrl;
    PageAccess second;
    std::string_view extraData;
    bool extraDataGiven = false;
    std::string_view description;
};

TransferExtraData extraDataOf(const ExtraDataSource& source);

}  // namespace zab
