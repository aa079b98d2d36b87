#pragma once

// The dialog that names a channel array.

#include "platform/Dialog.h"
#include "platform/Export.h"

class CChannelArray;

namespace kalvio {

// Who knows which names are taken.
class ChannelArrayNames {
public:
    // 1 when no array but `except` (null: none) has the name; else 0, and the user was told.
    virtual int IsNameUnique(const CString& name, CChannelArray* except) = 0;

protected:
    ~ChannelArrayNames() = default;
};

// What the dialog edits; flags are 1 or 0.
struct ArrayIdentity {
    CString name; // at most 32 characters as typed
    int stereo = 0;
    int exclusiveOnly = 0;
    bool operator==(const ArrayIdentity&) const = default;
};

} // namespace kalvio

// OK closes it only with a name that is unique; Cancel asks first when something was changed. User-interface
// thread.
class KALVIO_API CChannelArrayDetailsDlg : public CDialog {
public:
    // Null: a new array. A flag that may not be edited is shown greyed.
    CChannelArrayDetailsDlg(kalvio::ChannelArrayNames& page, CChannelArray* array,
                            kalvio::ArrayIdentity identity, bool stereoEditable, bool exclusiveOnlyEditable);
    ~CChannelArrayDetailsDlg() override;

    int DoModal(CWnd* parent = nullptr); // IDOK or IDCANCEL
    [[nodiscard]] const kalvio::ArrayIdentity& Identity() const { return m_identity; }

protected:
    bool OnInitDialog() override;
    void OnCommand(int controlId) override;

private:
    [[nodiscard]] kalvio::ArrayIdentity Entered() const;

    kalvio::ChannelArrayNames& m_page;
    CChannelArray* m_array;
    kalvio::ArrayIdentity m_identity;
    bool m_stereoEditable;
    bool m_exclusiveOnlyEditable;
};
