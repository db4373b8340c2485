#include "ui/media_choice.h"

namespace zab {

TransferRecord transferOf(const MediaEntry& entry) {
    TransferRecord record;
    record.url = entry.link;
    record.referrer = entry.page.referrer;
    record.cookies = entry.page.cookies;
    record.userAgent = entry.page.userAgent;
    record.typeHint = entry.extension;
    record.pageTitle = entry.page.title;
    record.pageUrl = entry.page.url;
    record.secondUrl = entry.secondUrl;
    record.extraData = entry.extra;
    record.description = entry.description;
    record.sizeBytes = entry.size;
    record.flags = transfer_flags::kPlain;
    return record;
}

}  // namespace zab
