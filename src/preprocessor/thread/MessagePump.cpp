#include "preprocessor/thread/MessagePump.h"

#include "host/HostApplication.h"
#include "platform/Clock.h"

namespace kalvio {

void PumpOnce() {
    GetHostApplication().DoMessageLoop();
    Sleep(0);
}

} // namespace kalvio
