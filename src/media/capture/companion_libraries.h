// The download manager's libraries that read bodies: the content sniffer and the DASH parser.
//
// They lie beside its program and are loaded when they are first needed. One that cannot be loaded is looked
// for again at its next use; one that was loaded stays. What they hand back is read with bounds, for it is made
// of bodies that lie. Main thread only.
#pragma once

#include "media/capture/capture_run.h"

namespace zab {

CompanionLibraries& companionLibraries() noexcept;

}  // namespace zab
