// Typing: one WM_CHAR into the library's edit holding 1,000 characters, painted, against the
// system's EDIT doing the same at the same length; and the same character at 1,000 characters
// against at 10, ours alone, which stays flat only if a rebuild walks a table instead of
// measuring the rest of the text once per character.
#include "BenchFigures.h"

#include "Mirl.h"

#include <memory>

namespace mirlbench {

namespace {

const int kTypedPerSample = 20;

std::wstring TextOfLength(int length)
{
    std::wstring text;
    const wchar_t words[] = L"Kind of Blue So What Freddie Freeloader Blue in Green All Blues Flamenco Sketches ";
    while (static_cast<int>(text.size()) < length) {
        text += words;
    }
    text.resize(static_cast<size_t>(length));
    return text;
}

// The time of kTypedPerSample characters typed at the end and painted; each is taken back
// untimed, so the length stays.
double TypeAtEnd(HWND edit, const std::function<void()> &toEnd)
{
    double total = 0;
    for (int i = 0; i < kTypedPerSample; ++i) {
        toEnd();
        const double start = Milliseconds();
        ::SendMessageW(edit, WM_CHAR, L'a', 1);
        ::UpdateWindow(edit);
        PumpMessages();
        total += Milliseconds() - start;
        ::SendMessageW(edit, WM_CHAR, L'\b', 1);
        PumpMessages();
    }
    return total / kTypedPerSample;
}

// A library edit of that text, its cursor at the end and nothing selected.
std::unique_ptr<MirlEdit> MakeEdit(HWND parent, int y, const std::wstring &text)
{
    std::unique_ptr<MirlEdit> edit(new MirlEdit());
    RECT place = {10, y, 410, y + 24};
    if (edit->Create(nullptr, parent, &place, L"BenchEditNoTemplate", WS_CHILD | WS_VISIBLE | WS_BORDER) == nullptr) {
        throw BenchError("the library did not create an edit");
    }
    ::SendMessageW(edit->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    edit->SetHasSelection(false);
    return edit;
}

} // namespace

std::vector<Figure> MeasureTyping(int repetitions)
{
    HWND frame = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 440, 120, nullptr, nullptr,
                                   ::GetModuleHandleW(nullptr), nullptr);
    if (frame == nullptr) {
        throw BenchError("no frame for the edits");
    }
    const std::wstring longText = TextOfLength(1000);
    const std::wstring shortText = TextOfLength(10);
    std::unique_ptr<MirlEdit> ours = MakeEdit(frame, 4, longText);
    std::unique_ptr<MirlEdit> small = MakeEdit(frame, 32, shortText);
    HWND system = ::CreateWindowExW(0, L"EDIT", longText.c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL,
                                    10, 60, 400, 24, frame, nullptr, ::GetModuleHandleW(nullptr), nullptr);
    if (system == nullptr) {
        ::DestroyWindow(frame);
        throw BenchError("the system did not create an EDIT");
    }
    ::SendMessageW(system, EM_SETLIMITTEXT, 0, 0);
    PumpMessages();
    auto oursToEnd = [&ours]() {
        ours->SetCursorPosition(static_cast<int>(ours->GetEditText().size()));
        ours->SetHasSelection(false);
    };
    auto smallToEnd = [&small]() {
        small->SetCursorPosition(static_cast<int>(small->GetEditText().size()));
        small->SetHasSelection(false);
    };
    auto systemToEnd = [system]() { ::SendMessageW(system, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF); };
    // Warm: fonts, glyphs and the measuring table.
    TypeAtEnd(ours->m_hWnd, oursToEnd);
    TypeAtEnd(small->m_hWnd, smallToEnd);
    TypeAtEnd(system, systemToEnd);

    Samples againstSystem;
    Repeat(
        repetitions, againstSystem, [&]() { return TypeAtEnd(ours->m_hWnd, oursToEnd); },
        [&]() { return TypeAtEnd(system, systemToEnd); });
    Samples againstShort;
    Repeat(
        repetitions, againstShort, [&]() { return TypeAtEnd(ours->m_hWnd, oursToEnd); },
        [&]() { return TypeAtEnd(small->m_hWnd, smallToEnd); });

    if (ours->GetEditText().size() != 1000 || small->GetEditText().size() != 10) {
        ::DestroyWindow(frame);
        throw BenchError("the edits did not keep their lengths while typing");
    }
    ::DestroyWindow(frame);

    Figure system1000;
    system1000.name = "type at 1000 / EDIT";
    system1000.unit = "ms per char";
    system1000.target = 2.0;
    Summarise(againstSystem, system1000);
    Figure flat;
    flat.name = "type at 1000 / at 10";
    flat.unit = "ms per char";
    flat.target = 3.0;
    Summarise(againstShort, flat);
    return {system1000, flat};
}

} // namespace mirlbench
