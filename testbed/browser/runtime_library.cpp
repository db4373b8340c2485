#include "browser/library.h"

namespace zab::testbed {

RuntimeLibrary::RuntimeLibrary(const std::string& name) {
    entries.module = loadLibrary(name);
    const auto find = [this](const char* entry) { return exportedBy(entries.module, entry); };
    for (const auto& entry : kRuntimeEntryPoints)
        *reinterpret_cast<void**>(reinterpret_cast<char*>(&entries) + entry.offset) = find(entry.name);
    setHost = reinterpret_cast<StandIn_SetHost_t*>(find("StandIn_SetHost"));
    callModule = reinterpret_cast<StandIn_Call_t*>(find("StandIn_Call"));
    callSlot = reinterpret_cast<StandIn_CallSlot_t*>(find("StandIn_CallSlot"));
    table = reinterpret_cast<StandIn_Table_t*>(find("StandIn_Table"))();
    containers = reinterpret_cast<StandIn_Balance_t*>(find("StandIn_Balance"))();
}

// What stands behind the text shows in every result that was read past its length.

PassedText::PassedText(const RuntimeLibrary& runtime, std::string_view text)
    : runtime_(runtime), isWide_(false), narrow_(std::string(text) + "<behind the text>") {
    runtime_.entries.NS_CStringContainerInit2(&storage_, narrow_.data(),
                                              static_cast<std::uint32_t>(text.size()), 2 | 8);
}

PassedText::PassedText(const RuntimeLibrary& runtime, std::u16string_view text)
    : runtime_(runtime), isWide_(true), wide_(std::u16string(text) + u"<behind the text>") {
    runtime_.entries.NS_StringContainerInit2(&storage_, wide_.data(), static_cast<std::uint32_t>(text.size()),
                                             2 | 8);
}

PassedText::~PassedText() {
    isWide_ ? runtime_.entries.NS_StringContainerFinish(&storage_)
            : runtime_.entries.NS_CStringContainerFinish(&storage_);
}

}  // namespace zab::testbed
