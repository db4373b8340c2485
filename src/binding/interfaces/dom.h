// DOM events as the module receives them: a listener is called, the event itself is read by the extension.
#pragma once

#include "binding/interfaces/supports.h"

class nsIDOMEventListener : public nsISupports {
  public:
    static constexpr nsIID kIID{0xDF31C120, 0xDED6, 0x11D1, {0xBD, 0x85, 0x00, 0x80, 0x5F, 0x8A, 0xE3, 0xF4}};

    virtual nsresult HandleEvent(nsISupports* event) = 0;
};
