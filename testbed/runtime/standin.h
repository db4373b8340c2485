// What the stand-in browser sets and calls in the stand-in runtime, over plain functions that both compilers
// read.
//
// The runtime gives the module real string containers and real tables, built by the browser's compiler. What an
// operation does is the browser's affair: every slot of every object ends in StandInHost::call.
#pragma once

#include "binding/interfaces/dom.h"
#include "binding/interfaces/helpers.h"
#include "binding/interfaces/http.h"
#include "binding/interfaces/services.h"

/// Slots of every table: more than the largest interface has, so that a call behind its end is seen too.
inline constexpr uint32_t kStandInSlots = 96;
/// The most arguments that an operation takes besides its object.
inline constexpr uint32_t kStandInArguments = 6;

/// An object of the browser as the module holds it: a table pointer first, as every interface pointer has.
struct StandInObject {
    const void* table;
    void* context;  // of the browser's own choice
};

struct StandInHost {
    void* context;
    /// An operation was called. Arguments are whole registers: what lies above a small argument is undefined,
    /// and what lies behind the last one is whatever the stack holds.
    uint64_t (*call)(void* context, StandInObject* object, uint32_t slot, const uint64_t* arguments);
    /// An entry point was called by name; a failure is what it then answers (nothing, where it has no status).
    nsresult (*enter)(void* context, const char* entryPoint);
    /// An entry point was called that no module needs.
    void (*refused)(void* context, const char* entryPoint);
    /// Gives the service manager with one reference.
    nsresult (*serviceManager)(void* context, nsIServiceManager** out);
};

/// Which of a module's objects is called, through its table as the browser's compiler reads the interface.
enum class StandInCall : uint32_t {
    queryInterface,   // a: const nsIID*, b: void**
    addRef,           //
    release,          //
    observe,          // nsIObserver; a: subject, b: const char* topic, c: const char16_t* data
    modifyRequest,    // nsIHttpNotify; a: channel
    examineResponse,  // nsIHttpNotify; a: channel
    visitHeader,      // nsIHttpHeaderVisitor; a: name, b: value
    visitHeader7,     // nsIHttpHeaderVisitor_7; a: name, b: value
    mouseEvent,       // window observer, the operation behind Observe; a: event
    wantsMoreData,    // iZABSListener; a: uint32_t*
    responseData,     // iZABSListener; a: bytes, b: length
    handleEvent,      // nsIDOMEventListener; a: event
};

extern "C" {
using StandIn_SetHost_t = void(const StandInHost* host);
/// The table that every object of the browser shares.
using StandIn_Table_t = const void*();
using StandIn_Call_t = uint32_t(StandInCall which, void* object, uint64_t a, uint64_t b, uint64_t c);
/// Any operation by its slot; always with as many arguments as the longest operation has.
using StandIn_CallSlot_t = uint32_t(void* object, uint32_t slot, const uint64_t* arguments);
/// How many string containers were initialised and not finished.
using StandIn_Balance_t = const int32_t*();
}
