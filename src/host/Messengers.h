#pragma once

// Messengers carry one field's value to or from the document that owns it.

#include "host/Units.h"
#include "platform/Text.h"

// With `get` set the handler fills the value; clear, it checks and stores the value and applies it.
struct CIntValueMessenger {
    int ctrlID = 0;
    bool get = false;
    int value = 0;
    bool changed = false;       // set by the handler when it stored a different value
    bool wantsMessages = false; // the handler may show message boxes
    bool refused = false;       // set by the handler when the value was not acceptable
    CString refusal{};          // then why, with the range or the choices
};

struct CPhyValueMessenger {
    int ctrlID = 0;
    bool get = false;
    double value = 0.0;
    int unit = kUnitStorage;    // what the value is expressed in
    SReferences references;     // filled on get: what the field's relative units refer to
    bool hasReferences = false; // set on get when the field has references of its own
    bool changed = false;
    bool wantsMessages = false;
    bool refused = false;
    CString refusal{};
};
