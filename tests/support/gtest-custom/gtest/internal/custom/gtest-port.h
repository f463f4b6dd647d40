// GoogleTest's customisation point, found before the stock (empty) one.
// MinGW's win32 thread model has no std::mutex or std::condition_variable, which the stock
// Notification is built on; this one is a Win32 manual-reset event with the same interface.
#ifndef MIRL_GTEST_CUSTOM_PORT_H_
#define MIRL_GTEST_CUSTOM_PORT_H_

#include <windows.h>

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing {
namespace internal {

class Notification {
public:
    Notification() : m_Event(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    ~Notification() { CloseHandle(m_Event); }
    Notification(const Notification &) = delete;
    Notification &operator=(const Notification &) = delete;

    void Notify() { SetEvent(m_Event); }
    void WaitForNotification() { WaitForSingleObject(m_Event, INFINITE); }

private:
    HANDLE m_Event;
};

} // namespace internal
} // namespace testing

#endif
