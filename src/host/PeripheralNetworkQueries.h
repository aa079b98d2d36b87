#pragma once

// What the layers below the peripheral network ask of it.

namespace kalvio {

// Implemented by the network document, which the program enters as CHostApplication::kvNet. User-interface
// thread.
class PeripheralNetworkQueries {
public:
    // Whether peripherals are asked to answer: it selects the terminator of every frame. 1 by default.
    [[nodiscard]] virtual int UseResponses() const = 0;

protected:
    ~PeripheralNetworkQueries() = default;
};

} // namespace kalvio
