// The network document's channel arrays, and its part of the archive.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapter.h"
#include "adapters/KEDAAdapterSettings.h"
#include "host/HostApplication.h"
#include "peripheral_network/KvNetSettings.h"
#include "switching/ArchiveVersions.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcher.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

bool SweepsOver(const SweepAxis& axis, const CChannelArray* array) {
    return axis.type == kSweepChannelArray && axis.channelArray == array;
}

} // namespace

CChannelArray* CKvNetSettings::GetChannelArray(const char* name) {
    return m_channelArrays.GetChannelArray(name);
}

short CKvNetSettings::DefineArray(const char* name, int stereo, int exclusiveOnly) {
    const short code = m_channelArrays.DefineArray(name, stereo, exclusiveOnly);
    if (code == KVNET_OK) {
        m_currentArray = GetChannelArray(name);
    }
    return code;
}

short CKvNetSettings::RemoveArray(const char* name) {
    CChannelArray* array = GetChannelArray(name);
    if (array == nullptr) {
        return KVNET_ERR_ARRAY_NOT_DEFINED;
    }
    if (CanRemoveArray(array) == 0) {
        return KVNET_ERR_ARRAY_IN_USE;
    }
    OnArrayRemoved(array);
    array->ClearChannels(1);
    return m_channelArrays.RemoveArray(name);
}

int CKvNetSettings::CanRemoveArray(const CChannelArray* array) {
    const auto& axes = GetHostApplication().sweepAxes;
    return std::ranges::any_of(
               axes, [array](const SweepAxis& axis) { return SweepsOver(axis, array) && axis.inUse; })
               ? 0
               : 1;
}

void CKvNetSettings::OnArrayRemoved(const CChannelArray* array) {
    if (m_currentArray == array) {
        m_currentArray = nullptr;
    }
    for (SweepAxis& axis : Host().sweepAxes) {
        if (SweepsOver(axis, array)) {
            axis.channelArray = nullptr;
        }
    }
}

short CKvNetSettings::AddChannelToArray(const char* name, std::uint8_t address, std::uint8_t classType,
                                        std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                        std::uint8_t flags) {
    CChannelArray* array = GetChannelArray(name);
    if (array == nullptr) {
        return KVNET_ERR_ARRAY_NOT_DEFINED;
    }
    try {
        ChannelDetails details{address, classType, bus, group, channel, 0, flags};
        array->AddChannel(details);
        return KVNET_OK;
    } catch (const std::bad_alloc&) {
        return KVNET_ERR_MEMORY;
    }
}

int CKvNetSettings::IsBusGroupPartOfAnyArray(std::uint8_t address, std::uint8_t bus, std::uint8_t group) {
    for (int index = 0; index < m_channelArrays.GetCount(); ++index) {
        CChannelArray* array = m_channelArrays.GetAt(index);
        ChannelDetails details;
        for (short channel = 0; channel < array->GetNumChannels(); ++channel) {
            array->GetChannelDetails(channel, details);
            if (details.address == address && details.bus == bus && details.group == group) {
                return 1;
            }
        }
    }
    return 0;
}

int CKvNetSettings::UpdateLoadStatusForAllArrays(std::uint8_t address, std::uint8_t bus, std::uint8_t load) {
    for (int index = 0; index < m_channelArrays.GetCount(); ++index) {
        CChannelArray* array = m_channelArrays.GetAt(index);
        if (array == nullptr || array->UpdateLoadStatus(address, bus, load) == 0) {
            return 0;
        }
    }
    return 1;
}

CChannelArrayDevice* CKvNetSettings::FindChannelArrayDevice(std::uint8_t address, std::uint8_t classType) {
    if (classType == kalvio::kClassTypeIOSwitcher && m_switcherSettings != nullptr) {
        return m_switcherSettings->GetIOSwitcherSettings()->GetIOSwitcher(address);
    }
    if (classType == kalvio::kClassTypeKedaAdapter && m_formatConverterSettings != nullptr) {
        return m_formatConverterSettings->GetKEDAAdapterSettings()->GetKEDAAdapter(address);
    }
    return nullptr;
}

int CKvNetSettings::FillChannelArrayDropList(CComboBox* combo, const CChannelArray* select) const {
    if (combo == nullptr) {
        return 0;
    }
    combo->ResetContent();
    for (int index = 0; index < m_channelArrays.GetCount(); ++index) {
        const CChannelArray* array = m_channelArrays.GetAt(index);
        const int item = combo->AddString(array->GetName(), reinterpret_cast<std::intptr_t>(array));
        if (array == select) {
            combo->SetCurSel(item);
        }
    }
    return 1;
}

void CKvNetSettings::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        m_channelArrays.Serialize(archive);
        m_switcherSettings->Serialize(archive);
        m_formatConverterSettings->Serialize(archive);
        return;
    }
    m_arraysNotSent.clear();
    if (!kalvio::HoldsPeripherals(archive)) {
        m_saveChannelArrays = 0;
        return;
    }
    LoadParts(archive);
    if (!Host().discardStoredValues) {
        SendArrays();
    }
}

void CKvNetSettings::SendArrays() {
    for (int index = 0; index < m_channelArrays.GetCount(); ++index) {
        CChannelArray& array = *m_channelArrays.GetAt(index);
        if (const short code = array.UpdateDevicesFromSettings(); code != KVNET_OK) {
            m_arraysNotSent.push_back({array.GetName(), code});
        }
    }
}

// The arrays are loaded into an empty list, and the present ones put back when a later part is damaged or the
// loaded ones are not wanted.
void CKvNetSettings::LoadParts(CArchive& archive) {
    CChannelArrayList before = std::exchange(m_channelArrays, CChannelArrayList());
    const int saveBefore = m_saveChannelArrays;
    try {
        if (archive.GetConfigVersion() >= kalvio::kConfigWithArraysFirst) {
            m_channelArrays.Serialize(archive);
        }
        m_switcherSettings->Serialize(archive);
        m_formatConverterSettings->Serialize(archive);
    } catch (...) {
        m_channelArrays = std::move(before);
        m_saveChannelArrays = saveBefore;
        throw;
    }
    if (m_saveChannelArrays == 0 || Host().discardStoredValues) {
        m_channelArrays = std::move(before);
    } else {
        FollowArrays();
    }
}

// Whoever pointed at an array that was replaced points at the loaded one of the same name, if there is one.
void CKvNetSettings::FollowArrays() {
    const auto follow = [this](CChannelArray*& array) {
        if (array != nullptr) {
            array = GetChannelArray(array->GetName().c_str());
        }
    };
    follow(m_currentArray);
    for (SweepAxis& axis : Host().sweepAxes) {
        follow(axis.channelArray);
    }
    // Programs that observe updates load configurations themselves; windows do not know of it.
    kalvio::TellViews(nullptr, -1, nullptr);
}
