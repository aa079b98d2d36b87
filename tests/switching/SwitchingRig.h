#pragma once

// A unit whose bus is full of switchers, and a network to reach them.

#include "FakeNetwork.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <sstream>

namespace kalvio::test {

using Bytes = std::vector<std::uint8_t>;

// A frame of an answering peripheral.
inline Bytes AnswerFrame(std::uint8_t address, std::uint8_t command, const Bytes& data) {
    Bytes frame{0x55, address, static_cast<std::uint8_t>(data.size()), command};
    frame.insert(frame.end(), data.begin(), data.end());
    frame.push_back(static_cast<std::uint8_t>(0x55 - std::accumulate(frame.begin() + 1, frame.end(), 0)));
    frame.push_back(0xAA);
    return frame;
}

// Whoever is asked answers with the relays that it was told to switch.
struct SwitcherModel {
    Bytes state = Bytes(6); // X, Y and flags of both buses
    Bytes voltages = Bytes(4);

    Bytes Obey(std::span<const std::uint8_t> frame) {
        const unsigned code = frame[3];
        const std::span<const std::uint8_t> data = frame.subspan(4, frame[2]);
        std::uint8_t* const bus = &state[code % 2 == 0 ? 0 : 3];
        const Bytes all(state.begin(), state.end());
        if (code == 0x92) {
            return voltages;
        }
        if (code >= 0x8C) {
            bus[code >= 0x8E ? 1 : 0] = data[0];
            return {data[0]};
        }
        if (code == 0x80 || code == 0x81) {
            std::ranges::copy(data, state.begin());
            return state;
        }
        if (code >= 0x84 && code <= 0x87) {
            std::uint8_t& mask = bus[data[0] / 8];
            const auto relay = static_cast<std::uint8_t>(1U << data[0] % 8);
            mask = static_cast<std::uint8_t>(code < 0x86 ? mask | relay : mask & ~relay);
        } else if (code == 0x8A || code == 0x8B) {
            bus[2] = data[0];
        } else {
            std::ranges::copy(data, bus);
        }
        return {bus[0], bus[1], bus[2]};
    }
};

struct SwitchingRig : UnitRig {
    SwitchingRig() {
        EXPECT_EQ(BringUp(), 1);
        for (std::uint8_t address = 0; address < 64; ++address) {
            unit.AttachPeripheral(address, [this](std::span<const std::uint8_t> frame) {
                events.push_back(ToHex(frame));
                if (scripted) {
                    return scripted(frame);
                }
                return silent == frame[1] ? Bytes()
                                          : AnswerFrame(frame[1], frame[3], models[frame[1]].Obey(frame));
            });
        }
        m_observer = host.application.AddViewObserver([this](CView*, int hint, void* object, int) {
            const auto place = reinterpret_cast<std::uintptr_t>(object);
            const bool device = hint == HINT_SWITCHER_CHANGED || hint == HINT_DEVICE_CHANGED;
            events.push_back(device ? Format("%d %08X", hint, HintWord(object)) : Format("%d", hint));
            lastArray = device ? lastArray : place;
        });
    }
    ~SwitchingRig() { host.application.RemoveViewObserver(m_observer); }

    // Frames as "address:command:data", without what frames them; view updates are left out.
    std::string Frames() {
        std::string text;
        for (const std::string& event : events) {
            if (event.starts_with("55")) {
                const Bytes frame = Hex(event);
                text += (text.empty() ? "" : " ") + std::to_string(frame[1]) + ":" +
                        ToHex(std::span(frame).subspan(3, 1)) + ":" +
                        ToHex(std::span(frame).subspan(4, frame[2]));
            }
        }
        return text;
    }

    std::vector<std::string> events; // frames in hex and view updates, as they came
    std::map<int, SwitcherModel> models;
    int silent = -1; // this address does not answer
    std::function<Bytes(std::span<const std::uint8_t> frame)> scripted;
    std::uintptr_t lastArray = 0; // that views were told of
    FakeNetwork network{host.application};

private:
    int m_observer = 0;
};

inline std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// Channels as "address:bus:group:channel", with "+" behind for on, "/2" for flags, "k" in front for the class
// of adapters; "3:0:0:0-7" for eight of them.
inline void AddChannels(CChannelArray& array, const std::string& text) {
    for (std::string word : Words(text)) {
        ChannelDetails entry{.classType = 0x11};
        if (word.front() == 'k') {
            entry.classType = 0x21;
            word.erase(0, 1);
        }
        unsigned address = 0;
        unsigned bus = 0;
        unsigned group = 0;
        unsigned first = 0;
        int used = 0;
        std::sscanf(word.c_str(), "%u:%u:%u:%u%n", &address, &bus, &group, &first, &used);
        unsigned last = first;
        std::sscanf(word.c_str() + used, "-%u", &last);
        unsigned flags = 0;
        if (const std::size_t slash = word.find('/'); slash != std::string::npos) {
            flags = static_cast<unsigned>(std::stoul(word.substr(slash + 1)));
        }
        entry.address = static_cast<std::uint8_t>(address);
        entry.bus = static_cast<std::uint8_t>(bus);
        entry.group = static_cast<std::uint8_t>(group);
        entry.state = word.find('+') != std::string::npos ? 1 : 0;
        entry.flags = static_cast<std::uint8_t>(flags);
        for (unsigned channel = first; channel <= last; ++channel) {
            entry.channel = static_cast<std::uint8_t>(channel);
            EXPECT_EQ(array.AddChannel(entry), 1);
        }
    }
}

// States and flags of all channels: "0 1 0/2".
inline std::string States(const CChannelArray& array) {
    std::string text;
    ChannelDetails entry;
    for (short index = 0; array.GetChannelDetails(index, entry) != 0; ++index) {
        text += (index == 0 ? "" : " ") + std::to_string(entry.state) +
                (entry.flags != 0 ? "/" + std::to_string(entry.flags) : "");
    }
    return text;
}

} // namespace kalvio::test
