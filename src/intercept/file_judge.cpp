#include "intercept/file_judge.h"

#include <memory>

#include "intercept/catch_list.h"
#include "page/media_entry.h"
#include "web/url.h"

namespace zab {

FileJudge fileJudgeOf(const SettingsView& settings) {
    return [list = std::make_shared<CatchList>(settings)](std::string_view url) -> std::optional<LinkReason> {
        const std::string_view name = lastSegmentOf(url);
        if (acceptsFileName(name, NumberedParts::allowed, *list)) return LinkReason::inCatchList;
        if (isMediaExtension(plainExtensionOf(name))) return LinkReason::mediaFile;
        return std::nullopt;
    };
}

}  // namespace zab
