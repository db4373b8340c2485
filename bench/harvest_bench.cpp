#include "bench/bench.h"
#include "web/html_parser.h"

namespace {

using zabbench::repeated;

std::function<void()> harvest(const std::string& markup) {
    return [&markup] {
        constexpr const char* kPage = "https://archive.example.org/software/index.html";
        zab::CHTMLParser page(kPage, kPage);
        page.feed(markup);
        page.finish();
    };
}

/// As a generated index of downloads looks: 2 MB hold fewer links than a harvest keeps.
std::string page(std::size_t n) {
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Software &amp; "
           "media</title>\n"
           "<link rel=\"stylesheet\" href=\"/css/site.css?v=12\"><script>var page = {section: \"software\"};"
           "</script></head>\n<body class=\"index wide\">\n" +
           repeated(
               "<!-- item % -->\n<article class=\"item item-compact\" id=\"item-%\" data-rank=\"%\" "
               "data-tags='new,"
               "free'>\n  <h2><a class=\"title\" "
               "href=\"../files/%/release-notes.html?lang=en&amp;view=full#top\" "
               "title=\"Notes\">Release <b>%</b> &ndash; notes &amp; changes</a></h2>\n"
               "  <p class=\"lead\">Signed and reproducible, built for every platform that somebody still asks "
               "for; "
               "less than 2&nbsp;MB, &lt;5 seconds to install. Older releases stay where they were, and every "
               "link "
               "to them goes on working.</p>\n"
               "  <ul class=\"downloads\">\n    <li><a href=\"/pub/%/setup.exe\" rel=nofollow>Installer</a> "
               "<span class=\"size\">1.9&nbsp;MB</span></li>\n    <li><a "
               "href='https://mirror.example.net/pub/%/"
               "sources.tar.xz'>Sources</a> <span class=\"size\">12&nbsp;MB</span></li>\n  </ul>\n"
               "  <img class=\"shot\" src=\"/shots/%/small.png\" alt=\"A picture of release %\" width=320 "
               "height=200 loading=lazy>\n  <div "
               "class=\"facts\"><span>Checked</span><span>Popular</span><em>and"
               "</em> <code>sha256: "
               "9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08</code></div>\n"
               "  <p>What is new: the list of mirrors is asked once a day and no longer at every start; a "
               "broken "
               "download goes on where it broke; the window remembers its place on each of several screens; "
               "and "
               "some forty smaller things that are told in the notes, each with the report that led to it. "
               "Thanks "
               "to everybody who wrote one, and to those who tried the builds before they were ready.</p>\n"
               "  <p>Known problems: on displays with more than one scale the first window opens too small; a "
               "proxy that asks for credentials twice is asked twice. Both are being worked on &mdash; the "
               "next "
               "release is meant to have neither. Until then: close the window once and open it again, and "
               "store "
               "the credentials in the settings.</p>\n  <table class=\"sums\"><caption>Checksums</caption>\n"
               "    <tr "
               "class=\"even\"><td>setup.exe</"
               "td><td><code>d7a8fbb307d7809469ca9abcb0082e4f8d5651e46d3cdb762d02d0bf37c9e592</code></"
               "td><td>Windows 7 and later, with the manual in eleven languages</td></tr>\n"
               "    <tr "
               "class=\"odd\"><td>setup-portable.zip</"
               "td><td><code>e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855</code></"
               "td><td>the same without an installer; keeps its settings beside itself</td></tr>\n"
               "    <tr "
               "class=\"even\"><td>sources.tar.xz</"
               "td><td><code>ef537f25c895bfa782526529a9b63d97aa631564d5d789c2b765448c8635fb6c</code></"
               "td><td>what all of these are built from &amp; how</td></tr>\n"
               "    <tr "
               "class=\"odd\"><td>manual.pdf</"
               "td><td><code>9b71d224bd62f3785d96d46ad3ea3d73319bfbc2890caadae2dff72519673ca7</code></"
               "td><td>for printing, A4 &times; 112 pages</td></tr>\n"
               "  </table>\n  <blockquote cite=\"reviews/%\"><p>I have used it every day since the first "
               "release "
               "and have yet to lose a file to it; what breaks is mended within the week. The documentation "
               "says "
               "what the program does, and the program does what it says. Of how many can that be said?</p>"
               "<footer>a reader, in the guest book</footer></blockquote>\n  <p class=\"foot\">Licence: free "
               "for "
               "every use. Built on the project's own machines from the tagged sources; anybody can build the "
               "same "
               "bytes again, and a few people do, after each release, on machines of their own.</p>\n"
               "  <ol class=\"steps\"><li>Close the program, if an older release of it is "
               "running.</li><li>Compare the "
               "checksum of what you have fetched with the one in the table above; if they differ, fetch it "
               "again "
               "from another mirror and tell the list which one it was.</li><li>Run the installer, or unpack "
               "the "
               "archive where you want it; nothing is written anywhere else.</li><li>Start it. Your settings "
               "and "
               "unfinished downloads are taken over from the older release, and stay readable for that one "
               "until "
               "you remove it.</li></ol>\n"
               "  <p>This release replaces the one before it, which stays available for a year. Whoever "
               "mirrors "
               "it, please take the folder as it is: names, dates, sums. Questions about mirrors are answered "
               "on "
               "the list, usually within a day; questions about anything else too, but "
               "slower.</p>\n</article>\n",
               n) +
           "</body></html>\n";
}

std::string lessThanSigns(std::size_t n) { return std::string(n, '<'); }
std::string ampersands(std::size_t n) {
    return "<a href=\"" + std::string(n, '&') + "\">" + std::string(n, '&');
}
std::string unclosedQuotes(std::size_t n) { return repeated("<a href=\"x%>", n); }
std::string oneTagOfAttributes(std::size_t n) { return "<a " + repeated("b%=c ", n) + "href=d>e</a>"; }
std::string linksOnly(std::size_t n) { return repeated("<a href=%>", n); }
std::string endTagsOfScripts(std::size_t n) { return "<script>" + repeated("</scrip \"</script", n); }
std::string unclosedComments(std::size_t n) { return repeated("<!--%--!", n); }

const zabbench::Case kCases[] = {
    {"harvest", "page of 2 MB", page, 499, harvest},
    {"harvest", "less-than signs", lessThanSigns, 1'000'000, harvest},
    {"harvest", "ampersands", ampersands, 1'000'000, harvest},
    {"harvest", "unclosed quotes", unclosedQuotes, 100'000, harvest},
    {"harvest", "one tag of attributes", oneTagOfAttributes, 100'000, harvest},
    {"harvest", "links only", linksOnly, 1'000'000, harvest},
    {"harvest", "ends of scripts", endTagsOfScripts, 100'000, harvest},
    {"harvest", "unclosed comments", unclosedComments, 100'000, harvest},
};

}  // namespace
