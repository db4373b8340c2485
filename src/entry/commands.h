// The commands of the extension's menus: one link, all links of a page, or its newest media, for the download
// manager.
//
// Texts are the browser's own strings and are copied before the first call into the download manager. Where no
// call can be made just now, the rest of a command is tried again from the browser's message loop, three times
// for each transfer, before the user is told; it counts as going through.
#pragma once

#include <cstddef>

#include "binding/interfaces/supports.h"

namespace zab {

/// NS_OK when the link was transferred, else NS_ERROR_FAILURE.
nsresult downloadLink(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                      const nsAString* description);

/// Transfers what the markup of a page offers, in page order, up to the first failure of the connection; NS_OK
/// when at least one link was transferred. Without any link the user is told so.
nsresult downloadAll(const nsAString* markup, const nsAString* pageUrl, const nsAString* cookies);

/// Transfers up to `most` media entries of a page, the newest first, up to the first failure of the connection;
/// NS_OK when at least one was transferred. Without any the user is told so.
nsresult downloadNewestMedia(const nsAString* documentId, std::size_t most);

}  // namespace zab
