#include "reference_host/configuration/SaveTable.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace kalvio::reference_host {

namespace {

constexpr int kHeading = 0;
constexpr int kItemAdapterDetails = 11000;
constexpr const char* kAll = "all";

// The one group of a document of the host's own.
struct HostGroup {
    const char* caption;
    int item;
    std::uint8_t& (*flag)(const Documents& documents);
};

constexpr HostGroup kHostGroups[] = {
    {"analyser", 3100,
     [](const Documents& d) -> std::uint8_t& { return d.application.analyser->SaveFlags().front(); }},
    {"generator", 4300,
     [](const Documents& d) -> std::uint8_t& { return d.application.generator->SaveFlags().front(); }},
    {"fft parameters", 3310,
     [](const Documents& d) -> std::uint8_t& { return d.application.fftParameters->SaveFlags().front(); }},
    {"fft detectors", 3359,
     [](const Documents& d) -> std::uint8_t& { return d.application.fftDetectors->SaveFlag(); }},
};

struct TreeDocument {
    const char* caption;
    CSettingsData& (*document)(const Documents& documents);
};

constexpr TreeDocument kTreeDocuments[] = {
    {"settling", [](const Documents& d) -> CSettingsData& { return *d.application.settlingDetails; }},
    {"regulation", [](const Documents& d) -> CSettingsData& { return *d.application.regulation; }},
    {"network", [](const Documents& d) -> CSettingsData& { return d.network; }},
};

class SaveTree {
public:
    explicit SaveTree(const Documents& documents) : m_documents(documents) {
        for (const HostGroup& group : kHostGroups) {
            m_tree.AddCheckItem(nullptr, group.caption, group.item, group.flag(documents) != 0);
        }
        for (const TreeDocument& each : kTreeDocuments) {
            each.document(documents).PopulateConfigTreeCtrl(
                &m_tree, m_tree.AddCheckItem(nullptr, each.caption, kHeading, true));
        }
        // The adapters' item comes ticked whatever is saved.
        const bool adapters =
            documents.network.GetFormatConverterSettings()->GetKEDAAdapterSettings()->GetSaveFlag() != 0;
        ForEach([&](HTREEITEM item, int) {
            if (item->id == kItemAdapterDetails && item->firstChild == nullptr) {
                m_tree.SetTicked(item, adapters);
            }
        });
    }

    using Visit = std::function<void(HTREEITEM item, int depth)>;
    void ForEach(const Visit& visit) { ForEachBelow(m_tree.GetRootItem(), 0, visit); }

    // Whether there is such an item.
    bool Tick(const CString& word, bool ticked) {
        bool found = false;
        ForEach([&](HTREEITEM item, int) {
            if (IsCalled(*item, word) || CompareNoCase(word, kAll) == 0) {
                found = true;
                m_tree.SetTicked(item, ticked);
                ForEachBelow(item, 0, [&](HTREEITEM below, int) { m_tree.SetTicked(below, ticked); });
            }
        });
        return found;
    }

    // Whether the items of that name with nothing below them are ticked as in the other tree.
    bool Agrees(SaveTree& other, const CString& word) {
        std::vector<bool> ticks[2];
        for (const int which : {0, 1}) {
            (which == 0 ? *this : other).ForEach([&](HTREEITEM item, int) {
                if (item->firstChild == nullptr && IsCalled(*item, word)) {
                    ticks[which].push_back(item->ticked);
                }
            });
        }
        return ticks[0] == ticks[1];
    }

    void GiveToDocuments() {
        HTREEITEM item = m_tree.GetChildItem(m_tree.GetRootItem());
        for (const HostGroup& group : kHostGroups) {
            group.flag(m_documents) = item->ticked ? 1 : 0;
            item = m_tree.GetNextSiblingItem(item);
        }
        for (const TreeDocument& each : kTreeDocuments) {
            each.document(m_documents).PopulateSaveTable(&m_tree, item);
            item = m_tree.GetNextSiblingItem(item);
        }
    }

private:
    static bool IsCalled(const ::TreeItem& item, const CString& word) {
        return (item.id != kHeading && word == std::to_string(item.id)) ||
               CompareNoCase(word, item.text) == 0;
    }

    void ForEachBelow(HTREEITEM parent, int depth, const Visit& visit) {
        for (HTREEITEM item = m_tree.GetChildItem(parent); item != nullptr;
             item = m_tree.GetNextSiblingItem(item)) {
            visit(item, depth);
            ForEachBelow(item, depth + 1, visit);
        }
    }

    const Documents& m_documents;
    CConfigTreeCtrl m_tree;
};

} // namespace

CString SaveTableText(const Documents& documents) {
    CString text;
    SaveTree(documents).ForEach([&](HTREEITEM item, int depth) {
        const CString indent(static_cast<std::size_t>(depth) * 2, ' ');
        if (item->id == kHeading) {
            text += indent + item->text + "\n";
        } else {
            text += Format("%s[%c] %5d  %s\n", indent.c_str(), item->ticked ? 'x' : ' ', item->id,
                           item->text.c_str());
        }
    });
    return text;
}

CString ChangeSaveTable(const Documents& documents, const CString& changes) {
    SaveTree before(documents);
    SaveTree tree(documents);
    std::vector<CString> words;
    std::string_view rest = changes;
    while (!rest.empty()) {
        const std::string_view change = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), change.size() + 1));
        const std::size_t equals = change.find('=');
        const CString word = Trim(change.substr(0, equals));
        const CString state = equals == std::string_view::npos ? CString() : Trim(change.substr(equals + 1));
        if (state != "on" && state != "off") {
            return "\"" + CString(change) + "\" must be an item, \"=\", and on or off";
        }
        if (!tree.Tick(word, state == "on")) {
            return "there is no group \"" + word + "\"";
        }
        words.push_back(word);
    }
    tree.GiveToDocuments();
    SaveTree kept(documents);
    const auto lost =
        std::ranges::find_if(words, [&](const CString& word) { return !kept.Agrees(tree, word); });
    if (lost == words.end()) {
        return {};
    }
    before.GiveToDocuments();
    return "\"" + *lost + "\" is saved with the group above it, not by itself";
}

} // namespace kalvio::reference_host
