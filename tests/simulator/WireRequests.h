#pragma once

// What the simulator's transcripts can ask for: driver requests and whole exchanges as hex, and looks at the
// unit and its peripherals past the wire.
//
// "{NAME}" stands for the bytes that "let NAME BYTES" gave; "00x49" is a byte 49 times. Behind a request come
// what the unit noted that no host should do ("!"), the relays that were hurried ("!!"), the result or a list
// ("-"), and the unit time that it took.

#include "simulator/Peripheral.h"
#include "simulator/Wire.h"

#include <map>
#include <memory>

namespace kalvio::simulator {

// What requests act on: a fresh unit with each "unit" request.
struct Bench {
    std::unique_ptr<Wire> wire = std::make_unique<Wire>();
    std::vector<std::shared_ptr<Peripheral>> peripherals;
    std::map<std::string, std::string> names;
    std::size_t violations = 0; // told so far
};

// Carries a request out; its outcome, in whole lines.
[[nodiscard]] std::string PlayRequest(Bench& bench, std::string_view request);

} // namespace kalvio::simulator
