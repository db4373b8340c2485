#include "web/html_parser.h"

#include <gtest/gtest.h>

#include <ctime>
#include <map>
#include <span>
#include <string>
#include <utility>

#include "intercept/file_judge.h"
#include "web/html_check.h"

using namespace zab;
using namespace zabtest;

namespace {

/// The links of a page as "source text url" lines; "L", "M", "S" for the sources, "P" for what plays.
std::string linksOf(std::string_view markup) {
    CHTMLParser page(kTestPage, kTestPage);
    page.feed(markup);
    page.finish();
    std::string lines;
    for (const PageLink& link : page.links()) {
        lines += link.playable ? 'P' : "LSM"[static_cast<int>(link.source)];
        lines.append(" ").append(link.url);
        if (!link.text.empty()) lines.append(" [").append(link.text).append("]");
        lines += '\n';
    }
    return lines;
}

struct PageRow {
    std::string_view markup;
    std::string_view links;
    const char* why;
};

void expectLinks(std::span<const PageRow> rows) {
    for (const PageRow& row : rows) {
        EXPECT_EQ(linksOf(row.markup), row.links) << row.why << "\n" << row.markup;
        for (const std::size_t chunk : {1, 2, 3, 5})
            EXPECT_EQ(harvest(row.markup, chunk), harvest(row.markup, row.markup.size() + 1)) << row.markup;
    }
}

TEST(HtmlLinks, AreTakenFromEachElementThatHasThem) {
    const PageRow rows[] = {
        {"<a href=a.zip>A</a>", "L http://host/dir/a.zip [A]\n", "a"},
        {"<map><area href=/m alt=Map></map>", "L http://host/m [Map]\n", "area, named by its alt"},
        {"<link rel=next href=p2 title=Next>", "L http://host/dir/p2 [Next]\n", "link"},
        {"<iframe src=f><a href=x></iframe><frame src=g>", "M http://host/dir/f\nM http://host/dir/g\n",
         "frames; what stands in an iframe is text"},
        {"<form action=s><form action=p method=POST><button formaction=x><input formaction=y formmethod=get>"
         "</form><form action=d method=dialog></form><button formaction=z>",
         "L http://host/dir/s\nL http://host/dir/y\nL http://host/dir/z\n",
         "what is asked for, not what is sent"},
        {"<link rel='next shortcut' href=n><link rel=stylesheet href=x><link rel='Alternate StyleSheet' href=x>"
         "<link rel=icon href=x><link rel=preconnect href=//x><link href=x><link rel=ALTERNATE href=f>",
         "L http://host/dir/n\nL http://host/dir/f\n", "documents and feeds, no parts and no hints"},
        {"<a href=\"javascript:window.open('o%2Ezip')\">T</a><a href=' JavaScript:x'><p "
         "onclick=\"location='/c.zip'\">",
         "S http://host/dir/o.zip\nS http://host/c.zip\n", "scripts in addresses and handlers"},
        {"<svg><a xlink:href=s>S</a><image xlink:href=i /></svg><track src=t><input type=image src=g><input "
         "src=x>",
         "L http://host/dir/s [S]\nM http://host/dir/i\nM http://host/dir/t\nM http://host/dir/g\n",
         "svg, tracks and buttons"},
        {"<meta http-equiv=Refresh content=\"5; URL='n.html' x\">", "L http://host/dir/n.html\n", "refresh"},
        {"<meta http-equiv=refresh content=' 0,n'>", "L http://host/dir/n\n", "refresh without url="},
        {"<meta http-equiv=refresh content=5>", "", "a refresh of the page itself"},
        {"<meta http-equiv=refresh content='x;url=n'><meta name=refresh content='1;url=n'>", "",
         "no time, no refresh; a name is no http-equiv"},
        {"<img src=i.png alt=Pic>", "M http://host/dir/i.png [Pic]\n", "img"},
        {"<img srcset='a.png, b.png 2x,c,d.png 3x (x,y) , e.png'>",
         "M http://host/dir/a.png\nM http://host/dir/b.png\nM http://host/dir/c,d.png\nM "
         "http://host/dir/e.png\n",
         "srcset: commas end an address only at its end, and not in parentheses"},
        {"<video src=v.mp4 poster=p.jpg><source src=s.webm></video><audio src=a.mp3></audio>",
         "P http://host/dir/v.mp4\nM http://host/dir/p.jpg\nP http://host/dir/s.webm\nP "
         "http://host/dir/a.mp3\n",
         "what plays, and its picture"},
        {"<embed src=e.swf><object data=o.swf></object>", "P http://host/dir/e.swf\nP http://host/dir/o.swf\n",
         "plug-ins"},
        {"<script>window.open('w.html')</script>", "S http://host/dir/w.html\n", "scripts"},
        {"<p href=x src=y><td data=z><abbr href=x>", "", "attributes of other elements are nothing"},
    };
    expectLinks(rows);
}

TEST(HtmlLinks, KeepTheirText) {
    const PageRow rows[] = {
        {"<a href=a>\n A  <b>b</b>old\t</a>tail", "L http://host/dir/a [A bold]\n", "white space and markup"},
        {"<a href=a>x<br>y<div>z</div></a>", "L http://host/dir/a [x y z]\n", "breaks part words"},
        {"<a href=a>&lt;1 &amp 2&copy3&notit;</a>",
         "L http://host/dir/a [<1 & 2\xC2\xA9"
         "3\xC2\xACit;]\n",
         "references in text"},
        {"<a href=a><img src=i alt=Pic></a>", "L http://host/dir/a [Pic]\nM http://host/dir/i [Pic]\n",
         "a picture speaks for its link"},
        {"<a href=a title=T><b></b></a>", "L http://host/dir/a [T]\n", "no content: the title"},
        {"<a href=a>one<a href=b>two</a>", "L http://host/dir/a [one]\nL http://host/dir/b [two]\n",
         "a link ends the link before it"},
        {"<a href=a><i></i></a><a href=a>later</a><a href=a>latest</a>", "L http://host/dir/a [later]\n",
         "the first text of a link holds"},
        {"<a href=a>x<script>'/s.js'</script><style>b{}</style>y",
         "L http://host/dir/a [xy]\nS http://host/s.js\n",
         "raw text is no text; the end of the page ends a link"},
        {"<a href=a>x < y <3</a>", "L http://host/dir/a [x < y <3]\n", "a lone < is text"},
        {"<a href=a>&am<!-- -->p;&am</>p;</a>", "L http://host/dir/a [&amp;&amp;]\n",
         "a comment ends a reference"},
    };
    expectLinks(rows);
}

TEST(HtmlTokens, FollowTheStandard) {
    const PageRow rows[] = {
        {"<A HREF=a>", "L http://host/dir/a\n", "names in any case"},
        {"<a href=a href=b>", "L http://host/dir/a\n", "of a repeated attribute the first"},
        {"<a href href=b>", "", "also when the first is empty"},
        {"<a href=a/b/>", "L http://host/dir/a/b/\n", "a / belongs to an unquoted value"},
        {"<a/href='a'/title=T/>", "L http://host/dir/a [T/]\n", "a / between attributes is a blank"},
        {"<a href='a'title='T'>", "L http://host/dir/a [T]\n", "no blank behind a quoted value"},
        {"<a href\n=\r'a\">b'>", "L http://host/dir/a%22%3Eb\n", "blanks around =, > and \" in quotes"},
        {"<a href=\"a", "", "an end of the page in a value: no tag"},
        {"<a href=a", "", "in a tag: no tag"},
        {"<a href=a b='>x", "", "the same in another attribute"},
        {"<a =href=a href=b>", "L http://host/dir/b\n", "a name may begin with ="},
        {"<a href==a>", "L http://host/dir/=a\n", "a value may too"},
        {"<a href=>", "", "an empty value is the page itself"},
        {std::string_view("<a href=a\0b>", 12), "L http://host/dir/a%EF%BF%BDb\n", "NUL is U+FFFD"},
        {std::string_view("<a\0 href=a>", 11), "", "and makes another name"},
        {"< a href=a></ a href=b><?a href=c><!a href=d>", "", "what only looks like a tag"},
        {"<a<b href=a><aa href=b>", "", "a name ends at a blank, / or > alone"},
        {"</a href=a>", "", "end tags have no links"},
        {"<<a href=a>", "L http://host/dir/a\n", "a < before a tag"},
        {"<a href=\"?a=1&amp;b=2&copy=3&lt=4&eacute;\">",
         "L http://host/dir/page.html?a=1&b=2&copy=3&lt=4%C3%A9\n", "references in values"},
        {"<a href='&#104;&#x74tp&colon;//h/&#0;&#128;&#xD800;&#1114112;&#;&#x;'>",
         "L http://h/%EF%BF%BD%E2%82%AC%EF%BF%BD%EF%BF%BD&#;&#x;\n", "numbers, and those that are none"},
    };
    expectLinks(rows);
}

TEST(HtmlTokens, OfHiddenPartsDoNotCount) {
    const PageRow rows[] = {
        {"<!-- <a href=x> --><!--><a href=a><!---><a href=b><!-- --!><a href=c><!--!><a href=x>-->",
         "L http://host/dir/a\nL http://host/dir/b\nL http://host/dir/c\n", "the ends of comments"},
        {"<!----!><a href=a><!-- - -- -><a href=x>", "L http://host/dir/a\n",
         "a comment to the end of the page"},
        {"<!DOCTYPE html PUBLIC '>'><a href=a>", "L http://host/dir/a\n", "a document type ends at >"},
        {"<![CDATA[ x> <a href=a> ]]>", "L http://host/dir/a []]>]\n", "no CDATA in HTML: a comment up to >"},
        {"<svg><![CDATA[ <a href=x> ]] > ]]]><a href=a></svg>", "L http://host/dir/a\n", "CDATA in svg"},
        {"<svg><title><a href=a></title><style><a href=b></style></svg><style><a href=x></style>",
         "L http://host/dir/a\nL http://host/dir/b\n", "raw elements are so in HTML alone"},
        {"<svg><p><style><a href=x></style>", "", "a paragraph ends the picture"},
        {"<svg/><style><a href=x></style>", "", "a picture may end at once"},
        {"<style><a href=x></styles><a href=x></STYLE ><a href=a>", "L http://host/dir/a\n", "style"},
        {"<textarea><a href=x></textarea><title><a href=x></title>", "", "textarea and title"},
        {"<noscript><a href=x></noscript><xmp><a href=x></xmp>", "", "noscript and xmp"},
        {"<template><a href=x><template></template><img src=x></template><a href=a>", "L http://host/dir/a\n",
         "templates nest"},
        {"<plaintext><a href=x></plaintext><a href=x>", "", "nothing ends plaintext"},
        {"<script><!--<script></script>\n'/x.zip'</script><a href=x>--></script><a href=a>",
         "S http://host/x.zip\nL http://host/dir/x [-->]\nL http://host/dir/a\n",
         "a comment in a script hides its end once"},
        {"<script><!-- </script><a href=a>", "L http://host/dir/a\n", "but only behind another script"},
        {"<script><!--<script>--></script><a href=a>", "L http://host/dir/a\n", "and not behind the comment"},
        {"<script>a</scriptx></script x='>'><a href=a>", "L http://host/dir/a\n",
         "an end tag may have attributes"},
    };
    expectLinks(rows);
}

TEST(HtmlLinks, AreResolvedAgainstTheBase) {
    const PageRow rows[] = {
        {"<base href=http://o/p/q><a href=a>", "L http://o/p/a\n", "a base"},
        {"<base href=sub/><a href=a>", "L http://host/dir/sub/a\n", "a base is a reference itself"},
        {"<base target=x><base href=http://o/><base href=http://n/><a href=a>", "L http://o/a\n",
         "the first href"},
        {"<a href=a>A</a><a href=http://o/a></a><base href=http://o/><a href=b>",
         "L http://o/a [A]\nL http://o/b\n", "links before it too, each once"},
        {"<base href=javascript:x><a href=a>", "L http://host/dir/a\n", "no base without a host"},
        {"<template><base href=http://o/></template><a href=a>", "L http://host/dir/a\n", "none in a template"},
        {"<base href=http://o/><a href=#x>", "L http://o/#x\n", "with a base, a fragment leads elsewhere"},
        {"<a href=#x><a href=../../../y><base href=http://o/p/q>", "L http://o/p/q#x\nL http://o/y\n",
         "also one that stands before it"},
    };
    expectLinks(rows);
}

TEST(HtmlLinks, AreDownloadsEachOnce) {
    const PageRow rows[] = {
        {"<a href=javascript:x()><a href=data:,x><a href=mailto:a@b><a href=tel:1><a href=about:blank>", "",
         "other schemes"},
        {"<a href='java\nscript:x'><a href=' JavaScript:x'>", "", "whatever they are hidden in"},
        {"<a href=HTTPS://h/1><a href=ftp://h/2><a href=mms://h/3>",
         "L https://h/1\nL ftp://h/2\nL mms://h/3\n", "the web's schemes"},
        {"<a href=HTTP://H.Ex:080><a href=http://h.ex/#x><a href=//%48.ex?><a href=//h.ex:81><a "
         "href=ftp://h.ex:21/>",
         "L http://h.ex/\nL http://h.ex/?\nL http://h.ex:81/\nL ftp://h.ex/\n", "one spelling, one link"},
        {"<a href='//a b/'><a href='http://a%20b/'><a href=//h:65536/><a href=//h:x/><a href='//h|/'><a "
         "href=//[::1]:80/>"
         "<a href=//[x]/>",
         "L http://[::1]/\n", "what browsers refuse"},
        {"<a href=#top><a href=page.html#x><a href=/dir/page.html>", "L http://host/dir/page.html\n",
         "fragments of the page; the page itself"},
        {"<a href=p#1>1</a><a href=p#2>2</a><a href=./x/../p>3</a>", "L http://host/dir/p#1 [1]\n",
         "a fragment makes no other download"},
        {"<img src=p><a href=p>t</a><video src=p>", "P http://host/dir/p [t]\n", "not across the lists either"},
        {"<a href=http:///><a href=//>", "", "no host"},
        {"<a href='  a b\\c.zip '>", "L http://host/dir/a%20b/c.zip\n", "as browsers read it"},
    };
    expectLinks(rows);
}

TEST(HtmlLinks, AreBoundedInNumberAndLength) {
    std::string page;
    for (int i = 0; i < 2500; ++i) page += "<img src=p" + std::to_string(i % 2400) + ".png>";
    for (int i = 0; i < 50; ++i) page += "<a href=" + std::to_string(i) + ".zip>";
    for (int i = 0; i < 100; ++i)
        page += "<a href=t" + std::to_string(i) + "><script>'/s" + std::to_string(i) + ".js'</script>";
    page += "<a href=p2399.png>";
    GivenSettings settings;
    settings.extensionList = "zip";
    CHTMLParser parser(kTestPage, kTestPage, fileJudgeOf(settings));
    parser.feed(page);
    parser.finish();
    const CLinksArray& links = parser.links();
    ASSERT_EQ(links.count(), 2000);
    EXPECT_EQ(parser.leftOut(), 2400u + 50 + 200 - 2000);
    std::map<LinkReason, int> counts;
    for (const PageLink& link : links) ++counts[link.reason];
    EXPECT_EQ(counts[LinkReason::inCatchList], 50);
    EXPECT_EQ(counts[LinkReason::textLink], 101) << "a picture that is linked too";
    EXPECT_EQ(counts[LinkReason::inScript], 100);
    EXPECT_EQ(links[1748].url, "http://host/dir/p1748.png") << "the first pictures, in page order";
    EXPECT_EQ(links[1749].url, "http://host/dir/0.zip");

    const std::string longest(CLinkProcessor::kMostUrlBytes - std::string_view("http://host/dir/").size(), 'x');
    EXPECT_EQ(linksOf("<a href=" + longest + "><a href=" + longest + "x>"),
              "L http://host/dir/" + longest + "\n");
    EXPECT_EQ(linksOf("<a href=a>" + std::string(511, 'x') + "\xC3\xA4"),
              "L http://host/dir/a [" + std::string(511, 'x') + "]\n")
        << "a text is cut between characters";
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += piece;
    return all;
}

TEST(HtmlLinks, CostTimeInProportionToThePage) {
    const std::pair<std::string, const char*> pages[] = {
        {std::string(1 << 20, '<'), "nothing but <"},
        {"<a href=a>" + std::string(1 << 20, '&'), "nothing but & in a text"},
        {"<a href='" + repeated("&Counter", 1 << 17) + "'>", "beginnings of references in a value"},
        {repeated("<a href=\"", 1 << 17), "unclosed quotes"},
        {"<a " + repeated("href=x ", 100'000) + ">", "100,000 attributes in one tag"},
        {repeated("<!--", 1 << 18), "comments in a comment"},
        {"<script>" + repeated("=/[", 1 << 18), "regular expressions without an end"},
        {"<script>" + repeated("\\`", 1 << 19), "templates without an end"},
        {"<script>" + repeated("<!--<script", 1 << 17), "scripts in a script"},
        {"<img srcset='" + repeated("a (,", 1 << 18) + "'>", "conditions without an end"},
        {"<base href=http://h/" + std::string(2000, 'b') + "/>" + repeated("<a href=x>", 30'000),
         "many links with a long base"},
    };
    for (const auto& [page, why] : pages) {
        const std::clock_t start = std::clock();
        CHTMLParser parser(kTestPage, kTestPage);
        parser.feed(page);
        parser.finish();
        // Of this process alone: quadratic work on a megabyte takes minutes, a sanitized build no ten seconds.
        EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 10) << why;
        EXPECT_LE(parser.links().count(), 2) << why;
    }
}

TEST(HtmlLinks, DoNotDependOnHowThePageIsCut) {
    const std::string_view page =
        "<!doctype html><title>T &amp; <a></title><base href='/b/'><!-- c --!><svg><![CDATA[x]]y]]></svg>"
        "<a href=\"x&amp;y&#x41;\" title='t'>te&lt;xt<br>m</a><script>var "
        "u=\"http:\\/\\/h\\/a.zip\";<!--<script>"
        "</script>--></script><img srcset='1.png 1x, 2.png' alt=A><video src=v></video>";
    const std::string whole = harvest(page, page.size());
    for (std::size_t first = 0; first <= page.size(); ++first) {
        CHTMLParser parser(kTestPage, kTestPage);
        parser.feed(page.substr(0, first));
        parser.feed(page.substr(first));
        parser.finish();
        EXPECT_EQ(whole, linesOf(parser.links())) << "cut at " << first;
    }
    checkHtml(page);
}

}  // namespace
