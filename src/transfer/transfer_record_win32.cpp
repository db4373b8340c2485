#include "binding/browser_text_win32.h"
#include "binding/utf.h"
#include "transfer/transfer_record.h"
#include "web/file_name.h"

namespace zab {

void makeNarrow(TransferRecord& record) {
    for (std::string* text : {&record.url, &record.referrer, &record.pageUrl, &record.secondUrl,
                              &record.description, &record.pageTitle})
        // What is no UTF-8 is narrow already.
        if (isCompleteUtf8(*text)) *text = narrowPreferringAnsi(utf16FromUtf8(*text)).value_or("");
}

}  // namespace zab
