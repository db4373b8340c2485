#include "page/document_id.h"

#include "binding/browser_string.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"
#include "binding/text.h"

namespace zab {

DocumentId documentIdOf(std::u16string_view text) noexcept { return leadingDigits(text).value_or(0); }

DocumentId documentIdOf(nsISupports* document) noexcept {
    if (document == nullptr) return 0;
    const auto helper = service<iZABHelper11>();
    WideContainer name(u"zabmzcc-ext-docid");
    WideContainer value;
    if (!helper || !name.ready() || !value.ready()) return 0;
    if (failed(helper->GetDocumentAttribute(name.get(), document, value.get()))) return 0;
    return documentIdOf(value.view());
}

}  // namespace zab
