#include "fuzz/target.h"
#include "settings/exception_list_check.h"

ZAB_FUZZ_TARGET(exception_list) {
    zabtest::checkExceptionList({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
