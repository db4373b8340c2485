// A choice of the user on its way: what it names, how far it has come, and what it needs of the world.
//
// One transfer at a time, each with its own repeats; one that fails does not end the others. What fails is told
// once.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "transfer/transfer.h"
#include "ui/media_choice.h"
#include "ui/media_request.h"

namespace zab {

/// Sends the transfers of one choice. Made, used and destroyed on one thread.
class ChoiceSender {
  public:
    virtual ~ChoiceSender() = default;
    /// `requestSeen`: the record tells what the browser's own request told. May lead back to the controllers.
    virtual TransferResult send(const TransferRecord& record, bool requestSeen) = 0;
};

struct Choice {
    MediaRequest request;
    ChosenMedia media;
    std::shared_ptr<void> place;           // among the choices that wait, until this one ends
    std::unique_ptr<ChoiceSender> sender;  // from the first transfer on
    std::size_t sent = 0;                  // transfers that are done with
    int retries = 0;                       // of the next one
    bool givenUp = false;                  // one was repeated too often, and nobody has told the user

    [[nodiscard]] bool ended() const noexcept { return sent == media.count(); }

    /// Tries the next transfer once. Not for a choice that has ended.
    void sendNext() {
        const TransferResult result = sender->send(media.transfer(sent), media.object.has_value());
        if (result == TransferResult::retryLater && retries++ < kMostRetries) return;
        givenUp |= result == TransferResult::retryLater;
        ++sent;
        retries = 0;
    }
};

}  // namespace zab
