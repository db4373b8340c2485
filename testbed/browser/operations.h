// The interfaces of the stand-in browser: which slot of a service does what.
#pragma once

#include "browser/bed_object.h"

namespace zab::testbed {

/// A service by its contract ID; it answers to one interface.
struct Service {
    const char* contract;
    const Interface* interface;
};
std::span<const Service> services();

extern const Interface kServiceManager;

}  // namespace zab::testbed
