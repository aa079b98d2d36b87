#pragma once

// The network document over a virtual unit that is up, with nobody on its bus yet.

#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "platform/Archive.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <fstream>
#include <numeric>

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

// Whether the object of a view update is a packed device word.
inline bool IsOfDevice(int hint) {
    return hint == HINT_SWITCHER_CHANGED || hint == HINT_DEVICE_CHANGED;
}

struct BusRig : UnitRig {
    BusRig() {
        EXPECT_EQ(BringUp(), 1);
        host.application.kvNet = &network;
        EXPECT_EQ(network.Initialise(), 1);
        unit.ClearLogs();
    }
    ~BusRig() { host.application.kvNet = nullptr; }
    BusRig(const BusRig&) = delete;
    BusRig& operator=(const BusRig&) = delete;

    // What the network writes into a configuration.
    Bytes Stored() {
        CArchive archive;
        network.Serialize(archive);
        return archive.Bytes();
    }
    [[nodiscard]] CString WriteFile(const CString& name, const Bytes& content) const {
        std::ofstream(directory.File(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()), static_cast<long>(content.size()));
        return directory.File(name);
    }

    CKvNetSettings network;
};

} // namespace kalvio::test
