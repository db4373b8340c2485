// What a browser, its extension and its user do, in an order that bytes decide.
#pragma once

#include <string>

#include "binding/byte_reader.h"

namespace zab::testbed {

/// Plays the bytes to a module with its state as new. What it did that no browser would survive, and what it
/// still held of the browser's when every page was gone; empty is right.
std::string faultsOfAnyOrder(Bytes bytes);

}  // namespace zab::testbed
