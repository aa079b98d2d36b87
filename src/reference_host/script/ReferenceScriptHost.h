#pragma once

// Lets scripts run on the reference host.

#include "reference_host/application/ReferenceHost.h"
#include "reference_host/script/ScriptHost.h"

namespace kalvio::reference_host {

// The host must outlive it. User-interface thread.
class ReferenceScriptHost final : public ScriptHost {
public:
    explicit ReferenceScriptHost(ReferenceHost& host) : m_host(host) {}

    PauseEnd Pause(std::uint32_t milliseconds) override;
    RegulationEnd WaitForRegulation() override;
    [[nodiscard]] CString RefuseQuantity(const ScriptQuantity& quantity) const override;
    // Waits for the unit's next block of results, two seconds at most; without one there is no value.
    QuantityReading Measure(const ScriptQuantity& quantity) override;
    [[nodiscard]] CString RefuseWindow(const WindowRequest& request) const override;
    WindowAnswer Window(const WindowRequest& request) override;
    FileAnswer SaveConfiguration(const CString& path) override;
    FileAnswer LoadConfiguration(const CString& path) override;
    SweepEnd Sweep(const CString& array, const ScriptQuantity& quantity) override;

private:
    void ShowWindow(const std::string& window, WindowAnswer& answer);
    void PrintWindow(const std::string& window, WindowAnswer& answer);
    QuantityReading MeasureResult(const std::string& name);
    QuantityReading ReadSource(const std::string& name) const;

    ReferenceHost& m_host;
};

} // namespace kalvio::reference_host
