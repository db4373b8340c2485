#include "transfer/failure_report.h"

#include <charconv>

#include "binding/pieces.h"
#include "binding/text.h"

namespace zab {
namespace {

constexpr std::string_view kMissingAtStartText =
    "You have installed \"ZAB Integration\" extension successfully. Unfortunately the extension can not be "
    "used right away because it seems you did not install Zabrion yet. Would you like to know how to download "
    "and install Zabrion?";
constexpr std::string_view kNotInstalledText =
    "Cannot transfer file download to Zabrion. It's possible that it's not installed. Would you like to "
    "download and install Zabrion?";
constexpr std::string_view kNotRegisteredText =
    "The required ZAB components are not registered/found. Please reinstall Zabrion with Administrator rights";

constexpr std::string_view kRunsAsAdministrator = "RUNASADMIN";
constexpr std::string_view kBlankLine = "\r\n\r\n";

/// In a list such as "~ RUNASADMIN HIGHDPIAWARE".
bool hasWord(std::string_view list, std::string_view word) noexcept {
    for (const std::string_view piece : piecesOf(list, ' '))
        if (piece == word) return true;
    return false;
}

std::string upperHex(std::uint32_t value) {
    char digits[8];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value, 16).ptr;
    return uppered({digits, static_cast<std::size_t>(end - digits)});
}

/// The download manager is there and would be reachable: the words depend on what went wrong.
std::string messageFor(std::uint32_t status, const MessageTexts& texts) {
    using namespace transfer_failure;
    std::string message(texts[TextId::cannotTransfer].view());
    switch (status) {
        case kElevationRequired:
            message.append(kBlankLine).append(texts[TextId::differentPrivileges].view());
            message.append(kBlankLine).append(texts[TextId::checkBrowserProperties].view());
            break;
        case kPathNotFound:
        case kLibraryNotRegistered:
        case kClassNotRegistered: message.append(kBlankLine).append(kNotRegisteredText); break;
        default: message.append("\r\nError 0x").append(upperHex(status));
    }
    return message;
}

}  // namespace

FailureBox failureBoxFor(std::uint32_t status, const FailureReportFacts& facts, const MessageTexts& texts) {
    using Kind = FailureBox::Kind;
    if (status == transfer_failure::kMissingAtStart) return {Kind::question, std::string(kMissingAtStartText)};
    if (!facts.exePath) return {Kind::question, std::string(kNotInstalledText)};
    if (hasWord(facts.compatibilityLayer, kRunsAsAdministrator))
        return {Kind::information, std::string(texts[TextId::managerRunsElevated].view())};
    return {Kind::information, messageFor(status, texts)};
}

bool SharedBox::opens(Time now) noexcept {
    const std::lock_guard hold(mutex_);
    if (open_ > 0 && now - told_ < kTogether) return false;
    ++open_;
    told_ = now;
    return true;
}

void SharedBox::closed() noexcept {
    const std::lock_guard hold(mutex_);
    --open_;
}

}  // namespace zab
