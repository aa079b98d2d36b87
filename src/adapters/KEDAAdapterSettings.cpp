#include "adapters/KEDAAdapterSettings.h"

#include "adapters/KEDAAdapterControlPanelView.h"
#include "adapters/KEDAHints.h"
#include "adapters/KEDATexts.h"
#include "host/HostApplication.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Archive.h"
#include "switching/ChannelArray.h"
#include "switching/Creation.h"

#include <array>
#include <optional>
#include <vector>

using namespace kalvio::keda;

namespace {

constexpr int kItemDetails = 11000;
constexpr int kConfigWithAdapters = 18;
constexpr std::uint8_t kChannels = 16;

// The controls and hints that belong to this document, first and last of each run: what the panel links, the
// address and the device notice among them, which stay the network document's where there is one.
struct Run {
    int first;
    int last;
};
constexpr Run kControls[] = {{2555, 2555}, {HINT_DEVICE_CHANGED, HINT_DEVICE_CHANGED},
                             {2900, 2914}, {2917, 2918},
                             {2921, 2922}, {2924, 2924},
                             {2926, 2927}, {2929, 2930},
                             {2932, 2934}, {2936, 2936},
                             {2938, 2938}, {2940, 2940},
                             {2942, 2945}, {2948, 2949},
                             {2954, 2954}, {2956, 2971},
                             {2984, 2987}, {2993, 2996},
                             {2752, 2756}, {2758, 2758},
                             {2760, 2760}, {2763, 2763},
                             {2765, 2766}, {HINT_KEDA_CONTROL_CHANGED, HINT_KEDA_BYPASS_CHANGED}};

constexpr int kListSlotLength = 2917;
constexpr int kListSlots = 2926;
constexpr int kListMultiplier = 2945;
constexpr int kListDelay = 2949;
constexpr int kListWireA = 2993;
constexpr int kListSlotA = 2994;
constexpr int kListWireB = 2995;
constexpr int kListSlotB = 2996;
constexpr std::array kOfferedMultipliers{64, 128, 192, 256, 384, 512};
constexpr std::array kOfferedDelays{-7, 0, 7, 14, 21, 28, 35};
constexpr std::uint32_t kDelayColor = 255;
constexpr std::uint32_t kNoDelayColor = 8;

template<typename Values>
void AddNumbers(CComboBox& combo, const Values& values) {
    for (const int value : values) {
        combo.AddString(std::to_string(value), value);
    }
}

void AddCount(CComboBox& combo, int count) {
    for (int number = 1; number <= count; ++number) {
        combo.AddString(std::to_string(number), number);
    }
}

} // namespace

CKEDAAdapterSettings::CKEDAAdapterSettings(CHostApplication* host)
    : CSettingsData(host),
      m_viewFactory([this] { return std::make_unique<CKEDAAdapterControlPanelView>(*this); }) {
    for (const Run& run : kControls) {
        for (int id = run.first; id <= run.last; ++id) {
            Host().RegisterControl(id, this);
        }
    }
}

CKEDAAdapterSettings::~CKEDAAdapterSettings() {
    Host().UnregisterControls(this);
}

CKEDAAdapter* CKEDAAdapterSettings::GetKEDAAdapter(std::uint8_t address) {
    if (address == KVNET_ADDRESS_NONE) {
        return nullptr;
    }
    const auto found = m_adapters.find(address);
    return found != m_adapters.end() ? found->second.get() : CreateKEDAAdapter(address, 0);
}

CKEDAAdapter* CKEDAAdapterSettings::CreateKEDAAdapter(std::uint8_t address, int force) {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (network == nullptr) {
        return nullptr;
    }
    const kalvio::QuietNetwork quiet(*network);
    VARIANT statusWord;
    const bool answered = network->GetStatus(address, &statusWord) == KVNET_OK;
    const CKvNetStatus status =
        answered ? CKvNetStatus(address, statusWord) : CKvNetStatus(address, std::uint32_t{0});
    if (force == 0 && (!answered || status.GetDeviceClassType() != kalvio::kClassTypeKedaAdapter)) {
        return nullptr;
    }
    auto adapter = kalvio::MakeOrPost<CKEDAAdapter>(status, answered ? 0 : 1);
    return adapter == nullptr ? nullptr : (m_adapters[address] = std::move(adapter)).get();
}

CTypedFrameWnd* CKEDAAdapterSettings::OpenKEDAAdapterControlPanel() {
    return m_windows.Open(m_viewFactory, kTextPanelTitle);
}

short CKEDAAdapterSettings::AddChannels(const char* name,
                                        const std::function<ChannelDetails(std::uint8_t)>& channelOf) {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    CChannelArray* array = network == nullptr ? nullptr : network->GetChannelArray(name);
    if (array == nullptr) {
        return KVNET_ERR_ARRAY_NOT_DEFINED;
    }
    if (array->GetNumChannels() != 0) {
        return KVNET_ERR_CONFLICT;
    }
    for (std::uint8_t channel = 0; channel < kChannels; ++channel) {
        ChannelDetails details = channelOf(channel);
        if (array->AddChannel(details) == 0) {
            return KVNET_ERR_PARAMETER;
        }
    }
    UpdateViews(nullptr, HINT_ARRAY_CHANGED, array, 0);
    return KVNET_OK;
}

