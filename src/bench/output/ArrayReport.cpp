#include "bench/output/ArrayReport.h"

#include "bench/ReferenceHostNames.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "reference_host/script/ChannelPlace.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <vector>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

constexpr std::size_t kChannelsOfBlock = 16;
constexpr std::size_t kLongestTitle = 60;

std::vector<ChannelDetails> ChannelsOf(const CChannelArray& array) {
    std::vector<ChannelDetails> channels;
    ChannelDetails channel;
    for (short index = 0; array.GetChannelDetails(index, channel) != 0; ++index) {
        channels.push_back(channel);
    }
    return channels;
}

bool IsBalanced(const ChannelDetails& channel) {
    return (channel.flags & kChannelBalanced) != 0;
}

bool IsLoaded(const ChannelDetails& channel) {
    return (channel.flags & kChannelLoaded) != 0;
}

struct Row {
    const char* label;
    std::string (*cell)(const ChannelDetails& channel);
};

constexpr Row kRows[] = {
    {"state", [](const ChannelDetails& c) { return std::string(c.state == 1 ? "on" : "."); }},
    {"device", [](const ChannelDetails& c) { return PlaceOf(c).device; }},
    {"bus", [](const ChannelDetails& c) { return PlaceOf(c).bus; }},
    {"group", [](const ChannelDetails& c) { return PlaceOf(c).group; }},
    {"relay", [](const ChannelDetails& c) { return PlaceOf(c).channel; }},
};

constexpr Row kFlagsRow{"flags", [](const ChannelDetails& c) {
                            return std::string(IsBalanced(c) ? "b" : "") + (IsLoaded(c) ? "l" : "");
                        }};

std::string Line(const Row& row, std::span<const ChannelDetails> block) {
    std::string text = Format("  %-8s", row.label);
    for (const ChannelDetails& channel : block) {
        text += Format("%4s", row.cell(channel).c_str());
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

std::string Block(std::span<const ChannelDetails> block, std::size_t first) {
    std::string text = Format("  %-8s", "channel");
    for (std::size_t i = 0; i < block.size(); ++i) {
        text += Format("%4zu", first + i + 1);
    }
    text += "\n";
    for (const Row& row : kRows) {
        text += Line(row, block);
    }
    const bool flagged = std::ranges::any_of(block, [](const ChannelDetails& c) { return c.flags != 0; });
    return flagged ? text + Line(kFlagsRow, block) : text;
}

// What a terminal can show of a name.
std::string Title(const CString& name) {
    std::string text = name.substr(0, kLongestTitle);
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return name.size() > kLongestTitle ? text + "..." : text;
}

std::string TypeOf(const CChannelArray& array) {
    return CKvNetStatus(0, std::uint32_t{array.GetDeviceClassType()}).TypeName();
}

std::string Quoted(const CString& name) {
    std::string text = "\"";
    for (const char c : name) {
        text += c == '"' ? "\"\"" : std::string(1, c);
    }
    return text + "\"";
}

Json ChannelJson(const ChannelDetails& channel, std::size_t number) {
    const ChannelPlace place = PlaceOf(channel);
    return {{"channel", number},
            {"on", channel.state == 1},
            {"device", channel.address},
            {"bus", place.bus},
            {"group", place.group},
            {"relay", channel.channel},
            {"balanced", IsBalanced(channel)},
            {"loaded", IsLoaded(channel)}};
}

Json ArrayJson(const CChannelArray& array) {
    const std::vector<ChannelDetails> channels = ChannelsOf(array);
    Json list = Json::array();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        list.push_back(ChannelJson(channels[i], i + 1));
    }
    Json json{{"name", array.GetName()},
              {"stereo", array.IsStereoArray() != 0},
              {"exclusive-only", array.GetExclusiveOnly() != 0}};
    json["type"] = channels.empty() ? Json(nullptr) : Json(TypeOf(array));
    json["channels"] = list;
    return json;
}

} // namespace

std::string ArrayTable(const CChannelArray& array) {
    const std::vector<ChannelDetails> channels = ChannelsOf(array);
    std::string text = Title(array.GetName()) + ": " + (array.IsStereoArray() != 0 ? "stereo" : "mono") +
                       (array.GetExclusiveOnly() != 0 ? ", exclusive only" : "");
    if (channels.empty()) {
        return text + ", no channels\n";
    }
    text += Format(", %zu channels, %s\n", channels.size(), TypeOf(array).c_str());
    for (std::size_t first = 0; first < channels.size(); first += kChannelsOfBlock) {
        const std::size_t count = std::min(kChannelsOfBlock, channels.size() - first);
        text += Block(std::span(channels).subspan(first, count), first);
    }
    return text;
}

std::string ArraysTable(const CChannelArrayList& arrays) {
    std::string text;
    for (int index = 0; index < arrays.GetCount(); ++index) {
        text += (text.empty() ? "" : "\n") + ArrayTable(*arrays.GetAt(index));
    }
    return text.empty() ? "no channel arrays are defined\n" : text;
}

Json ArraysJson(const CChannelArrayList& arrays) {
    Json list = Json::array();
    for (int index = 0; index < arrays.GetCount(); ++index) {
        list.push_back(ArrayJson(*arrays.GetAt(index)));
    }
    return {{"arrays", list}};
}

void WriteArraysCsv(std::ostream& stream, const CChannelArrayList& arrays) {
    stream << "array,channel,state,device,bus,group,relay,balanced,loaded\n";
    for (int index = 0; index < arrays.GetCount(); ++index) {
        const CChannelArray& array = *arrays.GetAt(index);
        std::size_t number = 0;
        for (const ChannelDetails& channel : ChannelsOf(array)) {
            const ChannelPlace place = PlaceOf(channel);
            stream << Quoted(array.GetName()) << "," << ++number << "," << (channel.state == 1 ? "on" : "off")
                   << "," << place.device << "," << place.bus << "," << place.group << "," << place.channel
                   << "," << IsBalanced(channel) << "," << IsLoaded(channel) << "\n";
        }
    }
    stream << std::flush;
}

} // namespace kalvio::bench
