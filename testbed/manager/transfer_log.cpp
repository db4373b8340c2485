#include "transfer_log.h"

#include <oleauto.h>

#include "binding/utf.h"
#include "binding/wide_win32.h"

namespace zab::testbed {

using Json = nlohmann::ordered_json;

Json jsonOf(BSTR text) {
    if (text == nullptr) return nullptr;
    return utf8FromUtf16({utf16(text), SysStringLen(text)});
}

Json jsonOf(const VARIANT* value) {
    if (value == nullptr) return nullptr;
    if (value->vt != (VT_ARRAY | VT_BSTR)) return value->vt;
    SAFEARRAY* const array = value->parray;
    LONG first = 0;
    LONG last = -1;
    void* data = nullptr;
    if (array == nullptr || SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &first)) ||
        FAILED(SafeArrayGetUBound(array, 1, &last)) || FAILED(SafeArrayAccessData(array, &data)))
        return "not readable";
    Json texts = Json::array();
    for (LONG i = 0; i <= last - first; ++i) texts.push_back(jsonOf(static_cast<BSTR*>(data)[i]));
    SafeArrayUnaccessData(array);
    return texts;
}

void appendLine(const std::string& file, const Json& line) {
    const std::string text = line.dump() + "\n";
    const HANDLE handle = CreateFileA(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(handle);
}

}  // namespace zab::testbed
