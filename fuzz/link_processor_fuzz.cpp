#include "fuzz/target.h"
#include "web/link_processor_check.h"

ZAB_FUZZ_TARGET(link_processor) {
    zabtest::checkLinkProcessor({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
