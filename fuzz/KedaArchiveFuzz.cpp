// The archive of the adapters' document.

#include "ArchiveProperty.h"
#include "adapters/KEDAAdapterSettings.h"
#include "peripheral_network/KvNetSettings.h"

namespace {

// In a program's network, where nobody answers.
class AdapterDocument final : public CKEDAAdapterSettings {
public:
    AdapterDocument() : m_before(std::exchange(GetHostApplication().kvNet, &m_network)) {
        m_network.Initialise();
    }
    ~AdapterDocument() override { GetHostApplication().kvNet = m_before; }

private:
    CKvNetSettings m_network;
    kalvio::PeripheralNetworkQueries* m_before;
};

void CheckFields(AdapterDocument& document) {
    for (const auto& [address, adapter] : document.Adapters()) {
        using kalvio::fuzz::Require;
        Require(adapter->GetNumTransmitChars() <= CKEDAAdapter::kBufferBytes, "what is to be sent fits");
        Require(adapter->GetAudioOn() == 0 && adapter->GetCtrlOn() == 0, "outputs come back off");
    }
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    const test::TestHost host;
    AdapterDocument document;
    Bytes empty = ArchiveSeed(document, kApplyUnsaved);
    for (const std::uint8_t address : Bytes{5, 8, 63}) {
        CKEDAAdapter* adapter = document.CreateKEDAAdapter(address, 1);
        const std::array<std::uint8_t, CKEDAAdapter::kBufferBytes> bytes{1, 2, 3};
        adapter->SendSPIData(address % 11, bytes.data());
        adapter->SetSubChannelsPerWire(0, 16);
    }
    return {empty, ArchiveSeed(document, 0), ArchiveSeed(document, kDiscard),
            ArchiveSeed(document, kEarlierVersion)};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kalvio::fuzz::LoadsOrRefuses<AdapterDocument>(data, size, CheckFields);
    return 0;
}
