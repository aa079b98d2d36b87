#include "reference_host/configuration/NetworkCheck.h"

#include "adapters/KEDAAdapter.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "switching/ArchiveVersions.h"
#include "switching/ChannelArray.h"

#include <limits>
#include <set>

namespace kalvio::reference_host {

namespace {

constexpr int kConfigWithAdapters = 18;
constexpr int kHighestAddress = kDeviceAddresses - 1;
constexpr int kHighestSlaveAddress = 127;

// The channels that devices of a kind have; each number counts from 0.
struct DeviceKind {
    std::uint8_t classType;
    std::uint8_t lastBus;
    std::uint8_t lastGroup;
    std::uint8_t lastChannel;
};
constexpr DeviceKind kDeviceKinds[] = {{kClassTypeIOSwitcher, 1, 1, 7}, {kClassTypeKedaAdapter, 2, 1, 15}};
constexpr std::uint8_t kAllFlags = kChannelBalanced | kChannelLoaded;

const DeviceKind* FindKind(std::uint8_t classType) {
    for (const DeviceKind& kind : kDeviceKinds) {
        if (kind.classType == classType) {
            return &kind;
        }
    }
    return nullptr;
}

struct CaseLess {
    bool operator()(const CString& a, const CString& b) const { return CompareNoCase(a, b) < 0; }
};

class NetworkChecker {
public:
    NetworkChecker(CArchive& archive, ProblemList& problems) : m_archive(archive), m_problems(problems) {}

    // Throws for an archive that ends too early or has a damaged length.
    void Check() {
        CheckArrays();
        if (m_archive.GetConfigVersion() >= kConfigWithAdapters) {
            CheckAdapters();
        }
    }

    [[nodiscard]] const CString& Place() const { return m_place; }

private:
    void CheckArrays() {
        m_place = "channel arrays";
        m_archive.ReadByte();
        const std::int16_t count = m_archive.ReadInt16();
        m_problems.Require("number of channel arrays", count, 0, std::numeric_limits<std::int16_t>::max());
        for (int number = 1; number <= count; ++number) {
            m_place = Format("channel array %d", number);
            CChannelArray array("");
            array.Serialize(m_archive);
            CheckArray(array);
        }
    }

    void CheckArray(const CChannelArray& array) {
        const CString name = "array \"" + array.GetName() + "\"";
        if (!m_names.insert(array.GetName()).second) {
            m_problems.Add(name, "must have a name of its own; another array has it");
        }
        m_problems.Require(name + " direction", array.GetDirection(), CChannelArray::DirectionNone,
                           CChannelArray::DirectionOutput);
        ChannelDetails channel;
        ChannelDetails first;
        for (short index = 0; array.GetChannelDetails(index, channel) != 0; ++index) {
            first = index == 0 ? channel : first;
            CheckChannel(Format("%s channel %d", name.c_str(), index + 1), channel, first);
            if (index == std::numeric_limits<short>::max()) {
                return;
            }
        }
    }

    void CheckChannel(const CString& name, const ChannelDetails& channel, const ChannelDetails& first) {
        const DeviceKind* kind = FindKind(channel.classType);
        if (kind == nullptr) {
            m_problems.Add(name + " device", Format("must be an I/O switcher (17) or an adapter (33), is %d",
                                                    channel.classType));
            return;
        }
        if (channel.classType != first.classType) {
            m_problems.Add(name + " device", "must be of the kind of the array's first channel");
        }
        m_problems.Require(name + " address", channel.address, 0, kHighestAddress);
        m_problems.Require(name + " bus", channel.bus, 0, kind->lastBus);
        m_problems.Require(name + " group", channel.group, 0, kind->lastGroup);
        m_problems.Require(name + " channel", channel.channel, 0, kind->lastChannel);
        m_problems.Require(name + " state", channel.state, 0, 1);
        m_problems.Require(name + " flags", channel.flags, 0, kAllFlags);
    }

    void CheckAdapters() {
        m_place = "adapters";
        m_archive.ReadInt32();
        const std::int16_t count = m_archive.ReadInt16();
        m_problems.Require("number of adapters", count, 0, kDeviceAddresses);
        std::set<std::uint8_t> addresses;
        for (int number = 1; number <= count; ++number) {
            m_place = Format("adapter %d", number);
            const std::uint8_t address = m_archive.ReadByte();
            const CKEDAAdapter::Record record = CKEDAAdapter::ReadRecord(m_archive);
            if (!addresses.insert(address).second) {
                m_problems.Add(m_place + " address",
                               Format("must be its own; another adapter has %d", address));
            }
            m_problems.Require(m_place + " address", address, 0, kHighestAddress);
            m_problems.Require(m_place + " status address", record.status.GetAddress(), address, address);
            m_problems.Require(m_place + " I2C slave address", record.image[keda::kSlaveAddress], 0,
                               kHighestSlaveAddress);
        }
    }

    CArchive& m_archive;
    ProblemList& m_problems;
    std::set<CString, CaseLess> m_names;
    CString m_place; // what is being read
};

} // namespace

void CheckNetwork(CArchive& archive, ProblemList& problems) {
    if (!HoldsPeripherals(archive)) {
        return;
    }
    NetworkChecker checker(archive, problems);
    try {
        checker.Check();
    } catch (const CArchiveException& damage) {
        problems.Add(checker.Place(), damage.what());
    }
}

} // namespace kalvio::reference_host
