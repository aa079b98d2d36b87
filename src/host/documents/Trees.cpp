#include "host/Trees.h"

CTreeCtrl::CTreeCtrl() {
    m_items.emplace_back();
}

HTREEITEM CTreeCtrl::GetChildItem(HTREEITEM parent) const {
    return parent == nullptr ? nullptr : parent->firstChild;
}

HTREEITEM CTreeCtrl::GetNextSiblingItem(HTREEITEM item) const {
    return item == nullptr ? nullptr : item->nextSibling;
}

HTREEITEM CTreeCtrl::Insert(HTREEITEM parent, TreeItem item) {
    TreeItem& added = m_items.emplace_back(std::move(item));
    added.parent = parent == nullptr ? GetRootItem() : parent;
    TreeItem** link = &added.parent->firstChild;
    while (*link != nullptr) {
        link = &(*link)->nextSibling;
    }
    *link = &added;
    return &added;
}

HTREEITEM CConfigTreeCtrl::AddCheckItem(HTREEITEM parent, const CString& text, int id, bool ticked) {
    TreeItem item;
    item.text = text;
    item.id = id;
    item.ticked = ticked;
    return Insert(parent, std::move(item));
}

void CConfigTreeCtrl::GetItemDetails(HTREEITEM item, int& id, bool& ticked) const {
    id = item->id;
    ticked = item->ticked;
}

HTREEITEM COLETreeCtrl::AddItem(HTREEITEM parent, const CString& text, int id, int flag1, int flag2) {
    TreeItem item;
    item.text = text;
    item.id = id;
    item.flags[0] = flag1;
    item.flags[1] = flag2;
    return Insert(parent, std::move(item));
}

void COLETreeCtrl::AddEntries(HTREEITEM parent, std::span<const kalvio::BrowserEntry> entries) {
    for (const kalvio::BrowserEntry& entry : entries) {
        AddEntry(parent, kalvio::LoadText(entry.text), entry.id, entry.kind);
    }
}

HTREEITEM COLETreeCtrl::AddEntry(HTREEITEM parent, const CString& text, int id, kalvio::BrowserKind kind) {
    return AddItem(parent, text, id, 1, static_cast<int>(kind));
}

HTREEITEM COLETreeCtrl::AddFolder(HTREEITEM parent, unsigned text, int id) {
    return AddItem(parent, kalvio::LoadText(text), id, 0, 0);
}
