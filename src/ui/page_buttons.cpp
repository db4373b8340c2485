#include "ui/page_buttons.h"

namespace zab {
namespace {

class NoButtons final : public PageButtons {
  public:
    void selectDocument(DocumentId) override {}
    void forget(const DocumentKey&) override {}
    void mediaChanged(nsISupports*, const MediaPage&) override {}
    void offerSelectedLinks(std::u16string_view) override {}
};

constinit NoButtons g_noButtons;

}  // namespace

PageButtons& pageButtons() noexcept { return g_noButtons; }

}  // namespace zab
