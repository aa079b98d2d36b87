#pragma once

// Tree models of the host: the save table and the automation browser.

#include "platform/Export.h"
#include "platform/Text.h"

#include <deque>
#include <span>

// One item of a tree; handles stay valid while their tree lives.
struct TreeItem {
    CString text;
    int id = 0;
    bool ticked = false;
    int flags[2] = {0, 0};
    TreeItem* parent = nullptr;
    TreeItem* firstChild = nullptr;
    TreeItem* nextSibling = nullptr;
};

using HTREEITEM = TreeItem*;

// A tree with one root that shows no text of its own. User-interface thread.
class KALVIO_API CTreeCtrl {
public:
    CTreeCtrl();
    CTreeCtrl(const CTreeCtrl&) = delete;
    CTreeCtrl& operator=(const CTreeCtrl&) = delete;
    [[nodiscard]] HTREEITEM GetRootItem() { return &m_items.front(); }
    // The first child and the next sibling, or null when there is none (or no item is given).
    [[nodiscard]] HTREEITEM GetChildItem(HTREEITEM parent) const;
    [[nodiscard]] HTREEITEM GetNextSiblingItem(HTREEITEM item) const;

protected:
    // Adds an item as the last child of the parent (null: of the root).
    HTREEITEM Insert(HTREEITEM parent, TreeItem item);

private:
    std::deque<TreeItem> m_items; // the first is the root
};

// The save table: which groups a saved configuration carries.
class KALVIO_API CConfigTreeCtrl : public CTreeCtrl {
public:
    // Adds an item with a tick box as the parent's last child (null: the root's).
    HTREEITEM AddCheckItem(HTREEITEM parent, const CString& text, int id, bool ticked);
    void SetTicked(HTREEITEM item, bool ticked) { item->ticked = ticked; }
    void GetItemDetails(HTREEITEM item, int& id, bool& ticked) const;
};

namespace kalvio {

// How the automation browser shows an entry: the second of its flags, behind a 1. A field is a property that
// the document's rows describe.
enum class BrowserKind : int { Field = 1, Property = 2, Method = 3 };

struct BrowserEntry {
    unsigned text; // string id
    int id;
    BrowserKind kind = BrowserKind::Method;
};

} // namespace kalvio

// The automation browser. The flags say how it shows the entry.
class KALVIO_API COLETreeCtrl : public CTreeCtrl {
public:
    // Add entries, in this order, or a folder, whose flags are 0, as the parent's last children (null: the
    // root's).
    void AddEntries(HTREEITEM parent, std::span<const kalvio::BrowserEntry> entries);
    HTREEITEM AddEntry(HTREEITEM parent, const CString& text, int id, kalvio::BrowserKind kind);
    HTREEITEM AddFolder(HTREEITEM parent, unsigned text, int id);
    // Adds an entry as the parent's last child (null: the root's).
    HTREEITEM AddItem(HTREEITEM parent, const CString& text, int id, int flag1, int flag2);
};
