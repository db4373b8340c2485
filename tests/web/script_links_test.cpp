#include "web/script_links.h"

#include <gtest/gtest.h>

#include <span>
#include <string>

using namespace zab;

namespace {

std::string addressesIn(std::string_view script) {
    std::string all;
    CLinksInJavaParser(script).parse([&](std::string_view address) { all.append(address).append(" "); });
    return all;
}

struct ScriptRow {
    std::string_view script, addresses;
    const char* why;
};

void expectAddresses(std::span<const ScriptRow> rows) {
    for (const ScriptRow& row : rows)
        EXPECT_EQ(addressesIn(row.script), row.addresses) << row.why << "\n" << row.script;
}

TEST(ScriptLinks, AreLiteralsThatSayTheyAreAddresses) {
    const ScriptRow rows[] = {
        {R"(f("http://h/a", 'HTTPS://h/b', `ftp://h/c`, "mms://h/d"))",
         "http://h/a HTTPS://h/b ftp://h/c mms://h/d ", "any quote, any scheme of the web"},
        {R"({"u":"http:\/\/h\/a","v":"\x68ttp://h/\u0062\u{63}","w":"http:\u002f\u002Fh\/\ud83d\ude00"})",
         "http://h/a http://h/bc http://h/\xF0\x9F\x98\x80 ", "escapes"},
        {"'http://h/\\\nx' 'http://h/\\\r\ny'", "http://h/x http://h/y ",
         "a literal that goes on in the next line"},
        {R"("//cdn.example/x.js" "//a comment" "/files/a.zip" "./b.rar" "../c.mp3?x=1")",
         "//cdn.example/x.js /files/a.zip ./b.rar ../c.mp3?x=1 ", "hosts, and paths to files"},
        {R"("/" "/path/" "a.zip" "/re.*x/" "/v1.2" "http://" "http:x y" "see http://h/a" "javascript:x")", "",
         "what is no address by itself"},
        {R"("http://h/?id=" + id, base + "/a.zip", `http://h/${x}`, base+"http://h/b")", "http://h/b ",
         "parts that are joined"},
    };
    expectAddresses(rows);
}

TEST(ScriptLinks, AreWhatTheScriptUsesAsAddresses) {
    const ScriptRow rows[] = {
        {"window.open('a', 'w'); open( \"b\" ); self.window.open ('c')", "a b c ", "windows"},
        {"location='a';window.location.href = 'b';location . href='x';document.location=\"c\"", "a b x c ",
         "assignments"},
        {"location.assign('a');top.location.replace(\"b\")", "a b ", "and calls"},
        {"img.src='i'; link.href='l'", "i l ", "addresses of elements"},
        {"xhr.open('GET'); relocation='a'; location=='b'; location.hash='c'; s.replace('d','e')", "",
         "names that only look so"},
        {"location = 'a b'; location = ''; location = 'p?' + x", "", "no address, or a part of one"},
    };
    expectAddresses(rows);
}

TEST(ScriptLinks, AreNotTakenFromCommentsAndExpressions) {
    const ScriptRow rows[] = {
        {"// 'http://h/x'\n'http://h/a' /* \"http://h/x\" */ 'http://h/b' /* 'http://h/x'",
         "http://h/a http://h/b ", "comments"},
        {"<!-- 'http://h/x'\n'http://h/a'\n//-->", "http://h/a ", "what hid scripts from old browsers"},
        {"x = /['\"]/g; y = 'http://h/a'", "http://h/a ", "a quote in an expression opens nothing"},
        {"x = /[/'\\]]/; return /'/ ; y = 'http://h/a'", "http://h/a ",
         "a class, and a word before an expression"},
        {"x = a / b; y = 'http://h/a'; z = (1) / 2 + '/'", "http://h/a ", "a division is none"},
        {"x = /[ 'http://h/a'\n'http://h/b'", "http://h/a http://h/b ",
         "an expression that never ends is none"},
        {"x = 'never closed http://h/x\n'http://h/a'", "http://h/a ", "a literal ends in its line"},
        {"` never closed 'http://h/a'", "http://h/a ", "a template without an end is none"},
        {"'http://h/x", "", "the end of the script in a literal"},
        {"'\\", "", "and in an escape"},
        {"\"http://h/\\u12\" '\\u{110000000}' '\\xZ'", "http://h/u12 ", "what only looks like an escape"},
    };
    expectAddresses(rows);
}

}  // namespace
