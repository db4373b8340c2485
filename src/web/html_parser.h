// The links and media sources of an HTML page, fed in pieces of any size.
//
// Elements and attributes as in the HTML standard; nothing is loaded or run. Addresses are resolved against the
// page's first base element. What stands in comments, CDATA sections, raw text elements and templates is no
// part of the page that a reader sees, and of scripts only their addresses are taken.
//
// Memory: the kept links, one tag, one script. Time: linear in the page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "web/html_tokenizer.h"
#include "web/link_processor.h"

namespace zab {

class CHTMLParser final : private HtmlHandler {
  public:
    /// Longer texts of links are cut, in bytes.
    static constexpr std::size_t kMostTextBytes = 512;

    /// Addresses are resolved against `baseUrl` until the page names a base of its own; fragments of `pageUrl`
    /// are no links. Both absolute; usually the same.
    CHTMLParser(std::string_view baseUrl, std::string_view pageUrl);

    void feed(std::string_view chunk);
    /// The page ends here: the link that is still open gets its text.
    void finish();

    /// Links, frames, forms, and addresses in scripts; complete after finish().
    [[nodiscard]] const CLinksArray& links() const noexcept { return links_.links(); }
    /// Pictures and what is played.
    [[nodiscard]] const CLinksArray& mediaSources() const noexcept { return media_.links(); }

  private:
    HtmlContent startTag(const HtmlTag& tag) override;
    void endTag(std::string_view name) override;
    void text(std::string_view piece) override;
    [[nodiscard]] bool allowsCdata() const noexcept override { return inForeign(); }

    [[nodiscard]] bool inForeign() const noexcept { return foreignDepth_ > integrationDepth_; }
    /// Whether the element itself is one of svg or math.
    bool enterForeign(const HtmlTag& tag, std::string_view name) noexcept;
    void leaveForeign(std::string_view name) noexcept;
    void takeLinks(const HtmlTag& tag, std::string_view name);
    void takeSourceSet(std::string_view list);
    void takeBase(std::string_view written);
    void openLink(const HtmlTag& tag);
    void closeLink();
    void endTextRun();
    void harvestScript();

    CLinkProcessor links_, media_;
    HtmlTokenizer tokenizer_{*this};
    std::uint32_t place_ = 0;  // of the link being added
    HtmlContent content_ = HtmlContent::markup;
    std::uint32_t templateDepth_ = 0;
    std::uint32_t foreignDepth_ = 0;      // open svg and math elements
    std::uint32_t integrationDepth_ = 0;  // elements in these that hold HTML again

    bool readsText_ = false;    // a link is open and wants its text
    std::size_t openLink_ = 0;  // its index
    std::string linkText_;      // decoded so far
    std::string textRun_;       // undecoded, since the last tag
    std::string linkTitle_;     // stands in for a text
    std::string script_;        // content of the script being read
};

/// All that a whole page offers for download, in page order. `markup` is UTF-8.
void harvestPage(std::string_view markup, std::string_view pageUrl, CLinksArray& links);

}  // namespace zab
