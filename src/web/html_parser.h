// The links and media sources of an HTML page, fed in pieces of any size.
//
// Elements and attributes as in the HTML standard; nothing is loaded or run. Links lead to something to be had:
// a form that posts leads nowhere, and of link elements only those to documents and feeds count. Addresses are
// resolved against the page's first base element. What stands in comments, CDATA sections, raw text elements
// and templates is no part of the page that a reader sees, and of scripts (in javascript: addresses and event
// handlers too) only their addresses are taken.
//
// Memory: what the page writes about its links, one tag, one script. Time: linear in the page.
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
    CHTMLParser(std::string_view baseUrl, std::string_view pageUrl, FileJudge judge = {});

    void feed(std::string_view chunk);
    /// The page ends here: the link that is still open gets its text.
    void finish();

    /// All that the page offers, in its order; made by finish().
    [[nodiscard]] const CLinksArray& links() const noexcept { return links_.links(); }
    /// How many of its addresses found no room there.
    [[nodiscard]] std::size_t leftOut() const noexcept { return links_.leftOut(); }

  private:
    HtmlContent startTag(const HtmlTag& tag) override;
    void endTag(std::string_view name) override;
    void text(std::string_view piece) override;
    void textEnds() override { endTextRun(); }
    [[nodiscard]] bool allowsCdata() const noexcept override { return inForeign(); }

    [[nodiscard]] bool inForeign() const noexcept { return foreignDepth_ > integrationDepth_; }
    /// Whether the element itself is one of svg or math.
    bool enterForeign(const HtmlTag& tag, std::string_view name) noexcept;
    void leaveForeign(std::string_view name) noexcept;
    void takeLinks(const HtmlTag& tag, std::string_view name, bool isForeign);
    void takeAttributes(const HtmlTag& tag, std::string_view name);
    void takeForm(const HtmlTag& tag);
    void takeAddress(std::string_view written, LinkSource source, bool playable, std::string_view text);
    void takeSourceSet(std::string_view list);
    void openLink(const HtmlTag& tag, std::string_view href);
    void closeLink();
    void endTextRun();
    void harvestScript(std::string_view script);

    CLinkProcessor links_;
    HtmlTokenizer tokenizer_{*this};
    HtmlContent content_ = HtmlContent::markup;
    std::uint32_t templateDepth_ = 0;
    std::uint32_t foreignDepth_ = 0;      // open svg and math elements
    std::uint32_t integrationDepth_ = 0;  // elements in these that hold HTML again

    bool inGetForm_ = true;     // no form is open that sends something else
    bool readsText_ = false;    // a link is open and wants its text
    std::size_t openLink_ = 0;  // its number
    std::string linkText_;      // decoded so far
    std::string textRun_;       // undecoded, since the last tag
    std::string linkTitle_;     // stands in for a text
    std::string script_;        // content of the script being read
};

}  // namespace zab
