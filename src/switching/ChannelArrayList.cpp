#include "switching/ChannelArrayList.h"

#include "host/HostApplication.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "switching/ArchiveVersions.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

constexpr int kMoved = 1;

} // namespace

CChannelArrayList& CChannelArrayList::operator=(const CChannelArrayList& other) {
    std::vector<std::unique_ptr<CChannelArray>> copies;
    for (const auto& array : other.m_arrays) {
        copies.push_back(std::make_unique<CChannelArray>(array->GetName().c_str()));
        *copies.back() = *array;
    }
    m_arrays = std::move(copies);
    return *this;
}

void CChannelArrayList::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        if (kalvio::HoldsPeripherals(archive)) {
            Load(archive);
        }
        return;
    }
    const kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    archive.WriteByte(network == nullptr || network->GetSaveChannelArrays() != 0 ? 1 : 0);
    archive.WriteInt16(static_cast<std::int16_t>(m_arrays.size()));
    for (const auto& array : m_arrays) {
        array->Serialize(archive);
    }
}

void CChannelArrayList::Load(CArchive& archive) {
    const std::uint8_t save = archive.ReadByte();
    const std::int16_t count = archive.ReadInt16();
    if (count < 0) {
        throw CArchiveException("the number of channel arrays is negative");
    }
    std::vector<std::unique_ptr<CChannelArray>> loaded;
    for (std::int16_t index = 0; index < count; ++index) {
        loaded.push_back(std::make_unique<CChannelArray>(""));
        loaded.back()->Serialize(archive);
    }
    if (kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork(); network != nullptr) {
        network->SetSaveChannelArrays(save);
    }
    if (save != 0 && !GetHostApplication().discardStoredValues) {
        m_arrays = std::move(loaded);
    }
}

CChannelArray* CChannelArrayList::GetAt(int index) const {
    return index >= 0 && index < GetCount() ? m_arrays[static_cast<std::size_t>(index)].get() : nullptr;
}

CChannelArray* CChannelArrayList::GetChannelArray(const char* name) const {
    return GetAt(GetChannelArrayIndex(name));
}

int CChannelArrayList::GetChannelArrayIndex(const char* name) const {
    const auto found = std::ranges::find_if(m_arrays, [name](const auto& array) {
        return name != nullptr && kalvio::CompareNoCase(array->GetName(), name) == 0;
    });
    return found != m_arrays.end() ? static_cast<int>(found - m_arrays.begin()) : -1;
}

int CChannelArrayList::GetChannelArrayIndex(const CChannelArray* array) const {
    const auto found =
        std::ranges::find_if(m_arrays, [array](const auto& entry) { return entry.get() == array; });
    return found != m_arrays.end() ? static_cast<int>(found - m_arrays.begin()) : -1;
}

short CChannelArrayList::DefineArray(const char* name, int stereo, int exclusiveOnly) {
    if (name == nullptr) {
        return KVNET_ERR_PARAMETER;
    }
    if (GetChannelArray(name) != nullptr) {
        return KVNET_ERR_ARRAY_EXISTS;
    }
    try {
        auto array = std::make_unique<CChannelArray>(name);
        array->SetStereoArray(stereo);
        array->SetExclusiveOnly(exclusiveOnly);
        m_arrays.push_back(std::move(array));
    } catch (const std::bad_alloc&) {
        return KVNET_ERR_MEMORY;
    }
    UpdateViews(nullptr, HINT_ARRAY_ADDED, m_arrays.back().get(), 0);
    return KVNET_OK;
}

void CChannelArrayList::InsertAt(int index, std::unique_ptr<CChannelArray> array) {
    const int place = index >= 0 && index < GetCount() ? index : GetCount();
    m_arrays.insert(m_arrays.begin() + place, std::move(array));
}

short CChannelArrayList::RemoveArray(const char* name) {
    return RemoveArray(GetChannelArray(name));
}

short CChannelArrayList::RemoveArray(const CChannelArray* array) {
    const int index = GetChannelArrayIndex(array);
    if (index < 0) {
        return KVNET_ERR_ARRAY_NOT_DEFINED;
    }
    // Views compare where the array was; a number survives it.
    const auto place = reinterpret_cast<std::uintptr_t>(array);
    m_arrays.erase(m_arrays.begin() + index);
    UpdateViews(nullptr, HINT_ARRAY_REMOVED, reinterpret_cast<void*>(place), 0);
    return KVNET_OK;
}

int CChannelArrayList::MoveArray(int index, int offset) {
    const std::int64_t target = std::int64_t{index} + offset;
    if (GetAt(index) == nullptr || target < 0 || target >= GetCount()) {
        return KVNET_ERR_ARRAY_INDEX;
    }
    const auto from = m_arrays.begin() + index;
    const auto to = m_arrays.begin() + target;
    if (from < to) {
        std::rotate(from, from + 1, to + 1);
    } else {
        std::rotate(to, from, from + 1);
    }
    return kMoved;
}
