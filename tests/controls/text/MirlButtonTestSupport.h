// Helpers of the button tests: the library on a fixture skin, a frame to hold buttons (it
// reflects notifications as every library window does, keeps the commands it receives and can
// paint a texture), and buttons made from a template and destroyed at the end of a scope.
#pragma once

#include "MirlButton.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <shellapi.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mirltest {

// Stands in for ShellExecuteW: a test program never opens anything.
inline HINSTANCE WINAPI RefuseToOpen(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT)
{
    ADD_FAILURE() << "a button tried to open its URL outside a test's own opener";
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(SE_ERR_ACCESSDENIED));
}

// The library once per test program, on one fixture skin; URLs go nowhere.
class SkinEnvironment : public ::testing::Environment {
public:
    explicit SkinEnvironment(const wchar_t *skin) : m_Skin(skin) {}
    void SetUp() override
    {
        m_Former = MIRL::SetUrlOpener(&RefuseToOpen);
        MirlIntialize(SkinPath(m_Skin.c_str()).c_str(), 1033);
    }
    void TearDown() override
    {
        MirlUnIntialize();
        MIRL::SetUrlOpener(m_Former);
    }

private:
    std::wstring m_Skin;
    MIRL::UrlOpener m_Former = nullptr;
};

// A top-level window from a template: commands are kept, notifications reflected by the
// library's own map, and the background is either the skin's or a texture of 8-pixel squares.
class ButtonFrame : public MirlWindowImpl<ButtonFrame> {
public:
    std::vector<std::pair<WPARAM, LPARAM>> m_Commands;
    bool m_Texture = false;

    BEGIN_MSG_MAP(ButtonFrame)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        CHAIN_MSG_MAP(MirlWindowImpl<ButtonFrame>)
    END_MSG_MAP()

    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        m_Commands.push_back(std::make_pair(wParam, lParam));
        bHandled = FALSE;
        return 0;
    }

    void DoPaint(HDC dc)
    {
        if (!m_Texture) {
            MirlWindowImpl<ButtonFrame>::DoPaint(dc);
            return;
        }
        RECT client = {};
        ::GetClientRect(m_hWnd, &client);
        HBRUSH light = ::CreateSolidBrush(RGB(230, 200, 120));
        HBRUSH dark = ::CreateSolidBrush(RGB(120, 70, 30));
        for (int y = 0; y < client.bottom; y += 8) {
            for (int x = 0; x < client.right; x += 8) {
                RECT cell = {x, y, x + 8, y + 8};
                ::FillRect(dc, &cell, ((x + y) / 8) % 2 == 0 ? light : dark);
            }
        }
        ::DeleteObject(light);
        ::DeleteObject(dark);
    }

    // Creates the frame from a template, shown at the top left of the screen.
    bool Open(const wchar_t *name = L"Bare")
    {
        return Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name) != nullptr;
    }
};

// A button object and its window, destroyed together at the end of the scope.
class ScopedButton {
public:
    ScopedButton() : m_Button(new MirlButton()) {}
    ~ScopedButton()
    {
        if (m_Button->m_hWnd != nullptr && ::IsWindow(m_Button->m_hWnd)) {
            m_Button->DestroyWindow();
        }
    }
    ScopedButton(const ScopedButton &) = delete;
    ScopedButton &operator=(const ScopedButton &) = delete;

    // The template of that name, as a child of parent (which may have no object).
    HWND Create(MirlWindowBase *parentObject, HWND parent, const wchar_t *name)
    {
        return m_Button->Create(parentObject, parent, static_cast<LPRECT>(nullptr), name);
    }

    MirlButton *operator->() const { return m_Button.get(); }
    MirlButton &operator*() const { return *m_Button; }
    MirlButton *get() const { return m_Button.get(); }
    HWND hwnd() const { return m_Button->m_hWnd; }

private:
    std::unique_ptr<MirlButton> m_Button;
};

// The owner-draw state a button paints with, as its own parent would send it.
inline void DrawButton(HWND button, HDC dc, UINT state)
{
    DRAWITEMSTRUCT item = {};
    item.CtlType = ODT_BUTTON;
    item.CtlID = static_cast<UINT>(::GetDlgCtrlID(button));
    item.itemAction = ODA_DRAWENTIRE;
    item.itemState = state;
    item.hwndItem = button;
    item.hDC = dc;
    ::GetClientRect(button, &item.rcItem);
    ::SendMessageW(button, OCM__BASE + WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
}

// Makes a top-level window the active one and waits until it stays so: without a window
// manager, activation follows the X server's focus events, and a late one (from the window of
// the test before) can take it away again.
inline bool Activate(HWND window, DWORD milliseconds = 2000)
{
    const DWORD start = ::GetTickCount();
    auto pump = [](DWORD forMilliseconds) {
        const DWORD begin = ::GetTickCount();
        do {
            MSG msg;
            while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
                ::TranslateMessage(&msg);
                ::DispatchMessageW(&msg);
            }
            ::Sleep(5);
        } while (::GetTickCount() - begin < forMilliseconds);
    };
    while (::GetTickCount() - start < milliseconds) {
        ::SetForegroundWindow(window);
        ::SetActiveWindow(window);
        pump(30);
        if (::GetActiveWindow() != window) {
            continue;
        }
        pump(100);
        if (::GetActiveWindow() == window) {
            return true;
        }
    }
    return false;
}

// Puts the pointer where no test window is.
inline void ParkCursor()
{
    ::SetCursorPos(1200, 1000);
}

} // namespace mirltest