short CKEDAAdapterSettings::AddBusGroupToArray(const char* name, std::uint8_t address, std::uint8_t bus,
                                               std::uint8_t group) {
    return AddChannels(name, [=](std::uint8_t channel) {
        return ChannelDetails{address, kalvio::kClassTypeKedaAdapter, bus, group, channel, 0, 0};
    });
}

short CKEDAAdapterSettings::AddGroupToStereoArray(const char* name, std::uint8_t address,
                                                  std::uint8_t group) {
    return AddChannels(name, [=](std::uint8_t channel) {
        const auto bus = static_cast<std::uint8_t>(channel % 2 == 0 ? ROUTING_A : ROUTING_B);
        return ChannelDetails{address, kalvio::kClassTypeKedaAdapter, bus, group, channel, 0, 0};
    });
}

int CKEDAAdapterSettings::FillCombo(const CKEDAAdapter* adapter, CComboBox* combo, int ctrlID) {
    if (combo == nullptr) {
        return 0;
    }
    combo->ResetContent();
    switch (ctrlID) {
    case kListSlotLength:
        AddNumbers(*combo, kSlotLengths);
        return 1;
    case kListSlots:
        AddNumbers(*combo, kSlotCounts);
        return 1;
    case kListMultiplier:
        AddNumbers(*combo, kOfferedMultipliers);
        return 1;
    case kListWireA:
    case kListWireB:
        AddCount(*combo, adapter == nullptr ? 0 : adapter->GetNumWires(GROUP_ANALYSER));
        return 1;
    case kListSlotA:
    case kListSlotB:
        AddCount(*combo, adapter == nullptr ? 0 : adapter->GetSubChannelsPerWire(GROUP_ANALYSER));
        return 1;
    default:
        return 0;
    }
}

int CKEDAAdapterSettings::FillColorCombo(const CKEDAAdapter*, CColorCombo* combo, int ctrlID) {
    if (combo == nullptr) {
        return 0;
    }
    combo->ResetContent();
    if (ctrlID != kListDelay) {
        return 0;
    }
    for (std::size_t i = 0; i < kOfferedDelays.size(); ++i) {
        combo->AddColorString(kalvio::LoadText(kTextDelayFirst + static_cast<unsigned>(i)), kOfferedDelays[i],
                              kOfferedDelays[i] == 0 ? kNoDelayColor : kDelayColor);
    }
    return 1;
}

void CKEDAAdapterSettings::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        LoadAdapters(archive);
        return;
    }
    archive.WriteInt32(m_save);
    archive.WriteInt16(static_cast<std::int16_t>(m_adapters.size()));
    for (const auto& [address, adapter] : m_adapters) {
        archive.WriteByte(address);
        adapter->Serialize(archive);
    }
}

void CKEDAAdapterSettings::LoadAdapters(CArchive& archive) {
    struct Entry {
        std::uint8_t address;
        CKEDAAdapter::Record record;
    };
    const bool discard = Host().discardStoredValues;
    std::optional<std::int32_t> save;
    std::vector<Entry> entries;
    if (archive.GetConfigVersion() >= kConfigWithAdapters) {
        save = archive.ReadInt32();
        const std::int16_t count = archive.ReadInt16();
        if (count < 0) {
            throw CArchiveException(kalvio::Format("The archive holds %d adapters.", count));
        }
        for (int i = 0; i < count; ++i) {
            const std::uint8_t address = archive.ReadByte();
            entries.push_back({address, CKEDAAdapter::ReadRecord(archive)});
        }
    }
    if (!discard) {
        RemoveAllAdapters();
    }
    if (!save) {
        return;
    }
    m_save = *save;
    if (m_save == 0 || discard) {
        return;
    }
    for (const Entry& entry : entries) {
        CKEDAAdapter* adapter = GetKEDAAdapter(entry.address);
        adapter = adapter != nullptr ? adapter : CreateKEDAAdapter(entry.address, 1);
        if (adapter != nullptr) {
            adapter->Apply(entry.record);
        }
    }
}

void CKEDAAdapterSettings::PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) {
    tree->AddCheckItem(parent, kalvio::LoadText(kTextDeviceDetails), kItemDetails, true);
}

void CKEDAAdapterSettings::PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) {
    if (tree == nullptr) {
        m_save = 1;
        return;
    }
    for (HTREEITEM item = tree->GetChildItem(parent); item != nullptr;
         item = tree->GetNextSiblingItem(item)) {
        int id = 0;
        bool ticked = false;
        tree->GetItemDetails(item, id, ticked);
        if (id == kItemDetails) {
            m_save = ticked ? 1 : 0;
        }
    }
}
