#pragma once

// Where the windows of a program stand, as configurations keep it.

#include "platform/Text.h"

#include <cstdint>
#include <vector>

namespace kalvio::reference_host {

struct WindowLayout {
    CString name;
    std::vector<std::uint8_t> bytes; // the window's own; only the window knows what they mean
    bool operator==(const WindowLayout&) const = default;
};

// User-interface thread.
class WindowLayouts {
public:
    virtual ~WindowLayouts() = default;
    // The windows that are open now.
    [[nodiscard]] virtual std::vector<WindowLayout> Collect() = 0;
    // Opens the windows and gives each what was kept of it; those that could not be opened, by name.
    virtual std::vector<CString> Restore(const std::vector<WindowLayout>& layouts) = 0;

    std::vector<CString> notRestored; // by the last load
};

// What a file says of windows, for those who look at the file and open none.
class KeptLayouts final : public WindowLayouts {
public:
    [[nodiscard]] std::vector<WindowLayout> Collect() override { return m_layouts; }
    std::vector<CString> Restore(const std::vector<WindowLayout>& layouts) override {
        m_layouts = layouts;
        return {};
    }

private:
    std::vector<WindowLayout> m_layouts;
};

} // namespace kalvio::reference_host
