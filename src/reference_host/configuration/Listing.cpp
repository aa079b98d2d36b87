#include "reference_host/configuration/Listing.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "platform/Json.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"

#include <algorithm>
#include <map>

namespace kalvio::reference_host {

namespace {

constexpr std::string_view kFft = "fft";

const char* YesNo(bool yes) {
    return yes ? "yes" : "no";
}

// Units of fields that show one unit always, by the end of their names.
struct FixedUnit {
    std::string_view ending;
    const char* unit;
};
constexpr FixedUnit kFixedUnits[] = {{"SettlingTime", "ms"},
                                     {"REG_Timeout", "s"},
                                     {"ample rate", "Hz"},
                                     {"voltage", "V"},
                                     {"FFT length", "points"}};

CString UnitOf(std::string_view name) {
    for (const FixedUnit& fixed : kFixedUnits) {
        if (name.ends_with(fixed.ending)) {
            return fixed.unit;
        }
    }
    return {};
}

class Lister {
public:
    explicit Lister(const Documents& documents) : m_documents(documents) {}

    std::vector<ListedField> List() {
        for (const FieldSection& section : FieldSections()) {
            m_section = section.name;
            ListDocument(section.document(m_documents));
            if (section.name == kFft) {
                ListDetectors();
            }
        }
        m_section = kSectionNetwork;
        ListArrays();
        ListAdapters();
        m_section = "windows";
        ListWindows();
        return std::move(m_fields);
    }

private:
    void AddText(const CString& name, const CString& text) {
        m_fields.push_back({m_section, name, text, {}, JsonText(text), m_saved});
    }
    void AddNumber(const CString& name, double value, const CString& unit = {}) {
        m_fields.push_back({m_section, name, ShortestText(value), unit, JsonNumber(value), m_saved});
    }

    // Flags and values as the document's archive holds them.
    void ListDocument(CSettingsData& document) {
        CArchive stored;
        document.Serialize(stored);
        CArchive archive(stored.Bytes());
        const std::vector<const FieldRow*> rows = RowsInArchiveOrder(document.FieldRows());
        for (const FieldRow* row : rows) {
            const LoadedField field = ReadField(archive, *row);
            m_saved = field.saveFlag != 0;
            const bool shared = std::ranges::count(rows, row->ctrlID, &FieldRow::ctrlID) > 1;
            ListField(document, *row, field.value, shared);
        }
        m_saved = true;
    }

    // Fields that share a control are shown as they are kept: the control shows but one of them.
    void ListField(CSettingsData& document, const FieldRow& row, double kept, bool shared) {
        const CString name = FieldName(row);
        const ValueDescription description = DescribeField(document, row);
        for (const auto& choice : description.choices) {
            if (choice.value == kept) {
                return AddText(name, choice.text);
            }
        }
        if (row.kind == FieldKind::Flag) {
            return AddText(name, YesNo(kept != 0.0));
        }
        if (row.real == nullptr || row.unit == nullptr || shared) {
            return AddNumber(name, kept, shared ? CString() : UnitOf(name));
        }
        AddNumber(name, document.OLEGetPhyValue(row.ctrlID), description.unit);
    }

    void ListDetectors() {
        m_saved = m_documents.application.fftDetectors->SaveFlag() != 0;
        for (const CFFTDetectorSettings* detector : m_documents.application.fftDetectors->All()) {
            const CString name = Format("detector %d", detector->Id());
            AddText(name + " name", detector->Name());
            AddText(name + " unit", GetStringForUnit(detector->Unit()));
            AddNumber(name + " reference", detector->RelativeReference());
        }
        m_saved = true;
    }

    void ListArrays() {
        m_saved = m_documents.network.GetSaveChannelArrays() != 0;
        const CChannelArrayList& arrays = *m_documents.network.GetChannelArrayList();
        for (int index = 0; index < arrays.GetCount(); ++index) {
            ListArray(*arrays.GetAt(index));
        }
        m_saved = true;
    }

