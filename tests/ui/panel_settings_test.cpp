#include "ui/panel_settings.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(PanelSettings, SayForWhichLinksAPopupOpens) {
    const std::string links[] = {"http://h.example/a.ZIP?x=.rar", "http://h.example/page"};
    const struct {
        std::uint32_t mode;
        std::vector<std::string> names;
        std::span<const std::string> links;
        bool opens;
        const char* why;
    } rows[] = {
        {7, {}, links, true, "an unknown mode is like the first"},
        {3, {"rar", "zip"}, links, true, "one of the names, in any case"},
        {3, {"rar"}, links, false, "the query is no file name"},
        {3, {"", "h"}, links, false, "a link without extension has none of them"},
        {3, {}, links, false, "no names"},
    };
    for (const auto& row : rows) {
        CDwnlSelectedPanelSettings settings;
        settings.mode = row.mode;
        settings.names = row.names;
        EXPECT_EQ(settings.opensPopup(row.links), row.opens) << row.why;
    }
}

}  // namespace
}  // namespace zab
