// The frozen string API, and the entry points to services.
//
// A container is 16 bytes: data, length in units, flags. Data that a caller lends (DEPEND) is used as it lies,
// terminated or not, and never written; everything else is the container's own, with a terminator.
#include "freestanding.h"
#include "standin.h"

namespace {

constexpr uint32_t kAll = 0xFFFFFFFF;
constexpr nsresult kInvalidArgument = 0x80070057;
constexpr uint32_t kDepend = 2, kAdopt = 4, kSubstring = 8;  // flags of Init2
constexpr uint32_t kTerminated = 1, kOwned = 4;              // flags of a container

const StandInHost* g_host = nullptr;
StandInBalance g_balance{};

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
void splice(Container<Char>* text, uint32_t offset, uint32_t cut, const Char* data, uint32_t length) {
    if (data == nullptr) length = 0;
    if (length == kAll) length = lengthOf(data);
    if (offset > text->length) offset = text->length;
    if (cut > text->length - offset) cut = text->length - offset;
    if (cut == 0 && length == 0)
        return;  // nothing changes, not even that a lent text may end without a terminator
    const uint32_t tail = text->length - offset - cut;
    const uint32_t total = offset + length + tail;
    Char* buffer = allocate<Char>(size_t{total} + 1);
    memcpy(buffer, text->data, offset * sizeof(Char));
    if (length != 0) memcpy(buffer + offset, data, length * sizeof(Char));
    memcpy(buffer + offset + length, text->data + offset + cut, tail * sizeof(Char));
    drop(text);
    *text = {buffer, total, kTerminated | kOwned};
}

template <class Char>
nsresult init2(Container<Char>* text, const Char* data, uint32_t length, uint32_t flags) {
    if (data != nullptr && (flags & kSubstring) != 0 && length == kAll) return kInvalidArgument;
    init(text);
    ++g_balance.containers;
    if (data == nullptr) return NS_OK;
    if ((flags & (kDepend | kAdopt)) == 0) {
        splice(text, 0, kAll, data, length);
    } else {
        *text = {const_cast<Char*>(data), length == kAll ? lengthOf(data) : length,
                 ((flags & kSubstring) != 0 ? 0 : kTerminated) | ((flags & kAdopt) != 0 ? kOwned : 0)};
    }
    return NS_OK;
}

/// A buffer of the container's own with room for `length` units (kAll: as many as it has).
template <class Char>
Char* resize(Container<Char>* text, uint32_t length) {
    if (length == kAll) length = text->length;
    Char* buffer = allocate<Char>(size_t{length} + 1);
    memcpy(buffer, text->data, (length < text->length ? length : text->length) * sizeof(Char));
    drop(text);
    *text = {buffer, length, kTerminated | kOwned};
    return buffer;
}

// The entry points, once for both families.

template <class Char>
nsresult enterInit(const char* name, Container<Char>* text, const Char* data, uint32_t length, uint32_t flags) {
    return entered(name, [&] { return init2(text, data, length, flags); });
}

template <class Char>
void finish(Container<Char>* text) {
    drop(text);
    --g_balance.containers;
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

template <class Char>
uint32_t enterMutable(const char* name, Container<Char>* text, uint32_t length, Char** data) {
    *data = nullptr;
    const nsresult status = entered(name, [&] {
        *data = resize(text, length);
        return NS_OK;
    });
    return failed(status) ? 0 : text->length;
}

template <class Char>
Char* enterClone(const char* name, const Container<Char>* text) {
    Char* copy = nullptr;
    entered(name, [&] {
        copy = allocate<Char>(size_t{text->length} + 1);
        memcpy(copy, text->data, text->length * sizeof(Char));
        ++g_balance.clones;
        return NS_OK;
    });
    return copy;
}

template <class Char>
nsresult enterSplice(const char* name, Container<Char>* text, uint32_t offset, uint32_t cut, const Char* data,
                     uint32_t length) {
    return entered(name, [&] {
        splice(text, offset, cut, data, length);
        return NS_OK;
    });
}

/// Windows' number of an encoding; ASCII, which has none, widens and narrows unit by unit.
constexpr uint32_t codePageOf(uint32_t encoding) { return encoding == 1 ? 65001 : 0; }

using Wide = Container<char16_t>;
using Narrow = Container<char>;

}  // namespace

uint64_t callHost(StandInObject* object, uint32_t slot, const uint64_t* arguments) {
    return g_host == nullptr ? NS_ERROR_UNEXPECTED : g_host->call(g_host->context, object, slot, arguments);
}

ENTRY void StandIn_SetHost(const StandInHost* host) { g_host = host; }
ENTRY const StandInBalance* StandIn_Balance() { return &g_balance; }

ENTRY nsresult NS_GetServiceManager(nsIServiceManager** out) {
    *out = nullptr;
    return entered("NS_GetServiceManager", [&] {
        return g_host == nullptr ? NS_ERROR_UNEXPECTED : g_host->serviceManager(g_host->context, out);
    });
}
ENTRY nsresult NS_GetComponentManager(nsISupports** out) {
    *out = nullptr;
    return entered("NS_GetComponentManager", [] { return NS_ERROR_NOT_IMPLEMENTED; });
}
ENTRY void NS_Free(void* memory) {
    if (memory != nullptr) --g_balance.clones;
    deallocate(memory);
}

// clang-format off
#define FAMILY(P, Text, Char)                                                                                    \
ENTRY nsresult NS_##P##ContainerInit(Text* text) {                                                               \
    return enterInit<Char>("NS_" #P "ContainerInit", text, nullptr, 0, 0); }                                     \
ENTRY nsresult NS_##P##ContainerInit2(Text* text, const Char* data, uint32_t length, uint32_t flags) {           \
    return enterInit("NS_" #P "ContainerInit2", text, data, length, flags); }                                    \
ENTRY void NS_##P##ContainerFinish(Text* text) { finish(text); }                                                 \
ENTRY uint32_t NS_##P##GetData(const Text* text, const Char** data, uint8_t* terminated) {                       \
    return enterGet("NS_" #P "GetData", text, data, terminated); }                                               \
ENTRY uint32_t NS_##P##GetMutableData(Text* text, uint32_t length, Char** data) {                                \
    return enterMutable("NS_" #P "GetMutableData", text, length, data); }                                        \
ENTRY Char* NS_##P##CloneData(const Text* text) { return enterClone("NS_" #P "CloneData", text); }               \
ENTRY nsresult NS_##P##SetData(Text* text, const Char* data, uint32_t length) {                                  \
    return enterSplice("NS_" #P "SetData", text, 0, kAll, data, length); }                                       \
ENTRY nsresult NS_##P##SetDataRange(Text* text, uint32_t offset, uint32_t cut, const Char* data,                 \
                                    uint32_t length) {                                                           \
    return enterSplice("NS_" #P "SetDataRange", text, offset, cut, data, length); }                              \
ENTRY nsresult NS_##P##Copy(Text* to, const Text* from) {                                                        \
    return enterSplice<Char>("NS_" #P "Copy", to, 0, kAll, from->data, from->length); }
// clang-format on

FAMILY(String, Wide, char16_t)
FAMILY(CString, Narrow, char)

ENTRY nsresult NS_CStringToUTF16(const Narrow* from, uint32_t encoding, Wide* to) {
    return entered("NS_CStringToUTF16", [&]() -> nsresult {
        if (encoding > 2) return NS_ERROR_NOT_IMPLEMENTED;
        const uint32_t codePage = codePageOf(encoding);
        constexpr uint32_t kWholeOrNothing = 8;  // broken UTF-8 becomes an empty text
        const uint32_t flags = encoding == 1 ? kWholeOrNothing : 0;
        const auto bytes = static_cast<int>(from->length);
        const int units =
            encoding == 0 ? bytes : MultiByteToWideChar(codePage, flags, from->data, bytes, nullptr, 0);
        char16_t* data = resize(to, static_cast<uint32_t>(units));
        if (encoding != 0) MultiByteToWideChar(codePage, flags, from->data, bytes, data, units);
        for (int i = 0; encoding == 0 && i < bytes; ++i) data[i] = static_cast<unsigned char>(from->data[i]);
        return NS_OK;
    });
}

ENTRY nsresult NS_UTF16ToCString(const Wide* from, uint32_t encoding, Narrow* to) {
    return entered("NS_UTF16ToCString", [&]() -> nsresult {
        if (encoding > 2) return NS_ERROR_NOT_IMPLEMENTED;
        const uint32_t codePage = codePageOf(encoding);
        const auto units = static_cast<int>(from->length);
        const int bytes =
            encoding == 0 ? units
                          : WideCharToMultiByte(codePage, 0, from->data, units, nullptr, 0, nullptr, nullptr);
        char* data = resize(to, static_cast<uint32_t>(bytes));
        if (encoding != 0) WideCharToMultiByte(codePage, 0, from->data, units, data, bytes, nullptr, nullptr);
        for (int i = 0; encoding == 0 && i < units; ++i) data[i] = static_cast<char>(from->data[i]);
        return NS_OK;
    });
}
