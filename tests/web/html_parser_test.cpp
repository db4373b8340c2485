#include "web/html_parser.h"

#include <ctime>
#include <map>
#include <string>
#include <utility>

#include "intercept/file_judge.h"
#include "readings.h"
#include "web/html_check.h"

using namespace std::string_literals;
using namespace zab;
using namespace zabtest;

namespace {

TEST(HtmlLinks, AreTakenFromEachElementThatHasThem) {
    const Reading rows[] = {
        {"<area href=m alt=Map><link rel=next href=p title=Next>", "L m [Map];L p [Next];", "their names"},
        {"<iframe src=f><a href=x></iframe><frame src=g>", "M f;M g;", "frames; in an iframe is text"},
        {"<form action=s><form action=p method=POST><button formaction=x><input formaction=y "
         "formmethod=get></form><form action=d method=dialog></form><button formaction=z>",
         "L s;L y;L z;", "what is asked for, not what is sent"},
        {"<link rel='next x' href=n><link rel='Alternate StyleSheet' href=x><link href=x>", "L n;", "no parts"},
        {"<a href=' JavaScript:\"/o%2Ezip\"'>T</a><p onload=\"'\" onclick=\"location='/c.zip'\">",
         "S http://h/o.zip;S http://h/c.zip;", "scripts in addresses and handlers"},
        {"<svg><a xlink:href=s>S</a><image xlink:href=i /></svg><input type=image src=g><input src=x>",
         "L s [S];M i;M g;", "svg and buttons"},
        {"<meta http-equiv=Refresh content=\"5; URL='n' x\"><meta http-equiv=refresh content=' 0,m'>",
         "L n;L m;", "refresh, with and without url="},
        {"<meta http-equiv=refresh content=5><meta http-equiv=refresh content='x;n'>", "", "itself; no time"},
        {"<img srcset='a, b 2x,c,d 3x (x,y) , e'>", "M a;M b;M c,d;M e;", "commas"},
        {"<video src=v poster=p><source src=s></video><embed src=e>", "P v;M p;P s;P e;", "what plays"},
        {"<p href=x src=y><td data=z><abbr href=x>", "", "attributes of other elements are nothing"},
    };
    expectReadings(linksOf, rows);
}

TEST(HtmlLinks, KeepTheirText) {
    const Reading rows[] = {
        {"<a href=a>\n A  <b>b</b>old\t</a>tail", "L a [A bold];", "white space and markup"},
        {"<a href=a>x<br>y<div>z</div></a>", "L a [x y z];", "breaks part words"},
        {"<a href=a>&lt;1 &amp 2&copy3&notit;</a>", "L a [<1 & 2\302\2513\302\254it;];", "references in text"},
        {"<a href=a><img src=i alt=Pic></a>", "L a [Pic];M i [Pic];", "a picture speaks for its link"},
        {"<a href=a title=T><a href=b>two</a>", "L a [T];L b [two];", "no content: the title"},
        {"<a href=a></a><a href=a>later</a><a href=a>latest</a>", "L a [later];", "the first text holds"},
        {"<a href=a>x<style>b{}</style> < y<", "L a [x < y<];", "raw text is none; the page's end ends a link"},
        {"<a href=a>x<template>y</template>z", "L a [xz];", "nor is that of a template"},
        {"<a href=a>&am<!-- -->p;&am</>p;</a>", "L a [&amp;&amp;];", "a comment ends a reference"},
    };
    expectReadings(linksOf, rows);
}

TEST(HtmlTokens, FollowTheStandard) {
    const Reading rows[] = {
        {"<A =href=x HREF=a href=b>", "L a;", "names in any case, with a = too; of a repeated one the first"},
        {"<a href href=b><a href=>", "", "also when the first is empty: the page itself"},
        {"<a href=a/b/><a/href='c'title=T/><a x/href=d />t", "L a/b/;L c [T/];L d [t];",
         "a / in an unquoted value; no blank"},
        {"<a href\n=\r'a\">b'>", "L a%22%3Eb;", "blanks around =, > and \" in quotes"},
        {"<a href=a", "", "an end of the page in a tag: no tag"},
        {"<a href=a\0b><a\0 href=c>"s, "L a%EF%BF%BDb;", "NUL is U+FFFD, and makes another name"},
        {"< a href=x><!a href=x></ a href=x><!><a href=a><?a href=x><a href=b>", "L a;L b;", "no tags"},
        {"<a<b href=x><aa href=x></a href=x><<a href=a>", "L a;", "other names; end tags; a < before a tag"},
        {"<a href=\"?&amp;b&copy=3&eacute;\">", "L page.html?&b&copy=3%C3%A9;", "references in values"},
        {"<a href='&#104;&#x74tp&colon;//h/&#0;&#128;&#xD800;&#1114112;&#;&#x;'>",
         "L http://h/%EF%BF%BD%E2%82%AC%EF%BF%BD%EF%BF%BD&#;&#x;;", "numbers, and those that are none"},
    };
    expectReadings(linksOf, rows);
}

TEST(HtmlTokens, OfHiddenPartsDoNotCount) {
    const Reading rows[] = {
        {"<!-- <a href=x> --><!--><a href=a><!---><a href=b><!----!><a href=c><!--!><a href=x>--><!-- - -><a "
         "href=x>",
         "L a;L b;L c;", "the ends of comments"},
        {"<svg><![CDATA[]> ]] ><a href=x> ]]><a href=a></svg>", "L a;", "CDATA in svg"},
        {"<svg><!doctype x><a href=a></svg><![CDATA[ x> <a href=b> ]]>", "L a;L b []]>];", "and what is none"},
        {"<svg><title><a href=a></title><style><a href=b></style></svg>", "L a;L b;", "none is raw in svg"},
        {"</svg></template><style><a href=x></style><a href=a>", "L a;", "ends of nothing"},
        {"<svg/><style><a href=x></style><svg><style><a href=a></style><p><style><a href=x></style>", "L a;",
         "a picture may end at once; a paragraph ends it"},
        {"<style><a href=x></styles><a href=x></STYLE ><a href=a>", "L a;", "style"},
        {"<title><a href=x></title><noscript><a href=x></noscript>", "", "raw elements"},
        {"<template><a href=x><template></template><img src=x></template><a href=a>", "L a;", "templates nest"},
        {"<script><!--<script></script>\n'/x.zip' '/>y.a'</script><a href=x>--></script><a href=a>",
         "S http://h/x.zip;L x [-->];L a;", "a comment in a script hides its end once"},
        {"<script><!-- </script><a href=a><script><!--<script>--></script><a href=b>", "L a;L b;",
         "only behind one"},
        {"<script>'/a.js</script><script>'/b.js'</script>", "S http://h/b.js;", "each script by itself"},
        {"<script>'//a.b<' '//a.b</b'</scriptx></script x='>'><a href=a>", "L a;",
         "an end tag may have attributes"},
    };
    expectReadings(linksOf, rows);
}

TEST(HtmlLinks, AreAddressesOfDownloadsEachOnce) {
    const Reading rows[] = {
        {"<base target=x><base href=sub/><base href=http://n/><a href=a>", "L sub/a;", "the first href"},
        {"<a href=a>A</a><a href=http://o/a></a><base href=http://o/>", "L http://o/a [A];", "links before it"},
        {"<base href=javascript:x><a href=a>", "L a;", "no base without a host"},
        {"<template><base href=http://o/></template><a href=a>", "L a;", "none in a template"},
        {"<a href=#x><base href=http://o/p/q>", "L http://o/p/q#x;", "with a base, a fragment leads elsewhere"},
        {"<a href='java\nscript:x'><a href=data:,x><a href=MMS://h/3>", "L mms://h/3;", "schemes of the web"},
        {"<a href=HTTP://%48.Ex:080><a href=//h.ex/#x><a href=ftp://h.ex:21/>", "L http://h.ex/;L ftp://h.ex/;",
         "one spelling, one link"},
        {"<a href=//a%20b/><a href=//h:x/><a href=//[::1]:80/><a href=//[x]/>", "L http://[::1]/;", "refused"},
        {"<a href=page.html#x><a href=page.html>", "L page.html;", "fragments of the page; the page itself"},
        {"<a href=p#1>1</a><a href=p#2>2</a>", "L p#1 [1];", "a fragment makes no other download"},
        {"<a href=p>t</a><img src=p><img src=q><a href=q>u</a><video src=q>", "L p [t];P q [u];",
         "not across the lists either"},
    };
    expectReadings(linksOf, rows);
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
    EXPECT_EQ(links[1749].url, "http://h/d/0.zip") << "behind the first pictures, in page order";

    const std::string longest(CLinkProcessor::kMostUrlBytes - kTestFolder.size(), 'x');
    EXPECT_EQ(linksOf("<a href=" + longest + "><a href=" + longest + "x>"), "L " + longest + ";");
    const std::string base = "http://o/" + std::string(CLinkProcessor::kMostBaseBytes - 10, 'b') + "/";
    EXPECT_EQ(linksOf("<base href=" + base + "><a href=a>"), "L " + base + "a;");
    EXPECT_EQ(linksOf("<base href=" + base + "/><a href=a>"), "L a;");
    EXPECT_EQ(
        linksOf("<a href=a>" + std::string(511, 'x') + "\xC3\xA4</a><a href=b>" + std::string(600, '\x80')),
        "L a [" + std::string(511, 'x') + "];L b;")
        << "a text is cut between characters";
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += piece;
    return all;
}

TEST(HtmlLinks, CostTimeInProportionToThePage) {
    const std::pair<std::string, const char*> pages[] = {
        {"<a href=a>" + std::string(1 << 20, '&'), "nothing but & in a text"},
        {"<a " + repeated("href=x ", 100'000) + ">", "100,000 attributes in one tag"},
        {"<script>" + repeated("=/[", 1 << 18), "regular expressions without an end"},
        {"<script>" + repeated("\\`", 1 << 19), "templates without an end"},
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

}  // namespace
