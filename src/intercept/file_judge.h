// Which links of a page lead to files that somebody wants who asks for all of its downloads.
#pragma once

#include "settings/settings_view.h"
#include "web/link_processor.h"

namespace zab {

/// Judges by the catch list, then by the built-in list of media files. The settings outlive the judge, which
/// reads the list once.
FileJudge fileJudgeOf(const SettingsView& settings);

}  // namespace zab
