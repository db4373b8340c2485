// What the user is told when the download manager could not be reached: which words, which buttons.
//
// Texts are UTF-8. Facts in, a box out; showing it is the edge's work.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "settings/message_texts.h"

namespace zab {

inline constexpr std::string_view kFailureBoxTitle = "\"ZAB Integration\" extension";
inline constexpr const char* kInstallationPage = "https://www.zabrionhub.example/install";

/// Results of the attempt to reach the download manager, as far as they have words of their own.
namespace transfer_failure {
inline constexpr std::uint32_t kMissingAtStart = 0;  // no attempt was made: the first start in this browser
inline constexpr std::uint32_t kPathNotFound = 0x80070003;
inline constexpr std::uint32_t kElevationRequired = 0x800702E4;
inline constexpr std::uint32_t kClassNotRegistered = 0x80040154;
inline constexpr std::uint32_t kLibraryNotRegistered = 0x8002801D;
inline constexpr std::uint32_t kNoCallsNow = 0x8001010D;  // inside a message sent by another thread
}  // namespace transfer_failure

struct FailureReportFacts {
    std::optional<std::string> exePath;  // the download manager's program; absent: it is not installed
    std::string compatibilityLayer;      // the system's settings for that program, blank-separated words
};

struct FailureBox {
    enum class Kind {
        question,     // Yes opens the installation page
        information,  // the button closes it
    };
    Kind kind;
    std::string text;
    bool operator==(const FailureBox&) const = default;
};

FailureBox failureBoxFor(std::uint32_t status, const FailureReportFacts& facts, const MessageTexts& texts);

/// Failures that come together are told once: one that meets an open box, and comes soon after the failure that
/// the box tells, is told by it. For any thread.
class SharedBox {
  public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds kTogether{5};

    /// A failure happens; false when the open box tells it. Else the caller opens a box and closes it.
    [[nodiscard]] bool opens(Time now) noexcept;
    void closed() noexcept;

  private:
    std::mutex mutex_;
    int open_ = 0;
    Time told_{};  // when the newest box's failure happened
};

/// Whether a call to the download manager failed on its way (its process died, the connection is gone) and so
/// was not made: a code of the RPC facility, or an RPC error of the system. What the download manager itself
/// answers never counts.
constexpr bool isTransportFailure(std::uint32_t status) noexcept {
    constexpr std::uint32_t kRpcFacility = 0x80010000;
    constexpr std::uint32_t kSystemRpcErrors = 0x80070600;
    return (status & 0xFFFF0000) == kRpcFacility || (status & 0xFFFFFF00) == kSystemRpcErrors;
}

}  // namespace zab
