#include "fuzz/target.h"
#include "web/html_check.h"

ZAB_FUZZ_TARGET(html) { zabtest::checkHtml({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
