// Tables in both directions: those of the browser's objects, and calls into the objects of the module.
//
// A browser's object here is a bare table of numbered slots, as the published slot numbers give them: it shares
// no declaration with the module, so a slot too many in one of the module's interface classes is a wrong call.
// The other direction goes through those classes, read by the browser's compiler.
#include "freestanding.h"
#include "standin.h"

uint64_t callHost(StandInObject* object, uint32_t slot, const uint64_t* arguments);

namespace {

template <uint32_t Slot>
uint64_t operation(StandInObject* self, uint64_t a, uint64_t b, uint64_t c, uint64_t d, uint64_t e,
                   uint64_t f) {
    const uint64_t arguments[kStandInArguments] = {a, b, c, d, e, f};
    return callHost(self, Slot, arguments);
}

using Operation = uint64_t (*)(StandInObject*, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);

template <uint32_t Slot = 0>
constexpr void fill(Operation* slots) {
    slots[Slot] = &operation<Slot>;
    if constexpr (Slot + 1 < kStandInSlots) fill<Slot + 1>(slots);
}
constexpr struct ObjectTable {
    constexpr ObjectTable() { fill(slots); }
    Operation slots[kStandInSlots]{};
} kTable;

/// The module's window observer: the operation behind Observe is reached by no published interface.
class WindowObserver : public nsIObserver {
  public:
    virtual nsresult HandleMouseEvent(nsISupports* event) = 0;
};

/// A register, as whatever the operation takes.
struct Argument {
    uint64_t word;
    template <class T>
    operator T*() const {
        return reinterpret_cast<T*>(word);
    }
    operator uint32_t() const { return static_cast<uint32_t>(word); }
};

uint32_t call(StandInCall which, void* object, Argument a, Argument b, Argument c) {
    switch (which) {
        case StandInCall::queryInterface: return static_cast<nsISupports*>(object)->QueryInterface(a, b);
        case StandInCall::addRef: return static_cast<nsISupports*>(object)->AddRef();
        case StandInCall::release: return static_cast<nsISupports*>(object)->Release();
        case StandInCall::observe: return static_cast<nsIObserver*>(object)->Observe(a, b, c);
        case StandInCall::modifyRequest: return static_cast<nsIHttpNotify*>(object)->OnModifyRequest(a);
        case StandInCall::examineResponse: return static_cast<nsIHttpNotify*>(object)->OnExamineResponse(a);
        case StandInCall::visitHeader: return static_cast<nsIHttpHeaderVisitor*>(object)->VisitHeader(a, b);
        case StandInCall::visitHeader7: return static_cast<nsIHttpHeaderVisitor_7*>(object)->VisitHeader(a, b);
        case StandInCall::mouseEvent: return static_cast<WindowObserver*>(object)->HandleMouseEvent(a);
        case StandInCall::wantsMoreData: return static_cast<iZABSListener*>(object)->WantsMoreData(a);
        case StandInCall::responseData: return static_cast<iZABSListener*>(object)->OnResponseData(a, b, 0);
        case StandInCall::handleEvent: return static_cast<nsIDOMEventListener*>(object)->HandleEvent(a);
    }
    return NS_ERROR_UNEXPECTED;
}

}  // namespace

ENTRY const void* StandIn_Table() { return kTable.slots; }

ENTRY uint32_t StandIn_CallSlot(void* object, uint32_t slot, const uint64_t* arguments) {
    const auto* table = *static_cast<Operation* const*>(object);
    return static_cast<uint32_t>(table[slot](static_cast<StandInObject*>(object), arguments[0], arguments[1],
                                             arguments[2], arguments[3], arguments[4], arguments[5]));
}

ENTRY uint32_t StandIn_Call(StandInCall which, void* object, uint64_t a, uint64_t b, uint64_t c) {
    return call(which, object, {a}, {b}, {c});
}
