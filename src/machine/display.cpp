// The Display section: the virtual desktop, the monitors and the screen's resolution.
#include "core/collector.h"

namespace qb_support {

namespace {

// The device context of the whole screen, which is released at the end of this object's life. A
// session without a screen has none.
class CScreenDeviceContext {
public:
    CScreenDeviceContext() : m_context(GetDC(nullptr)) {}
    CScreenDeviceContext(const CScreenDeviceContext&) = delete;
    CScreenDeviceContext& operator=(const CScreenDeviceContext&) = delete;
    ~CScreenDeviceContext() {
        if (m_context != nullptr) {
            ReleaseDC(nullptr, m_context);
        }
    }

    // The value `index` of the screen's capabilities, or 0 if there is no screen.
    [[nodiscard]] int Capability(int index) const {
        return m_context != nullptr ? GetDeviceCaps(m_context, index) : 0;
    }

private:
    HDC m_context;
};

struct Resolution {
    std::int32_t horizontal;  // pixels per inch
    std::int32_t vertical;
};

Resolution QueryResolution() {
    const CScreenDeviceContext screen;
    const std::int32_t horizontal = screen.Capability(LOGPIXELSX);
    return {horizontal, screen.Capability(LOGPIXELSY)};
}

// Coordinates come from the driver and may have any value, so arithmetic on them wraps around.
constexpr std::int32_t Distance(LONG from, LONG to) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(to) -
                                     static_cast<std::uint32_t>(from));
}

constexpr std::int32_t ScalingPercent(std::int32_t pixelsPerInch) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(pixelsPerInch) * 100U) / 96;
}

void AppendDesktopRow(CText& result, std::int32_t width, std::int32_t height) {
    result << "Desktop          0      0 " << Padded{width, 6} << ' ' << Padded{height, 6} << ' '
           << Padded{width, 6} << ' ' << Padded{height, 6} << "            \r\n";
}

void AppendMonitorRow(CText& result, std::int32_t number, HMONITOR monitor) {
    MONITORINFOEXA info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoA(monitor, &info);
    const RECT& area = info.rcMonitor;
    result << "Monitor " << Padded{number, 3};
    for (const std::int32_t value :
         {std::int32_t{area.left}, std::int32_t{area.top}, std::int32_t{area.right},
          std::int32_t{area.bottom}, Distance(area.left, area.right),
          Distance(area.top, area.bottom)}) {
        result << ' ' << Padded{value, 6};
    }
    const bool isPrimary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
    result << "  " << (isPrimary ? "Primary" : "") << "\r\n";
}

}  // namespace

BOOL CALLBACK CQbSupportWindows::EnumMonitorCallback(HMONITOR monitor, HDC /*deviceContext*/,
                                                     RECT* /*rectangle*/, LPARAM collector) {
    auto& monitors = reinterpret_cast<CQbSupportWindows*>(collector)->m_monitors;
    monitors.Append(monitor);
    return monitors.Failed() ? FALSE : TRUE;
}

bool CQbSupportWindows::GetDisplayInfo(CText& result, CText& argument) {
    CQbSupport::GetDisplayInfo(result, argument);
    const std::int32_t width = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const std::int32_t height = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    const Resolution resolution = QueryResolution();
    m_monitors.Clear();
    EnumDisplayMonitors(nullptr, nullptr, EnumMonitorCallback, reinterpret_cast<LPARAM>(this));
    if (m_monitors.Failed()) {
        result.Fail();
    }

    result << m_indent << "         ID   Left    Top  Right Bottom  Width Height Position\r\n"
           << m_indent << "        --- ------ ------ ------ ------ ------ ------ --------\r\n"
           << m_indent;
    AppendDesktopRow(result, width, height);
    std::int32_t number = 0;
    for (HMONITOR monitor : m_monitors) {
        result << m_indent;
        AppendMonitorRow(result, ++number, monitor);
    }

    result << m_indent << "Pixels Per Inch: " << resolution.horizontal << " ("
           << ScalingPercent(resolution.horizontal) << "%)\r\n"
           << m_indent << "Pixels Per Inch y: " << resolution.vertical << "\r\n"
           << m_indent << "Pixels Per Inch x: " << resolution.horizontal << "\r\n\r\n";
    return true;
}

}  // namespace qb_support
