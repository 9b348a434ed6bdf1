// The open handles of one kind. The value of a released handle is not used again, so that its later
// use is noticed.
#ifndef QBSUPPORT_STAND_IN_HANDLES_H
#define QBSUPPORT_STAND_IN_HANDLES_H

#include <cstdint>
#include <map>
#include <mutex>

namespace stand_in {

std::mutex& HandleMutex();
void CountMisuse();

template <typename State>
class Handles {
public:
    void* Open(const State& state) {
        const std::lock_guard lock(HandleMutex());
        static std::uintptr_t last = 0x1000;  // shared by all objects of this type
        last += 4;
        return m_open.try_emplace(reinterpret_cast<void*>(last), state).first->first;
    }

    /// Returns null, and counts a misuse, if the handle is not open.
    State* Find(void* handle) {
        const std::lock_guard lock(HandleMutex());
        const auto open = m_open.find(handle);
        if (open == m_open.end()) {
            CountMisuse();
            return nullptr;
        }
        return &open->second;
    }

    /// Returns false, and counts a misuse, if the handle is not open.
    bool Release(void* handle) {
        const std::lock_guard lock(HandleMutex());
        const bool wasOpen = m_open.erase(handle) != 0;
        if (!wasOpen) {
            CountMisuse();
        }
        return wasOpen;
    }

    [[nodiscard]] int Count() const { return static_cast<int>(m_open.size()); }

private:
    std::map<void*, State> m_open;
};

}  // namespace stand_in

#endif
