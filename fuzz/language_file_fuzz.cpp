#include "fuzz/target.h"
#include "settings/language_file_check.h"

ZAB_FUZZ_TARGET(language_file) {
    zabtest::checkLanguageFile({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
