// A channel array in archives of every version.

#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/Archive.h"
#include "switching/ArchiveVersions.h"
#include "switching/ChannelArray.h"

#include <utility>

namespace {

// Before, arrays had neither direction nor exclusive-only flag, and all were of I/O switchers.
constexpr int kConfigWithDirection = 20;
// Up to this one, channels of I/O switchers tell their class only.
constexpr int kConfigWithClassOnly = 20;

void Store(CArchive& archive, const ChannelDetails& channel) {
    const std::uint8_t bytes[] = {channel.address, channel.classType, channel.bus,  channel.group,
                                  channel.channel, channel.state,     channel.flags};
    archive.WriteBytes(bytes);
}

ChannelDetails LoadChannel(CArchive& archive) {
    std::uint8_t bytes[7];
    archive.ReadBytes(bytes);
    ChannelDetails channel{bytes[0], bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6]};
    if (archive.GetConfigVersion() <= kConfigWithClassOnly && channel.classType == kalvio::kClassSwitcher) {
        channel.classType = kalvio::kClassTypeIOSwitcher;
    }
    return channel;
}

} // namespace

// What an archive holds of an array.
struct CChannelArray::Loaded {
    CString name;
    int stereo = 0;
    int exclusiveOnly = 0;
    std::uint8_t deviceClassType = 0;
    ChannelArrayDir direction = DirectionNone;
    std::vector<ChannelDetails> channels;
};

void CChannelArray::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        if (!kalvio::HoldsPeripherals(archive)) {
            return;
        }
        Loaded loaded = Load(archive);
        m_name = std::move(loaded.name);
        m_stereo = loaded.stereo;
        m_exclusiveOnly = loaded.exclusiveOnly;
        m_deviceClassType = loaded.deviceClassType;
        m_direction = loaded.direction;
        m_channels = std::move(loaded.channels);
        return;
    }
    archive.WriteString(m_name);
    archive.WriteInt32(m_stereo);
    archive.WriteByte(m_deviceClassType);
    archive.WriteByte(m_direction);
    archive.WriteInt32(m_exclusiveOnly);
    archive.WriteCount(static_cast<std::uint32_t>(m_channels.size()));
    for (const ChannelDetails& channel : m_channels) {
        Store(archive, channel);
    }
}

CChannelArray::Loaded CChannelArray::Load(CArchive& archive) {
    Loaded loaded;
    loaded.name = archive.ReadString();
    loaded.stereo = archive.ReadInt32();
    loaded.deviceClassType = archive.ReadByte();
    if (archive.GetConfigVersion() >= kConfigWithDirection) {
        loaded.direction = static_cast<ChannelArrayDir>(archive.ReadByte());
        loaded.exclusiveOnly = archive.ReadInt32();
    } else {
        loaded.deviceClassType = kalvio::kClassTypeIOSwitcher;
    }
    const std::uint32_t count = archive.ReadCount();
    for (std::uint32_t index = 0; index < count; ++index) {
        loaded.channels.push_back(LoadChannel(archive));
    }
    return loaded;
}
