// The network document's archive: channel arrays and adapters.

#include "ArchiveProperty.h"
#include "peripheral_network/KvNetSettings.h"

namespace {

// As a program has it: entered in the host, with its children.
class Network final : public CKvNetSettings {
public:
    Network() : m_before(std::exchange(GetHostApplication().kvNet, this)) { Initialise(); }
    ~Network() override { GetHostApplication().kvNet = m_before; }

private:
    kalvio::PeripheralNetworkQueries* m_before;
};

void CheckFields(Network& network) {
    for (int index = 0; index < network.GetChannelArrayList()->GetCount(); ++index) {
        kalvio::fuzz::Require(network.GetChannelArrayList()->GetAt(index) != nullptr, "every array is there");
    }
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    const test::TestHost host;
    Network network;
    for (const char* name : {"Inputs", "Outputs"}) {
        network.DefineArray(name, 0, 0);
        for (std::uint8_t channel = 0; channel < 8; ++channel) {
            network.AddChannelToArray(name, 3, kalvio::kClassTypeIOSwitcher, 0, 1, channel, 0);
        }
    }
    return {ArchiveSeed(network, 0), ArchiveSeed(network, kDiscard), ArchiveSeed(network, kEarlierVersion)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kalvio::fuzz::LoadsOrRefuses<Network>(data, size, CheckFields);
    return 0;
}
