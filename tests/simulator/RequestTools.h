#pragma once

// What requests are made of, and the tables of them.

#include "platform/Text.h"
#include "simulator/WireRequests.h"
#include "support/Replay.h"

namespace kalvio::simulator {

using Words = test::RequestWords;
using Request = std::function<std::string(Bench& bench, Words& words)>;
using Requests = std::map<std::string, Request>;

[[nodiscard]] const Requests& OfTheDriver();  // requests and exchanges
[[nodiscard]] const Requests& OfTheUnit();    // memories, registers, records, faults
[[nodiscard]] const Requests& OfTheSignals(); // generators, device under test, results
[[nodiscard]] const Requests& OfPeripherals();

// A fresh unit with nothing on its bus; options as "name=value".
std::string MakeUnit(Bench& bench, Words& words);

// Bytes up to the next ":".
inline std::string HexOf(Words& words) {
    std::string hex;
    for (std::string word; words.More() && (word = words.Next()) != ":";) {
        const std::size_t times = word.find('x');
        const std::string bytes = word.substr(0, times);
        for (auto left = times == std::string::npos ? 1 : std::stoul(word.substr(times + 1)); left > 0;
             --left) {
            hex += bytes;
        }
    }
    return hex;
}

inline std::string List(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += "- " + item + "\n";
    }
    return items.empty() ? "none" : text;
}

// "name=value" words up to the end, each to what takes it.
template<typename Target>
void Assign(Words& words, Target& target,
            const std::map<std::string, std::function<void(Target& target, double value)>>& takers) {
    while (words.More()) {
        const std::string word = words.Next();
        const std::size_t equals = word.find('=');
        takers.at(word.substr(0, equals))(target, std::strtod(word.c_str() + equals + 1, nullptr));
    }
}

template<typename Target, typename Field>
auto Into(Field Target::*field) {
    return [field](Target& target, double value) { target.*field = static_cast<Field>(value); };
}

} // namespace kalvio::simulator
