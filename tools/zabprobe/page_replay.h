// What the users of a capture's pages would see: each page's responses go through the module's own memory of a
// page, in the order in which they came.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "zabprobe/capture.h"
#include "zabprobe/exchange_reader.h"

namespace zabprobe {

/// The texts of a page's menu, in its order; and the responses that offered nothing, each with one sentence.
struct ShownPage {
    struct Choice {
        std::string label;
        zab::MediaEntry entry;
    };
    struct Silence {
        std::string url;
        std::string_view why;
    };

    std::string url, title;
    std::vector<Choice> menu;
    std::vector<Silence> silent;
};

class PageReplay {
  public:
    explicit PageReplay(const zab::SettingsView& settings) : settings_(settings) {}

    /// Exchanges in the order of the capture: a page before what it loads.
    void add(const Exchange& exchange);
    void addTitle(const std::string& page, const std::string& title) { titles_[page] = title; }

    /// Replays all that was added, once.
    std::vector<ShownPage> run();

  private:
    struct Page {
        std::string name;  // the capture's; empty: known by its address
        std::string url;
        std::vector<ShownPage::Silence> silent = {};
        zab::LocalPage memory{};
    };
    struct Response {
        Exchange exchange;
        std::size_t page;
        std::int64_t moment;  // ms since 1970: when the module learns what it offers
    };

    std::size_t addPage(std::string_view name, std::string_view url);
    std::size_t pageOf(const Exchange& exchange);
    std::size_t pageNamed(std::string_view name, std::string_view referrer);
    std::size_t pageAt(std::string_view referrer);
    void replay(const Response& response);

    const zab::SettingsView& settings_;
    zab::CapturedHeaders scratch_;
    std::deque<Page> pages_;
    std::map<std::string, std::size_t, std::less<>> documents_;  // addresses of documents, frames too
    std::map<std::string, std::string> titles_;                  // by the capture's name
    std::vector<Response> responses_;
};

/// The pages as JSON, and as a table for people.
Json shownJson(const std::vector<ShownPage>& pages);
std::string shownTable(const std::vector<ShownPage>& pages);

}  // namespace zabprobe
