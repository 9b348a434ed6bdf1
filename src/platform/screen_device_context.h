// The device context of the whole screen.
#ifndef QBSUPPORT_PLATFORM_SCREEN_DEVICE_CONTEXT_H
#define QBSUPPORT_PLATFORM_SCREEN_DEVICE_CONTEXT_H

#include "platform/windows_api.h"

namespace qb_support {

// Gets the context and releases it again. A session without a screen has none.
class ScreenDeviceContext {
public:
    ScreenDeviceContext() : m_context(GetDC(nullptr)) {}
    ScreenDeviceContext(const ScreenDeviceContext&) = delete;
    ScreenDeviceContext& operator=(const ScreenDeviceContext&) = delete;
    ~ScreenDeviceContext() {
        if (m_context != nullptr) {
            ReleaseDC(nullptr, m_context);
        }
    }

    // The value `index` of the screen's capabilities; 0 when there is no screen.
    [[nodiscard]] int Capability(int index) const {
        return m_context != nullptr ? GetDeviceCaps(m_context, index) : 0;
    }

private:
    HDC m_context;
};

}  // namespace qb_support

#endif
