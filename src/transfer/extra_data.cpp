#include "transfer/extra_data.h"

#include <utility>

namespace zab {
namespace {

class Filler {
  public:
    void set(ExtraElement element, std::string_view text) {
        if (!text.empty()) at(element).emplace(text);
    }

    void set(ExtraElement cookies, ExtraElement user, ExtraElement password, const PageAccess& access) {
        set(cookies, access.cookies);
        if (!access.login) return;
        set(user, access.login->user);
        set(password, access.login->password);
    }

    std::optional<std::string>& at(ExtraElement element) {
        return elements_[static_cast<std::size_t>(element)];
    }

    TransferExtraData take() { return std::move(elements_); }

  private:
    TransferExtraData elements_;
};

}  // namespace

TransferExtraData extraDataOf(const ExtraDataSource& source) {
    using enum ExtraElement;
    Filler elements;
    elements.set(userAgent, source.userAgent);
    elements.set(bodyFile, source.bodyFile);
    elements.set(pageTitle, source.pageTitle);
    elements.set(typeHint, source.typeHint);
    if (source.postGiven) elements.set(postContentType, source.postContentType);
    elements.set(contentType, source.contentType);
    if (source.sizeBytes != 0) elements.set(size, std::to_string(source.sizeBytes));
    elements.set(pageUrl, source.pageUrl);
    elements.at(reserved).emplace();
    elements.set(pageCookies, pageUser, pagePassword, source.page);
    elements.set(secondUrl, source.secondUrl);
    if (!source.secondUrl.empty() && source.extraDataGiven) elements.set(extraData, source.extraData);
    elements.set(secondCookies, secondUser, secondPassword, source.second);
    elements.set(description, source.description);
    return elements.take();
}

}  // namespace zab
