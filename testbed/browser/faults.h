// Faults are counted: the n-th call of an operation fails, and the count tells whether it was reached.
//
// Operations are named "helper5.61" (interface and slot; slot 0 is a query), "NS_StringSetData" (an entry
// point) or "service @zab/mozilla_cc_helper5;1" (a lookup).
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "binding/interfaces/supports.h"

namespace zab::testbed {

class Faults {
  public:
    /// A status that is a success stands for an operation that claims success and does nothing. Counts start
    /// again; `n` is 1 for the first call of `operation`, or of all of them when it is empty.
    void failNth(std::uint32_t n, std::string operation = {}, nsresult status = NS_ERROR_FAILURE) {
        *this = {};
        operation_ = std::move(operation);
        at_ = n;
        status_ = status;
    }
    /// Every call of `operation` from the n-th on.
    void failFrom(std::uint32_t n, std::string operation, nsresult status = NS_ERROR_FAILURE) {
        failNth(n, std::move(operation), status);
        lasts_ = true;
    }
    void failAll(std::string operation, nsresult status = NS_ERROR_FAILURE) {
        failFrom(1, std::move(operation), status);
    }
    void none() { *this = {}; }

    [[nodiscard]] bool reached() const { return !failedOperation_.empty(); }
    /// What failed, for the message of a test.
    [[nodiscard]] const std::string& failedOperation() const { return failedOperation_; }
    [[nodiscard]] std::uint32_t countOf(const std::string& operation) const {
        const auto found = counts_.find(operation);
        return found == counts_.end() ? 0 : found->second;
    }

    /// One call of `operation`: its fault, or success.
    nsresult step(const std::string& operation) {
        const std::uint32_t ofThis = ++counts_[operation];
        ++total_;
        if (!operation_.empty() && operation != operation_) return NS_OK;
        const std::uint32_t n = operation_.empty() ? total_ : ofThis;
        if (lasts_ ? n < at_ : n != at_) return NS_OK;
        failedOperation_ = operation;
        return status_;
    }

    /// One call of an operation that cannot claim what it has not done.
    bool fails(const std::string& operation) {
        if (failed(status_)) return failed(step(operation));
        note(operation);
        return false;
    }

    /// One call of an operation that cannot fail.
    void note(const std::string& operation) { ++counts_[operation]; }

  private:
    std::map<std::string, std::uint32_t> counts_;
    std::uint32_t total_ = 0;
    std::string operation_;
    std::uint32_t at_ = 0;
    bool lasts_ = false;
    nsresult status_ = NS_OK;
    std::string failedOperation_;
};

}  // namespace zab::testbed
