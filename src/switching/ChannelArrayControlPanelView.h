#pragma once

// The switchboard of one channel array at a time: up to 32 of its channels as check boxes.

#include "host/SettingsView.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <memory>

class CChannelArray;
class CChannelArrayList;

// Shows the stored states of the array's channels; a switch that failed stays as the user set it until the
// boxes are next read from the array. Several panels keep each other in step through view updates. The array
// is only referred to: when it goes, the panel shows none, and when the document is loaded under it, the one
// of the same name. Window type 31. User-interface thread.
class KALVIO_API CChannelArrayControlPanelView : public CSettingsView {
public:
    CChannelArrayControlPanelView();
    ~CChannelArrayControlPanelView() override;
    [[nodiscard]] static std::unique_ptr<CView> GetInstance(); // a new one

    int InitialiseView(int panel, CPoint point) override;
    void OnUpdate(CView* sender, int hint, void* object) override;
    // 0 when the user does not want all channels on after all.
    int OnControlChanged(int controlId) override;
    void OnControlUpdateHardware(int controlId) override;
    void OnDestroy() override;
    void PrintDetails(CDC* context) override;
    void SetPrintTabStops(CDC* context) override;
    // The array's name (a text), first and last index shown (16 bits each), mode (8 bits), balance (32 bits).
    // Loading sends nothing to devices. Throws CArchiveException for a short archive, and has changed nothing
    // then.
    void Serialize(CArchive& archive) override;

    // How the user wants channels to be switched.
    enum ExclusiveMode : std::uint8_t { ExclusivelyOn = 0, ExclusivelyOff = 1, Independent = 2 };
    [[nodiscard]] CChannelArray* GetChannelArray() const; // the one that is shown; null: none
    [[nodiscard]] std::uint8_t GetExclusiveMode() const { return m_mode; }
    [[nodiscard]] std::int16_t GetFirstIndex() const { return m_first; } // of the range, from 0
    [[nodiscard]] std::int16_t GetLastIndex() const { return m_last; }

private:
    static constexpr std::size_t kBoxes = 32;

    void InitialiseControlPanel();
    void FillChannelArrayDropList();
    void FillChannelRangeDropList();
    void TakeRange();
    void OnChannelArraySelChanged(int updateDevices, int resetRange);
    void OnChannelRangeSelChanged();
    void ShowArray(CChannelArray& array, int updateDevices, int resetRange);
    void ShowNoArray();
    void SetupChannelControls();
    void SetupBox(std::size_t box, bool usable);
    void SetChannelControlsFromArray();
    void SetExclusiveModeControlsFromArray();
    void SetExclusiveMode(std::uint8_t mode);
    void SetBalanceFromArray();
    [[nodiscard]] std::int16_t GetFirstChannelOfState(std::uint8_t state) const; // index; -1: none
    [[nodiscard]] int CountChannelsOfState(std::uint8_t state) const;
    void OnExclusiveModeChanged();
    void ConvertStates(CChannelArray& array, std::uint8_t previous);
    void UpdateHardwareOnChannelSelection(CChannelArray& array, int controlId);
    void UpdateCheckBoxesOnChannelSelection(int controlId);
    int OnSetAllChannels();
    void OnClearAllChannels();
    void SetAllCheckBoxes(int check, int exceptId1, int exceptId2);
    void UpdateWarningText(int stringId); // -1: none
    [[nodiscard]] unsigned ReasonForNoControls() const;
    void UpdateArrayDescription();
    void EnableSetAndClearAllButtons();
    void OnArrayRemoved(const void* array);
    void FollowArray();
    [[nodiscard]] bool AreDetailsVisible(std::uint8_t address, std::uint8_t bus, std::uint8_t group) const;
    [[nodiscard]] bool IsUsable() const;
    [[nodiscard]] bool IsShown(std::size_t box) const;
    [[nodiscard]] static CChannelArrayList* Arrays();

    CChannelArray* m_array = nullptr; // in the network's list, or gone
    CString m_arrayName;
    std::int16_t m_first = 0;
    std::int16_t m_last = 0;
    std::uint8_t m_mode = ExclusivelyOn;
    int m_balance = 0;
    bool m_error = false; // nothing to switch, or its devices did not answer
    CComboBox* m_arrayCombo = nullptr;
    CComboBox* m_rangeCombo = nullptr;
    std::array<CButton*, kBoxes> m_boxes{};
    std::array<CWnd*, kBoxes> m_numbers{};
};
