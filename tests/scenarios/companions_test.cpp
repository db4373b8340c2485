// The download manager's companion libraries, as the module finds, loads and asks them: the button library, and
// those that read bodies.
#include "binding/library_win32.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

/// A response, with all that its body offers: a line for each entry, its link and its label.
struct Row {
    const char* url;
    const char* type;
    std::string body;
    const char* entries;
};

const Row kDash = {
    "http://h.example/m.mpd", "application/dash+xml",
    "<?xml version=\"1.0\"?><MPD><Period><AdaptationSet mimeType=\"video/mp4\"><Representation id=\"hd\" "
    "height=\"720\" bandwidth=\"2048000\"/><Representation id=\"sd\" height=\"360\" bandwidth=\"512000\"/>"
    "</AdaptationSet></Period></MPD>",
    "mpdtozab://http://h.example/m.mpd&selected_id=hd\t720p HD bitrate 2000kbps, MP4\n"
    "mpdtozab://http://h.example/m.mpd&selected_id=sd\t360p bitrate 500kbps, MP4\n"};
const Row kUnnamed = {"http://h.example/noname", "application/x-thing",
                      "ZABFACTS\x9\x10\x11\x12\x13 and its sound",
                      "http://h.example/noname\tnoname, 19 Bytes 9 sec\n"};

class Companions : public ScreenScenario {
  protected:
    Companions() { settings.set("ZABBI\\Firefox\\DwnlPanel\\!ALL!", 1u); }

    /// A body from its first byte to its end; its entries, as the button library knows them.
    std::string captures(const Row& row) {
        auto& page = opensPage();
        auto& channel = browser.requests({.url = row.url, .loadFlags = kEmbedded, .page = &page});
        browser.answers(channel, 200, {{"Content-Type", row.type}});
        browser.receives(channel, row.body, 7);
        browser.finishes(channel);
        const auto id = page.attributes.at(u"zabmzcc-ext-docid");
        using StandIn_Entries_t = std::uint32_t(std::uint64_t document, char16_t* text, std::uint32_t capacity);
        const auto entries = exportOf<StandIn_Entries_t>(GetModuleHandleA("zabbrbtn64.dll"), "StandIn_Entries");
        std::u16string lines(100'000, u'\0');
        lines.resize(entries == nullptr ? 0
                                        : entries(std::stoull(utf8FromUtf16(id)), lines.data(),
                                                  static_cast<std::uint32_t>(lines.size())));
        browser.unloads(id);
        return utf8FromUtf16(lines.substr(0, lines.find(u"!ALL!")));
    }
};

TEST_F(Companions, AreAskedAsSoonAsTheyAreThere) {
    for (const Row& row : {kDash, kUnnamed}) {
        settings.set("ExePath", SettingsTree::kProgram);
        EXPECT_EQ(captures(row), "") << row.url;
        settings.setCompanions();
        EXPECT_EQ(captures(row), row.entries);
    }
}

TEST_F(Companions, AreBelievedOnlyAsFarAsTheyMust) {
    Row cyclic = kDash;
    cyclic.body.insert(cyclic.body.find("<MPD") + 4, " profiles=\"cyclic\"");
    EXPECT_EQ(captures(cyclic), cyclic.entries) << "a list without an end";
    Row broken = kDash;
    broken.body = "<MPD >";
    captures(broken);
    using StandIn_Results_t = int();
    const auto results = exportOf<StandIn_Results_t>(GetModuleHandleA("zabvmprs64.dll"), "StandIn_Results");
    ASSERT_NE(results, nullptr);
    EXPECT_EQ(results(), 0) << "what it hands out is given back";
    Row overlong = kUnnamed;
    overlong.body.replace(0, 8, "ZABLONG!");
    EXPECT_EQ(captures(overlong), overlong.entries) << "an extension without its end";
}

}  // namespace
}  // namespace zab::testbed
