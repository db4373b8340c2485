#include "binding/runtime.h"
#include "binding/wide_win32.h"
