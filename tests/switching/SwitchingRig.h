#pragma once

// A unit whose bus is full of switchers, a network to reach them, and tables as text.

#include "support/BusRig.h"
#include "support/WindowScript.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace kalvio::test {

inline std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

using Rows = std::vector<std::vector<std::string>>;

// The lines of a text, each cut at its bars; comments and empty lines left out.
inline Rows Table(const std::string& text) {
    Rows rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells(line);
        std::vector<std::string> row;
        for (std::string cell; line[0] != '#' && std::getline(cells, cell, '|');) {
            row.push_back(Trim(cell));
        }
        if (!row.empty()) {
            rows.push_back(row);
        }
    }
    return rows;
}

// A table file, or the part of it behind "[name]".
inline Rows TableOf(const char* file, const std::string& part = {}) {
    std::ifstream stream(std::filesystem::path(__FILE__).parent_path() / "tables" / file);
    Rows rows;
    bool mine = part.empty();
    for (const auto& row : Table({std::istreambuf_iterator<char>(stream), {}})) {
        if (row[0].starts_with('[')) {
            mine = row[0] == "[" + part + "]";
        } else if (mine) {
            rows.push_back(row);
        }
    }
    EXPECT_FALSE(rows.empty()) << file << " " << part;
    return rows;
}

// Obeys, and answers with what it was told.
struct SwitcherModel {
    Bytes state = Bytes(6); // X, Y and flags of both buses
    Bytes voltages = Bytes(4);
    Bytes status{0x11, 0, 1}; // class and type, versions, on

    Bytes Obey(unsigned code, std::span<const std::uint8_t> data) {
        std::uint8_t* const bus = &state[code % 2 == 0 ? 0 : 3];
        if (code == 0x92) {
            return voltages;
        }
        if (code == 0x00 || code == 0xFF) {
            status[2] = data.empty() ? status[2] : data[0];
            return status;
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
        } else {
            std::ranges::copy(data, code >= 0x8A ? &bus[2] : bus);
        }
        return {bus[0], bus[1], bus[2]};
    }
};

struct SwitchingRig : BusRig {
    SwitchingRig() {
        for (std::uint8_t address = 0; address < 64; ++address) {
            unit.AttachPeripheral(address, [this](std::span<const std::uint8_t> frame) {
                events.push_back(ToHex(frame));
                if (scripted) {
                    return scripted(frame);
                }
                const Bytes answer = models[frame[1]].Obey(frame[3], frame.subspan(4, frame[2]));
                return silent == frame[1] ? Bytes() : AnswerFrame(frame[1], frame[3], answer);
            });
        }
        host.application.AddViewObserver([this](CView* sender, int hint, void* object, int flag) {
            const std::string text = HintText(sender, hint, flag);
            events.push_back(IsOfDevice(hint) ? text + Format(" %08X", HintWord(object)) : text);
            told = object;
        });
    }

    [[nodiscard]] CSwitcherSettings& Arrays() const { return *network.GetSwitcherSettings(); }
    [[nodiscard]] CIOSwitcherSettings& Switchers() const { return *Arrays().GetIOSwitcherSettings(); }

    // The frames as "address:command:data" since the last time.
    std::string Frames() {
        std::string text;
        for (const std::string& event : std::exchange(events, {})) {
            if (event.starts_with("55")) {
                text += (text.empty() ? "" : " ") + std::to_string(Hex(event)[1]) + ":" + event.substr(6, 2) +
                        ":" + event.substr(8, event.size() - 12);
            }
        }
        return text;
    }

    std::vector<std::string> events; // frames in hex and view updates, as they came
    std::map<int, SwitcherModel> models;
    int silent = -1; // this address does not answer
    std::function<Bytes(std::span<const std::uint8_t> frame)> scripted;
    const void* told = nullptr; // the object of the last view update
};

// Channels as "address:bus:group:channel:state:flags:class", of which the last ones may be left out.
inline void AddChannels(CChannelArray& array, const std::string& text) {
    for (const std::string& word : Words(text)) {
        unsigned v[7] = {0, 0, 0, 0, 0, 0, kClassTypeIOSwitcher};
        std::sscanf(word.c_str(), "%u:%u:%u:%u:%u:%u:%x", &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]);
        const auto byte = [&v](std::size_t at) { return static_cast<std::uint8_t>(v[at]); };
        EXPECT_EQ(array.AddChannel({byte(0), byte(6), byte(1), byte(2), byte(3), byte(4), byte(5)}), 1);
    }
}

// All channels of groups "address:bus:group".
inline void AddGroups(CChannelArray& array, std::span<const std::string> groups) {
    for (const std::string& group : groups) {
        for (int channel = 0; channel < 8; ++channel) {
            AddChannels(array, group + ":" + std::to_string(channel));
        }
    }
}

// Words of window scripts for what happens to the network meanwhile.
inline void TeachNetwork(WindowScript& script, SwitchingRig& rig) {
    script.words["define"] = [&rig](const std::string& rest) {
        const auto words = Words(rest); // name, stereo, exclusive only, then groups
        rig.network.DefineArray(words[0].c_str(), std::stoi(words[1]), std::stoi(words[2]));
        AddGroups(*rig.network.GetChannelArray(words[0].c_str()), std::span(words).subspan(3));
    };
    script.words["channel"] = [&rig](const std::string& rest) { // name, address, bus, group, channel
        const auto words = Words(rest);
        std::uint8_t given[4];
        std::ranges::transform(std::span(words).subspan(1), given, [](const std::string& word) {
            return static_cast<std::uint8_t>(std::stoi(word));
        });
        const ChannelDetails details{given[0], kClassTypeIOSwitcher, given[1], given[2], given[3], 0, 0};
        EXPECT_EQ(rig.network.GetChannelArray(words[0].c_str())->AddChannel(details), 1);
    };
    script.words["remove"] = [&rig](const std::string& rest) { rig.network.RemoveArray(rest.c_str()); };
    script.words["present"] = [&rig](const std::string& rest) { rig.unit.SetPresent(rest == "1"); };
    script.words["document"] = [&rig, kept = Bytes()](const std::string& rest) mutable { // keep, load
        if (rest == "keep") {
            kept = rig.Stored();
            return;
        }
        CString error;
        EXPECT_TRUE(rig.network.Load(kept, error)) << error;
    };
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
