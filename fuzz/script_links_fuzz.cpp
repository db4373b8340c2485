#include "fuzz/target.h"
#include "web/script_links_check.h"

ZAB_FUZZ_TARGET(script_links) {
    zabtest::checkScriptLinks({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