    void ListArray(const CChannelArray& array) {
        constexpr const char* kDirections[] = {"none", "input", "output"};
        const CString name = "array \"" + array.GetName() + "\"";
        const std::size_t direction = std::min<std::size_t>(array.GetDirection(), 2);
        AddText(name, Format("%s, exclusive only: %s, direction: %s",
                             array.IsStereoArray() != 0 ? "stereo" : "mono",
                             YesNo(array.GetExclusiveOnly() != 0), kDirections[direction]));
        ChannelDetails channel;
        for (short index = 0; array.GetChannelDetails(index, channel) != 0; ++index) {
            const bool switcher = channel.classType == kClassTypeIOSwitcher;
            AddText(Format("%s[%d]", name.c_str(), index + 1),
                    Format("%-8s %2d  bus %d  group %d  channel %2d  %-3s%s%s",
                           switcher ? "switcher" : "adapter", channel.address, channel.bus, channel.group,
                           channel.channel, channel.state != 0 ? "on" : "off",
                           (channel.flags & kChannelBalanced) != 0 ? "  balanced" : "",
                           (channel.flags & kChannelLoaded) != 0 ? "  loaded" : ""));
        }
    }

    void ListAdapters() {
        const CKEDAAdapterSettings& adapters =
            *m_documents.network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
        m_saved = adapters.GetSaveFlag() != 0;
        for (const auto& [address, adapter] : adapters.Adapters()) {
            ListAdapter(Format("adapter %d ", address), *adapter);
        }
        m_saved = true;
    }

    struct AdapterValue {
        const char* name;
        const char* unit;
        int (CKEDAAdapter::*get)() const;
    };
    struct DirectionValue {
        const char* name;
        const char* unit;
        int (CKEDAAdapter::*get)(int which) const;
    };
    static const AdapterValue kAdapterValues[];
    static const DirectionValue kDirectionValues[];

    void ListAdapter(const CString& prefix, const CKEDAAdapter& adapter);
    void ListRouting(const CString& prefix, const CKEDAAdapter& adapter);

    void ListWindows() {
        if (m_documents.windows == nullptr) {
            return;
        }
        for (const WindowLayout& layout : m_documents.windows->Collect()) {
            CString hex;
            for (const std::uint8_t byte : layout.bytes) {
                hex += Format("%02X", byte);
            }
            AddText(layout.name, hex.empty() ? "open" : hex);
        }
    }

