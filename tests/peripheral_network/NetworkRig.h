#pragma once

// The network document over a virtual unit whose peripherals follow a test's script.

#include "support/BusRig.h"

#include <utility>

namespace kalvio::test {

struct NetworkRig : BusRig {
    NetworkRig() {
        host.application.AddViewObserver([this](CView* sender, int hint, void* object, int flag) {
            events +=
                HintText(sender, hint, flag) + (IsOfDevice(hint) ? Format(":%08X ", HintWord(object)) : " ");
        });
    }

    // Frames that reach the address are noted, and answered with the next bytes, the last ones for ever.
    void Attach(std::uint8_t address, std::vector<Bytes> answers) {
        unit.AttachPeripheral(address, [this, answers, next = std::size_t{0}](auto frame) mutable {
            events += ToHex(frame) + " ";
            return answers[std::min(next++, answers.size() - 1)];
        });
    }
    // What happened since the last time: frames and hints in order, each with a blank, then the boxes.
    CString Take() {
        CString all = std::exchange(events, {});
        for (const CString& text : host.user.Texts()) {
            all += "[" + text + "]";
        }
        host.user.Clear();
        return all;
    }
    // Calls a method as a script does; whether it answered TRUE.
    bool Call(const char* name, std::vector<VARIANT> arguments = {}) {
        const AutomationResult result = network.Invoke(name, arguments);
        bool done = false;
        EXPECT_TRUE(result.Ok() && result.value.Get(done)) << result.text;
        return done;
    }

    CString events;
};

// A firmware file for class type 0x21: the header, then sectors of so many records each.
inline Bytes Firmware(const std::vector<std::pair<int, int>>& sectors) {
    Bytes file = Hex("4B762D4E455420444F574E4C4F4144000000 21");
    file.resize(kFirmwareHeaderBytes, 0xEE);
    for (const auto& [sector, blocks] : sectors) {
        for (int block = 0; block < blocks; ++block) {
            file.push_back(static_cast<std::uint8_t>(sector << 4 | block >> 8));
            file.push_back(static_cast<std::uint8_t>(block));
            file.insert(file.end(), kFirmwareDataBytes, static_cast<std::uint8_t>(block * 5 + sector));
        }
    }
    return file;
}

// The process ended.
struct Killed {};

// A progress display that notes everything, and cancels or ends the process at a look.
struct ProgressLog : ProgressDisplay {
    void GoModal(const CString& title) override { log += title; }
    void SetRange(int low, int high, int step) override { log += Format(" %d-%d/%d", low, high, step); }
    void SetText(const CString& text) override { log += "\n" + text; }
    void SetPos(int position) override { log += Format(" @%d", position); }
    void StepIt() override { ++steps; }
    void PeekAndPump(bool cancelOnEscape) override { pumps += cancelOnEscape ? 1 : 0; }
    bool Cancelled() const override {
        if (looks == killAt) {
            throw Killed();
        }
        return looks++ == cancelAt;
    }

    CString log;
    int steps = 0;
    int pumps = 0;
    int cancelAt = -1;
    int killAt = -1;
    mutable int looks = 0;
};

} // namespace kalvio::test
