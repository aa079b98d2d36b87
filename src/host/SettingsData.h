#pragma once

// The base of every settings document: fields with details, messengers, automation setters, view hints
// and archives. User-interface thread unless a member says otherwise.

#include "host/BaseDocument.h"
#include "host/Field.h"
#include "host/FieldDetails.h"
#include "host/FieldTable.h"
#include "host/Messengers.h"
#include "host/Trees.h"
#include "host/Views.h"
#include "platform/Export.h"

#include <cstdint>
#include <span>

class CHostApplication;

enum ChannelNumber : int {
    kChannelA = 0,
    kChannelB = 1,
    kChannelBoth = 2,
    kChannelEither = 5,
};

class KALVIO_API CSettingsData : public CBaseDocument {
public:
    // The host application that the document asks from then on; it outlives the document. Null: the one in
    // force whenever the document asks.
    explicit CSettingsData(CHostApplication* host = nullptr) : m_host(host) {}
    // The host application that the document asks. Any thread.
    [[nodiscard]] CHostApplication& Host() const;
    // The same as the constructor took it, for the documents that this one makes. Any thread.
    [[nodiscard]] CHostApplication* GivenHost() const { return m_host; }

    // The rows of the document's fields; none by default. They live as long as the program.
    [[nodiscard]] virtual std::span<const kalvio::FieldRow> FieldRows() const;

    // What a document offers about its fields; index and control id as its rows give them. A field that no
    // row knows has no details, index -1, limits and default 0.
    [[nodiscard]] virtual const FieldDetails* GetDefaultFieldDetails(int ctrlID, int unit);
    [[nodiscard]] virtual int GetFieldIndexForCtrlID(int ctrlID, int unit); // -1: no field
    // 1 when the field may take the value, else 0: as its row says, else when it lies within its limits.
    [[nodiscard]] virtual int IsEnumValueValid(int ctrlID, int value);
    [[nodiscard]] virtual double GetMinValue(int index);
    [[nodiscard]] virtual double GetMaxValue(int index);
    [[nodiscard]] virtual double GetDefaultValue(int index);

    // The messenger handler: reads or writes the field with the messenger's control id. False when the
    // document has no such field; a value that the field cannot take sets the messenger's refused flag and
    // the reason, and changes nothing. By default the rows' reactions. A document whose fields are sources is
    // called from the pre-processor thread as well: its handler guards its fields, applies to the hardware
    // and posts the view update.
    virtual bool OnMessenger(CIntValueMessenger* messenger);
    virtual bool OnMessenger(CPhyValueMessenger* messenger);

    // A control of a view changed: 1 when the document took it, 0 when it refused.
    virtual int OnViewChanged(CView* view, int ctrlID);
    // Sends what belongs to a control to the hardware.
    virtual void UpdateHardware(int ctrlID);
    // Opens the document's window (the panel -1: all of them), or null when there is none.
    virtual CTypedFrameWnd* OpenSettingsWindow(int panel, int show, int windowType, const CPoint* where);
    virtual void PrintDetails(CPrintView* view);
    // Adds the document's groups to the save table, and reads their ticks back (a null tree: all ticked).
    virtual void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent);
    virtual void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent);
    // Adds the document's entries to the automation browser.
    virtual void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent);

    // The units that a field of this document may be shown in, for combos; the base offers none.
    [[nodiscard]] virtual std::span<const int> GetUnitsForCtrlID(int ctrlID);

    // Checks a value against entry `index` of the table (when `check`), stores it, marks the document
    // modified and sends each hint to the views (when `update`). Refused: the value is NaN, out of its limits
    // or the table has no such entry; nothing is changed, and a box names the range of a checked value when
    // the host's automation display is on.
    kalvio::SetOutcome SetValue(kalvio::Field<std::int32_t>& member, std::span<const FieldDetails> table,
                                int index, std::span<const int> hints, std::int32_t value, int check,
                                int update);
    kalvio::SetOutcome SetValue(kalvio::Field<double>& member, std::span<const FieldDetails> table, int index,
                                std::span<const int> hints, double value, int check, int update);

    // Automation setters and getters: through the messenger handler, as the user interface does. A value in
    // the field's current unit. Refused, with the range or the choices: the field cannot take the value, or
    // there is no such field; a box tells the same only when the host's automation display is on. The getter
    // answers 0 for no such field.
    kalvio::SetOutcome OLESetIntValue(int value, int ctrlID);
    kalvio::SetOutcome OLESetPhyValue(double value, int ctrlID);
    double OLEGetPhyValue(int ctrlID);

    // A value as a field shows it: in base 10 as the details' format says, in base 16 as an integer.
    [[nodiscard]] static CString FormatNumber(double value, const FieldDetails& details, int base = 10);

    // Registers this document as its own base settings with the host.
    void SetBaseSettings(CSettingsData* base) { m_base = base; }
    [[nodiscard]] CSettingsData* BaseSettings() const { return m_base; }

    // What the field of a control may hold just now, as a refusal tells it: "0 (Absolute), 1 (Maximum)" or a
    // range. Empty for no such field.
    [[nodiscard]] CString AdmittedText(int ctrlID) const;

protected:
    // Messenger helpers. On get they fill the messenger. Otherwise they check the value (OnIntValue against
    // the limits of the field index, OnEnumValue through IsEnumValueValid, OnBoolValue takes any value but 0
    // as 1), store it, mark the document modified and the messenger changed, and answer true; a value that
    // is stored already answers false, and so does one that is refused, which a box explains when the
    // messenger wants messages. View hints are the caller's.
    bool OnIntValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger, int index);
    bool OnEnumValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger);
    bool OnBoolValue(kalvio::Field<std::int32_t>& member, CIntValueMessenger* messenger);
    // The same for a real. The member is kept in `storedUnit` (kUnitStorage: storage units); limits are in
    // `fieldUnit`, which is also the unit of a messenger with unit kUnitNone. A get also hands over the
    // references. NaN is refused; a value within the rounding of a limit is taken.
    bool OnPhyValue(kalvio::Field<double>& member, CPhyValueMessenger* messenger, const FieldDetails& limits,
                    int fieldUnit, int storedUnit, const SReferences& references);

private:
    template<typename T>
    kalvio::SetOutcome CheckAndSet(kalvio::Field<T>& member, std::span<const FieldDetails> table, int index,
                                   std::span<const int> hints, T value, int check, int update);
    template<typename Messenger, typename T>
    bool Store(kalvio::Field<T>& member, Messenger* messenger, T value);
    [[nodiscard]] CString Description(int ctrlID);
    [[nodiscard]] FieldDetails DetailsOfRow(const kalvio::FieldRow& row);
    void TakeByKind(const kalvio::FieldRow& row, CIntValueMessenger* messenger);
    void TakeByKind(const kalvio::FieldRow& row, CPhyValueMessenger* messenger);

    CHostApplication* m_host; // set once; null: the one in force
    CSettingsData* m_base = nullptr;
};

// Tells every view and observer that a field changed. On the user-interface thread at once; from any other
// the update is queued for that thread, without waiting, and the sender and object are dropped. Any thread;
// hold no lock that a view's document takes.
KALVIO_API void UpdateViews(CView* sender, int hint, void* object, int flag);