    const Documents& m_documents;
    CString m_section;
    bool m_saved = true;
    std::vector<ListedField> m_fields;
};

using Adapter = CKEDAAdapter;

const Lister::AdapterValue Lister::kAdapterValues[] = {
    {"generator bypass", "", &Adapter::GetGenBypass},
    {"analyser bypass", "", &Adapter::GetAnaBypass},
    {"reference bypass", "", &Adapter::GetRefBypass},
    {"audio on", "", &Adapter::GetAudioOn},
    {"audio voltage", "", &Adapter::GetAudioVoltageSelect},
    {"control on", "", &Adapter::GetCtrlOn},
    {"control voltage", "", &Adapter::GetCtrlVoltageSelect},
    {"control mode", "", &Adapter::GetControlMode},
    {"SPI clock phase", "", &Adapter::GetSPIClockPhase},
    {"SPI clock polarity", "", &Adapter::GetSPIClockPolarity},
    {"I2C slave address", "", &Adapter::GetSlaveAddress},
    {"bytes to transmit", "", &Adapter::GetNumTransmitChars},
};

const Lister::DirectionValue Lister::kDirectionValues[] = {
    {"slot length", "bit", &Adapter::GetSlotLength},
    {"slots per wire", "", &Adapter::GetSubChannelsPerWire},
    {"LSB first", "", &Adapter::GetLSBFirst},
    {"sign extend", "", &Adapter::GetSignExtend},
    {"lead pad", "bit", &Adapter::GetLeadPadLength},
    {"data length", "bit", &Adapter::GetDataLength},
    {"trail pad", "bit", &Adapter::GetTrailPadLength},
    {"master clock direction", "", &Adapter::GetMasterClockDir},
    {"serial clock direction", "", &Adapter::GetSerialClockDir},
    {"master clock multiplier", "", &Adapter::GetMasterClockMultiplier},
    {"bit clock inverted", "", &Adapter::GetBitClockInvert},
    {"frame clock inverted", "", &Adapter::GetFrameClockInvert},
    {"frame clock 1 bit", "", &Adapter::GetFrameClock1Bit},
    {"frame clock early", "", &Adapter::GetFrameClockEarly},
    {"delay", "ns", &Adapter::GetDelay},
};

void Lister::ListAdapter(const CString& prefix, const CKEDAAdapter& adapter) {
    for (const AdapterValue& value : kAdapterValues) {
        AddNumber(prefix + value.name, (adapter.*value.get)(), value.unit);
    }
    for (const int which : {0, 1}) {
        const CString direction = prefix + (which == 0 ? "generator " : "analyser ");
        for (const DirectionValue& value : kDirectionValues) {
            AddNumber(direction + value.name, (adapter.*value.get)(which), value.unit);
        }
    }
    ListRouting(prefix, adapter);
}

// The generator's slots wire after wire, and where the analyser takes its two channels from.
void Lister::ListRouting(const CString& prefix, const CKEDAAdapter& adapter) {
    CString routing;
    for (int wire = 1; wire <= adapter.GetNumWires(0); ++wire) {
        routing += routing.empty() ? "" : " | ";
        for (int slot = 1; slot <= adapter.GetSubChannelsPerWire(0); ++slot) {
            routing += "-AB"[std::clamp(adapter.GetGenRouting(wire, slot), 0, 2)];
        }
    }
    AddText(prefix + "generator routing", routing);
    using namespace keda;
    AddNumber(prefix + "analyser routing A", adapter.Registers()[kAnaRoutingA]);
    AddNumber(prefix + "analyser routing B", adapter.Registers()[kAnaRoutingB]);
}

using Key = std::pair<CString, CString>;

std::map<Key, CString> ByName(const std::vector<ListedField>& fields) {
    std::map<Key, CString> shown;
    for (const ListedField& field : fields) {
        shown.emplace(Key(field.section, field.name), field.Shown() + (field.saved ? "" : " (not saved)"));
    }
    return shown;
}

CString JsonOrNull(const std::optional<CString>& text) {
    return text ? JsonText(*text) : CString("null");
}

} // namespace

std::vector<ListedField> ListFields(const Documents& documents) {
    return Lister(documents).List();
}

CString ListingText(const std::vector<ListedField>& fields) {
    std::size_t width = 0;
    for (const ListedField& field : fields) {
        width = std::max(width, field.name.size());
    }
    CString text;
    CString section;
    for (const ListedField& field : fields) {
        if (field.section != section) {
            text += (section.empty() ? "" : "\n") + field.section + "\n";
        }
        section = field.section;
        text += "  " + field.name + CString(width - field.name.size() + 2, ' ') + field.Shown() +
                (field.saved ? "" : " (not saved)") + "\n";
    }
    return text;
}

CString ListingJson(const std::vector<ListedField>& fields) {
    CString text;
    CString section;
    for (const ListedField& field : fields) {
        if (field.section != section) {
            text += (section.empty() ? "{" : "],") + JsonText(field.section) + ":[";
        } else {
            text += ",";
        }
        section = field.section;
        text += "{\"name\":" + JsonText(field.name) + ",\"value\":" + field.json +
                ",\"unit\":" + JsonText(field.unit) + ",\"saved\":" + (field.saved ? "true" : "false") + "}";
    }
    return text.empty() ? "{}" : text + "]}";
}

std::vector<Difference> Compare(const std::vector<ListedField>& before,
                                const std::vector<ListedField>& after) {
    const std::map<Key, CString> first = ByName(before);
    const std::map<Key, CString> second = ByName(after);
    std::vector<Difference> differences;
    for (const ListedField& field : before) {
        const Key key(field.section, field.name);
        const auto other = second.find(key);
        if (other == second.end()) {
            differences.push_back({field.section, field.name, first.at(key), std::nullopt});
        } else if (other->second != first.at(key)) {
            differences.push_back({field.section, field.name, first.at(key), other->second});
        }
    }
    for (const ListedField& field : after) {
        if (const Key key(field.section, field.name); !first.contains(key)) {
            differences.push_back({field.section, field.name, std::nullopt, second.at(key)});
        }
    }
    return differences;
}

CString DifferencesText(const std::vector<Difference>& differences) {
    CString text;
    for (const Difference& each : differences) {
        text += each.section + ": " + each.name + ": " + each.before.value_or("(none)") + " -> " +
                each.after.value_or("(none)") + "\n";
    }
    return text;
}

CString DifferencesJson(const std::vector<Difference>& differences) {
    CString text;
    for (const Difference& each : differences) {
        text += (text.empty() ? "" : ",") +
                ("{\"section\":" + JsonText(each.section) + ",\"name\":" + JsonText(each.name) +
                 ",\"before\":" + JsonOrNull(each.before) + ",\"after\":" + JsonOrNull(each.after) + "}");
    }
    return "[" + text + "]";
}

} // namespace kalvio::reference_host
