// What an entry becomes when the user chooses it: a transfer like any other, without flags.
#pragma once

#include "media/capture/media_entry.h"
#include "transfer/transfer_record.h"

namespace zab {

/// Texts as the entry has them; sending makes them narrow.
TransferRecord transferOf(const MediaEntry& entry);

}  // namespace zab
