// The edit's input-method path. One program, run twice: under the usual code page 1252, where the
// edit must call no input-method function at all, and under Wine started with a Chinese locale
// (code page 936, edit_ime_936_test.sh), where Wine's own input method composes real strings.
#include "MirlEdit.h"
#include "MirlImportPatch.h"
#include "MirlMessageRecorder.h"
#include "MirlTestSupport.h"
#include "MirlEditTestSupport.h"

#include <imm.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::EditsEnvironment());

class ImeFrame : public MirlWindowImpl<ImeFrame> {
public:
    std::vector<WPARAM> m_Commands;

    BEGIN_MSG_MAP(ImeFrame)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        CHAIN_MSG_MAP(MirlWindowImpl<ImeFrame>)
    END_MSG_MAP()

    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM, BOOL &bHandled)
    {
        m_Commands.push_back(wParam);
        bHandled = FALSE;
        return 0;
    }
    size_t Count(WORD code) const
    {
        size_t n = 0;
        for (WPARAM command : m_Commands) {
            n += HIWORD(command) == code ? 1 : 0;
        }
        return n;
    }
};

HMODULE Library()
{
    return ::GetModuleHandleW(L"MIRL.dll");
}

// Every input-method function the library imports, counted and then passed on.
int g_ImmCalls = 0;
int g_Beeps = 0;

#define MIRL_COUNTED(ret, name, params, args) \
    ret WINAPI Counted##name params           \
    {                                         \
        ++g_ImmCalls;                         \
        return ::name args;                   \
    }
MIRL_COUNTED(LONG, ImmGetCompositionStringW, (HIMC c, DWORD i, LPVOID b, DWORD n), (c, i, b, n))
MIRL_COUNTED(HIMC, ImmGetContext, (HWND w), (w))
MIRL_COUNTED(BOOL, ImmGetConversionStatus, (HIMC c, LPDWORD a, LPDWORD b), (c, a, b))
MIRL_COUNTED(HWND, ImmGetDefaultIMEWnd, (HWND w), (w))
MIRL_COUNTED(BOOL, ImmGetOpenStatus, (HIMC c), (c))
MIRL_COUNTED(BOOL, ImmNotifyIME, (HIMC c, DWORD a, DWORD i, DWORD v), (c, a, i, v))
MIRL_COUNTED(BOOL, ImmReleaseContext, (HWND w, HIMC c), (w, c))
MIRL_COUNTED(BOOL, ImmSetCompositionFontW, (HIMC c, LPLOGFONTW f), (c, f))
MIRL_COUNTED(BOOL, ImmSetCompositionWindow, (HIMC c, LPCOMPOSITIONFORM f), (c, f))
MIRL_COUNTED(BOOL, ImmSetConversionStatus, (HIMC c, DWORD a, DWORD b), (c, a, b))
MIRL_COUNTED(BOOL, ImmSetOpenStatus, (HIMC c, BOOL o), (c, o))
#undef MIRL_COUNTED

BOOL WINAPI CountedMessageBeep(UINT type)
{
    ++g_Beeps;
    return ::MessageBeep(type);
}

struct CountedImport {
    const char *name;
    const void *replacement;
};

const CountedImport kImmImports[] = {
    {"ImmGetCompositionStringW", reinterpret_cast<const void *>(&CountedImmGetCompositionStringW)},
    {"ImmGetContext", reinterpret_cast<const void *>(&CountedImmGetContext)},
    {"ImmGetConversionStatus", reinterpret_cast<const void *>(&CountedImmGetConversionStatus)},
    {"ImmGetDefaultIMEWnd", reinterpret_cast<const void *>(&CountedImmGetDefaultIMEWnd)},
    {"ImmGetOpenStatus", reinterpret_cast<const void *>(&CountedImmGetOpenStatus)},
    {"ImmNotifyIME", reinterpret_cast<const void *>(&CountedImmNotifyIME)},
    {"ImmReleaseContext", reinterpret_cast<const void *>(&CountedImmReleaseContext)},
    {"ImmSetCompositionFontW", reinterpret_cast<const void *>(&CountedImmSetCompositionFontW)},
    {"ImmSetCompositionWindow", reinterpret_cast<const void *>(&CountedImmSetCompositionWindow)},
    {"ImmSetConversionStatus", reinterpret_cast<const void *>(&CountedImmSetConversionStatus)},
    {"ImmSetOpenStatus", reinterpret_cast<const void *>(&CountedImmSetOpenStatus)},
};

class EditImeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Edits"));
        ::SetForegroundWindow(m_Frame.m_hWnd);
        m_Edit = mirltest::EditOf(m_Frame, 201);
        ASSERT_NE(nullptr, m_Edit);
    }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    void Type(const wchar_t *text)
    {
        for (; *text != L'\0'; ++text) {
            ::SendMessageW(m_Edit->m_hWnd, WM_CHAR, *text, 1);
        }
    }
    // Composes text in the edit's input context, as a user typing into the input method would.
    void Compose(const wchar_t *text)
    {
        HIMC context = ::ImmGetContext(m_Edit->m_hWnd);
        ASSERT_NE(nullptr, context);
        std::wstring units(text);
        ASSERT_TRUE(::ImmSetCompositionStringW(context, SCS_SETSTR, &units[0], static_cast<DWORD>(units.size() * sizeof(wchar_t)), nullptr, 0));
        ::ImmReleaseContext(m_Edit->m_hWnd, context);
        mirltest::FlushMessages();
    }
    // Ends the composition: the input method hands its text over as the result string.
    void Complete()
    {
        HIMC context = ::ImmGetContext(m_Edit->m_hWnd);
        ASSERT_NE(nullptr, context);
        ASSERT_TRUE(::ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0));
        ::ImmReleaseContext(m_Edit->m_hWnd, context);
        mirltest::FlushMessages();
    }

    ImeFrame m_Frame;
    MirlEdit *m_Edit = nullptr;
};

class EditInputMethodOnCodePage1252 : public EditImeTest {};
class EditInputMethodChinese : public EditImeTest {};

} // namespace

TEST_F(EditInputMethodOnCodePage1252, NoInputMethodFunctionIsCalledAtAll)
{
    if (::GetACP() != 1252) {
        GTEST_SKIP() << "code page " << ::GetACP();
    }
    EXPECT_FALSE(m_Edit->NeedsIME());
    std::vector<std::unique_ptr<mirltest::ImportPatch>> patches;
    for (const CountedImport &import : kImmImports) {
        patches.emplace_back(new mirltest::ImportPatch(Library(), "imm32.dll", import.name, import.replacement));
        EXPECT_TRUE(patches.back()->IsActive()) << import.name;
    }
    // The list above is all the library imports from the input method.
    EXPECT_EQ(sizeof(kImmImports) / sizeof(kImmImports[0]), mirltest::ImportNames(Library(), "imm32.dll").size());

    ::SetFocus(m_Edit->m_hWnd);
    Type(L"ab");
    ::SendMessageW(m_Edit->m_hWnd, WM_IME_STARTCOMPOSITION, 0, 0);
    ::SendMessageW(m_Edit->m_hWnd, WM_IME_COMPOSITION, 0x4E2D, GCS_COMPSTR);
    ::SendMessageW(m_Edit->m_hWnd, WM_IME_COMPOSITION, 0x4E2D, GCS_RESULTSTR | GCS_RESULTREADSTR);
    ::SendMessageW(m_Edit->m_hWnd, WM_IME_ENDCOMPOSITION, 0, 0);
    ::SetFocus(m_Frame.m_hWnd);
    m_Edit->Reset(false);
    m_Edit->ResetSearchContent();
    ::SetFocus(m_Frame.m_hWnd);
    EXPECT_EQ(0, g_ImmCalls);
    EXPECT_EQ(L"", m_Edit->GetEditText());
}

