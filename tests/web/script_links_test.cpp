#include "web/script_links.h"

#include "readings.h"
#include "web/html_check.h"

namespace {

using namespace zabtest;

std::string addressesIn(std::string_view script) {
    zabtest::checkScriptLinks(script);
    std::string all;
    zab::CLinksInJavaParser(script).parse([&](std::string_view address) { all.append(address).append(" "); });
    return all;
}

TEST(ScriptLinks, AreLiteralsThatSayTheyAreAddressesOrServeAsSuch) {
    const Reading rows[] = {
        {R"(f("http://h/a", 'FTP://h/b', `mms://h\/`))", "http://h/a FTP://h/b mms://h/ ", "any quote"},
        {R"({"u":"http:\/\/h\/a","v":"\x68ttp://h/\u0062\u{000063}","w":"http:\u002f\u002Fh\/\ud83d\ude00"})",
         "http://h/a http://h/bc http://h/\xF0\x9F\x98\x80 ", "escapes"},
        {"'http://h/\\\nx' 'http://h/\\\r\ny'", "http://h/x http://h/y ", "goes on below"},
        {R"("//cdn.example/x.js" "//a comment" "/files/a.abcde" "./b.abcdef" "../c.mp3?x=1")",
         "//cdn.example/x.js /files/a.abcde ../c.mp3?x=1 ", "hosts, and paths to files"},
        {R"("/" "/path/" "a.zip" "/re.*x/" "/v1.2" "http://" "http:x y" "see http://h/a" "http://h/`")", "",
         "what is no address"},
        {R"("http://h/" + id, base + "/a.zip", `http://h/${x}`, base+"http://h/b")", "http://h/b ", "joined"},
        {"window.open('a', 'w'); open( \"b\" ); self.window.open ('c')", "a b c ", "windows"},
        {"location='a';window.location.href = 'b';location . href='x'", "a b x ", "set"},
        {"location.assign('a');top.location.replace(\"b\")", "a b ", "and calls"},
        {"img.src='i'; link.href='l'", "i l ", "addresses of elements"},
        {"xhr.open('GET'); relocation='a'; location=='b'; s.replace('d','e'); src=''; src='a b'", "",
         "other names; no address"},
    };
    expectReadings(addressesIn, rows);
}

TEST(ScriptLinks, AreNotTakenFromCommentsAndExpressions) {
    const Reading rows[] = {
        {"// 'http://h/x'\n'//a.b' /* 'http://h/x' */ '//b.c' /* 'http://h/x'", "//a.b //b.c ", "comments"},
        {"<!-- 'http://h/x'\n'http://h/a'\n//-->", "http://h/a ", "what hid scripts from old browsers"},
        {"x = /['\"]/g; y = 'http://h/a'", "http://h/a ", "a quote in an expression opens nothing"},
        {"x = /[/'\\]]/; return /'/ ; y = 'http://h/a'", "http://h/a ", "a class, and a word before it"},
        {"x = a / '//a.b', [] / '//b.c', {} / '//c.d'", "//a.b //b.c //c.d ", "a division is none"},
        {"x = /[ 'http://h/a'\n'http://h/b'", "http://h/a http://h/b ", "a part that never ends is none"},
        {"x = 'never closed http://h/x\n'http://h/a'", "http://h/a ", "a literal ends in its line"},
        {"` never closed 'http://h/a'", "http://h/a ", "a template without an end is none"},
        {"\"http://h/\\u12\" '\\u{110000000}' '\\xZ'", "http://h/u12 ", "what only looks like an escape"},
    };
    expectReadings(addressesIn, rows);
}

}  // namespace
