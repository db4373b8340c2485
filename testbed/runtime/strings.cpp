// The frozen string API, and the entry points to services.
//
// A container is 16 bytes: data, length in units, flags. Data that a caller lends (DEPEND) is used as it lies,
// terminated or not, and never written; everything else is the container's own, with a terminator. Entry points
// that the module looks up and never calls are refused, so that it leans on none of them unseen.
#include "freestanding.h"
#include "standin.h"

namespace {

constexpr uint32_t kAll = 0xFFFFFFFF;
constexpr nsresult kInvalidArgument = 0x80070057;
constexpr uint32_t kDepend = 2, kSubstring = 8;  // flags of Init2
constexpr uint32_t kTerminated = 1, kOwned = 4;  // flags of a container

const StandInHost* g_host = nullptr;
int32_t g_containers = 0;

template <class Char>
struct Container {
    Char* data;
    uint32_t length;
    uint32_t flags;
};
static_assert(sizeof(Container<char>) == 16 && sizeof(Container<char16_t>) == 16);

template <class Char>
inline constexpr Char kNothing[1]{};

/// Runs an entry point unless the host lets this call of it fail.
template <class Body>
nsresult entered(const char* name, Body body) {
    const nsresult status = g_host == nullptr ? NS_OK : g_host->enter(g_host->context, name);
    return failed(status) ? status : body();
}

template <class Char>
uint32_t lengthOf(const Char* text) {
    uint32_t length = 0;
    while (text[length] != 0) ++length;
    return length;
}

template <class Char>
void init(Container<Char>* text) {
    *text = {const_cast<Char*>(kNothing<Char>), 0, kTerminated};
}

template <class Char>
void drop(Container<Char>* text) {
    if ((text->flags & kOwned) != 0) deallocate(text->data);
    init(text);
}

/// Cuts a part out of the text and puts `data` in its place, into a buffer of the container's own.
template <class Char>
nsresult splice(Container<Char>* text, uint32_t offset, uint32_t cut, const Char* data, uint32_t length) {
    if (data == nullptr) length = 0;
    if (length == kAll) length = lengthOf(data);
    if (offset > text->length) offset = text->length;
    if (cut > text->length - offset) cut = text->length - offset;
    if (cut == 0 && length == 0)
        return NS_OK;  // nothing changes, not even that a lent text may end without a terminator
    const uint32_t tail = text->length - offset - cut;
    const uint32_t total = offset + length + tail;
    Char* buffer = allocate<Char>(size_t{total} + 1);
    memcpy(buffer, text->data, offset * sizeof(Char));
    if (length != 0) memcpy(buffer + offset, data, length * sizeof(Char));
    memcpy(buffer + offset + length, text->data + offset + cut, tail * sizeof(Char));
    drop(text);
    *text = {buffer, total, kTerminated | kOwned};
    return NS_OK;
}

template <class Char>
nsresult init2(Container<Char>* text, const Char* data, uint32_t length, uint32_t flags) {
    if (data != nullptr && (flags & kSubstring) != 0 && length == kAll) return kInvalidArgument;
    init(text);
    ++g_containers;
    if (data == nullptr) return NS_OK;
    if ((flags & kDepend) == 0) return splice(text, 0, kAll, data, length);
    *text = {const_cast<Char*>(data), length == kAll ? lengthOf(data) : length,
             (flags & kSubstring) != 0 ? 0 : kTerminated};
    return NS_OK;
}

template <class Char>
uint32_t enterGet(const char* name, const Container<Char>* text, const Char** data, uint8_t* terminated) {
    *data = nullptr;
    const nsresult status = entered(name, [&] {
        *data = text->data;
        return NS_OK;
    });
    if (terminated != nullptr) *terminated = (text->flags & kTerminated) != 0;
    return failed(status) ? 0 : text->length;
}

nsresult refused(const char* entryPoint) {
    if (g_host != nullptr) g_host->refused(g_host->context, entryPoint);
    return NS_ERROR_NOT_IMPLEMENTED;
}

using Wide = Container<char16_t>;
using Narrow = Container<char>;

}  // namespace

uint64_t callHost(StandInObject* object, uint32_t slot, const uint64_t* arguments) {
    return g_host == nullptr ? NS_ERROR_UNEXPECTED : g_host->call(g_host->context, object, slot, arguments);
}

ENTRY void StandIn_SetHost(const StandInHost* host) { g_host = host; }
ENTRY const int32_t* StandIn_Balance() { return &g_containers; }

ENTRY nsresult NS_GetServiceManager(nsIServiceManager** out) {
    *out = nullptr;
    return entered("NS_GetServiceManager", [&] {
        return g_host == nullptr ? NS_ERROR_UNEXPECTED : g_host->serviceManager(g_host->context, out);
    });
}
ENTRY nsresult NS_GetComponentManager(nsISupports**) { return refused("NS_GetComponentManager"); }
ENTRY void NS_Free(void*) { refused("NS_Free"); }

// The entry points, once for both families. Types cannot stand in parentheses.
// clang-format off
// NOLINTBEGIN(bugprone-macro-parentheses)
#define FAMILY(P, Text, Char)                                                                                    \
ENTRY nsresult NS_##P##ContainerInit(Text* text) {                                                               \
    return entered("NS_" #P "ContainerInit", [&] { return init2<Char>(text, nullptr, 0, 0); }); }                \
ENTRY nsresult NS_##P##ContainerInit2(Text* text, const Char* data, uint32_t length, uint32_t flags) {           \
    return entered("NS_" #P "ContainerInit2", [&] { return init2(text, data, length, flags); }); }               \
ENTRY void NS_##P##ContainerFinish(Text* text) { drop(text); --g_containers; }                                   \
ENTRY uint32_t NS_##P##GetData(const Text* text, const Char** data, uint8_t* terminated) {                       \
    return enterGet("NS_" #P "GetData", text, data, terminated); }                                               \
ENTRY uint32_t NS_##P##GetMutableData(Text*, uint32_t, Char**) { return refused("NS_" #P "GetMutableData"), 0; } \
ENTRY Char* NS_##P##CloneData(const Text*) { return refused("NS_" #P "CloneData"), nullptr; }                    \
ENTRY nsresult NS_##P##SetData(Text* text, const Char* data, uint32_t length) {                                  \
    return entered("NS_" #P "SetData", [&] { return splice(text, 0, kAll, data, length); }); }                   \
ENTRY nsresult NS_##P##SetDataRange(Text* text, uint32_t offset, uint32_t cut, const Char* data,                 \
                                    uint32_t length) {                                                           \
    return entered("NS_" #P "SetDataRange", [&] { return splice(text, offset, cut, data, length); }); }          \
ENTRY nsresult NS_##P##Copy(Text*, const Text*) { return refused("NS_" #P "Copy"); }
// NOLINTEND(bugprone-macro-parentheses)
// clang-format on

FAMILY(String, Wide, char16_t)
FAMILY(CString, Narrow, char)

ENTRY nsresult NS_CStringToUTF16(const Narrow*, uint32_t, Wide*) { return refused("NS_CStringToUTF16"); }
ENTRY nsresult NS_UTF16ToCString(const Wide*, uint32_t, Narrow*) { return refused("NS_UTF16ToCString"); }