TEST_F(EditInputMethodChinese, TheSystemCodePageTurnsTheInputMethodOn)
{
    if (::GetACP() != 936) {
        GTEST_SKIP() << "code page " << ::GetACP() << "; edit_ime_936_test.sh runs this under 936";
    }
    EXPECT_EQ(936u, m_Edit->GetCodePage());
    EXPECT_TRUE(m_Edit->NeedsIME());
    // The focus opens the input method. Leaving closes only one that was open before the focus
    // came; this one was not, so it stays open.
    ::SetFocus(m_Edit->m_hWnd);
    HIMC context = ::ImmGetContext(m_Edit->m_hWnd);
    ASSERT_NE(nullptr, context);
    EXPECT_TRUE(::ImmGetOpenStatus(context));
    DWORD conversion = 0;
    DWORD sentence = 0;
    ASSERT_TRUE(::ImmGetConversionStatus(context, &conversion, &sentence));
    EXPECT_EQ(static_cast<DWORD>(IME_CMODE_NATIVE | IME_CMODE_FULLSHAPE), conversion);
    EXPECT_EQ(static_cast<DWORD>(IME_SMODE_AUTOMATIC), sentence);
    ::SetFocus(m_Frame.m_hWnd);
    EXPECT_TRUE(::ImmGetOpenStatus(context));
    ::ImmReleaseContext(m_Edit->m_hWnd, context);
}

TEST_F(EditInputMethodChinese, ACompositionGoesInOnlyAsItsResultAndTellsTheParent)
{
    if (::GetACP() != 936) {
        GTEST_SKIP() << "code page " << ::GetACP() << "; edit_ime_936_test.sh runs this under 936";
    }
    ::SetFocus(m_Edit->m_hWnd);
    Type(L"ab");
    m_Frame.m_Commands.clear();
    Compose(L"\x4E2D\x6587");
    EXPECT_EQ(L"ab", m_Edit->GetEditText()); // still being composed
    EXPECT_EQ(0u, m_Frame.Count(EN_CHANGE));
    Complete();
    EXPECT_EQ(L"ab\x4E2D\x6587", m_Edit->GetEditText()); // whole units, no WM_CHAR after them
    EXPECT_EQ(4, m_Edit->GetCursorPosition());
    EXPECT_EQ(1u, m_Frame.Count(EN_CHANGE));
    ASSERT_EQ(4u, m_Edit->GetCharRects().size());
    EXPECT_GT(m_Edit->GetCharRects()[2].Width, 0.0f);
}

TEST_F(EditInputMethodChinese, TheInputMethodInsertsPastTheLimitWithoutABeep)
{
    if (::GetACP() != 936) {
        GTEST_SKIP() << "code page " << ::GetACP() << "; edit_ime_936_test.sh runs this under 936";
    }
    mirltest::ImportPatch beep(Library(), "user32.dll", "MessageBeep", reinterpret_cast<const void *>(&CountedMessageBeep));
    ASSERT_TRUE(beep.IsActive());
    ::SetFocus(m_Edit->m_hWnd);
    mirltest::FillEdit(m_Edit, std::wstring(1024, L'a').c_str());
    g_Beeps = 0;
    Type(L"b"); // typing at the limit beeps: the count sees the library's beeps
    EXPECT_EQ(1, g_Beeps);
    EXPECT_EQ(1024u, m_Edit->GetEditText().size());
    Compose(L"\x4E2D\x6587");
    Complete();
    EXPECT_EQ(1, g_Beeps);
    ASSERT_EQ(1026u, m_Edit->GetEditText().size());
    EXPECT_EQ(L"\x4E2D\x6587", m_Edit->GetEditText().substr(1024));
    EXPECT_EQ(1026, m_Edit->GetCursorPosition());
}

TEST_F(EditInputMethodChinese, TextStillComposingWhenTheFocusLeavesIsKept)
{
    if (::GetACP() != 936) {
        GTEST_SKIP() << "code page " << ::GetACP() << "; edit_ime_936_test.sh runs this under 936";
    }
    ::SetFocus(m_Edit->m_hWnd);
    Type(L"x");
    Compose(L"\x97F3\x4E50");
    EXPECT_EQ(L"x", m_Edit->GetEditText());
    m_Frame.m_Commands.clear();
    ::SetFocus(m_Frame.m_hWnd);
    mirltest::FlushMessages();
    EXPECT_EQ(L"x\x97F3\x4E50", m_Edit->GetEditText());
    EXPECT_EQ(1u, m_Frame.Count(EN_KILLFOCUS));
    HIMC context = ::ImmGetContext(m_Edit->m_hWnd);
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(0, ::ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0)); // cancelled
    ::ImmReleaseContext(m_Edit->m_hWnd, context);
}
