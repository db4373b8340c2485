// The progressive MP4 renditions in a Vimeo player page or player configuration, and the page's title.
//
// Takes the body as it is, up to its first NUL; gives bytes as they stand there, nothing decoded. The objects
// behind "progressive": are read laxly, as a script would write them: keys and values in either kind of quotes
// or bare. One that cannot be read, lacks a key or is not "video/mp4" is dropped. Cost: linear; memory: the
// renditions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zab {

struct VimeoRendition {
    std::string url;
    std::string quality;  // as written, such as "720p"
};

class CVimeoParser {
  public:
    CVimeoParser() = default;
    virtual ~CVimeoParser() = default;
    CVimeoParser(const CVimeoParser&) = delete;
    CVimeoParser& operator=(const CVimeoParser&) = delete;

    /// True when there is at least one rendition afterwards.
    bool parse(std::string_view data);

    [[nodiscard]] const std::string& title() const noexcept { return title_; }
    [[nodiscard]] const std::vector<VimeoRendition>& renditions() const noexcept { return renditions_; }

  private:
    void readObject(std::string_view members);

    std::string title_;
    std::vector<VimeoRendition> renditions_;
};

}  // namespace zab
