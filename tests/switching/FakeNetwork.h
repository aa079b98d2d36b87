#pragma once

// A peripheral network without a document: statuses are given, reports and resets are noted.

#include "host/HostApplication.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "switching/ChannelArrayList.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kalvio::test {

// Stands in the host application for its lifetime.
class FakeNetwork final : public PeripheralNetwork {
public:
    explicit FakeNetwork(CHostApplication& host) : m_host(host) {
        m_host.kvNet = this;
        switchers.Initialise();
    }
    ~FakeNetwork() { m_host.kvNet = nullptr; }
    FakeNetwork(const FakeNetwork&) = delete;
    FakeNetwork& operator=(const FakeNetwork&) = delete;

    CSwitcherSettings switchers;
    CChannelArrayList arrays;
    std::map<int, std::int32_t> statusWords; // who answers, and what
    std::vector<std::string> resets;         // "3 on", "3 standby"
    std::vector<CString> reports;            // what the user would have been shown
    int show = 1;
    int saveArrays = 1;

    [[nodiscard]] CIOSwitcherSettings& IOSwitchers() const { return *switchers.GetIOSwitcherSettings(); }

    [[nodiscard]] int UseResponses() const override { return 1; }
    short GetStatus(std::uint8_t address, VARIANT* status) override {
        const auto found = statusWords.find(address);
        if (found == statusWords.end()) {
            ReportMethodError("KVNET_GetStatus", kTextReasonTimeout, kNoParameterText);
            return KVNET_ERR_TIMEOUT;
        }
        *status = VARIANT::Long(found->second);
        return KVNET_OK;
    }
    short Reset(std::uint8_t address, int on, VARIANT* status) override {
        resets.push_back(std::to_string(address) + (on != 0 ? " on" : " standby"));
        if (const auto found = statusWords.find(address); found != statusWords.end()) {
            found->second = (found->second & ~0x10000) | (on != 0 ? 0x10000 : 0);
        }
        VARIANT word;
        return GetStatus(address, status != nullptr ? status : &word);
    }
    [[nodiscard]] int GetShowErrorMessages() const override { return show; }
    int SetShowErrorMessages(int value) override { return std::exchange(show, value); }
    void ReportMethodError(const CString& method, unsigned reason, int parameter) override {
        if (show == 0) {
            return;
        }
        const CString name = parameter < 0 ? CString() : LoadText(static_cast<unsigned>(parameter));
        reports.push_back(
            FormatText(LoadText(kTextKvNetMethodFailed), method, FormatText(LoadText(reason), name)));
    }
    [[nodiscard]] std::span<const CKvNetStatus> Devices() const override { return {}; }
    int FillDeviceList() override { return 1; }
    CChannelArrayDevice* FindChannelArrayDevice(std::uint8_t address, std::uint8_t classType) override {
        return classType == kClassTypeIOSwitcher ? IOSwitchers().GetIOSwitcher(address) : nullptr;
    }
    [[nodiscard]] CChannelArrayList& ChannelArrays() override { return arrays; }
    CChannelArray* GetChannelArray(const char* name) override { return arrays.GetChannelArray(name); }
    short DefineArray(const char* name, int stereo, int exclusiveOnly) override {
        return arrays.DefineArray(name, stereo, exclusiveOnly);
    }
    short RemoveArray(const char* name) override { return arrays.RemoveArray(name); }
    int IsBusGroupPartOfAnyArray(std::uint8_t address, std::uint8_t bus, std::uint8_t group) override {
        for (int array = 0; array < arrays.GetCount(); ++array) {
            ChannelDetails entry;
            for (short index = 0; arrays.GetAt(array)->GetChannelDetails(index, entry) != 0; ++index) {
                if (entry.address == address && entry.bus == bus && entry.group == group) {
                    return 1;
                }
            }
        }
        return 0;
    }
    int UpdateLoadStatusForAllArrays(std::uint8_t address, std::uint8_t bus, std::uint8_t load) override {
        for (int array = 0; array < arrays.GetCount(); ++array) {
            arrays.GetAt(array)->UpdateLoadStatus(address, bus, load);
        }
        return 1;
    }
    [[nodiscard]] int GetSaveChannelArrays() const override { return saveArrays; }
    void SetSaveChannelArrays(int save) override { saveArrays = save; }

private:
    CHostApplication& m_host;
};

} // namespace kalvio::test
