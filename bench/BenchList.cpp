// The list view: appending rows against the system's list view in report style, and one page
// painted and one page scrolled in a long list against a short one.
#include "BenchFigures.h"

#include "Mirl.h"

#include <commctrl.h>

#include <memory>
#include <string>

namespace mirlbench {

namespace {

const int kColumns = 3;
const int kColumnWidths[kColumns] = {180, 140, 60};
const wchar_t *const kColumnNames[kColumns] = {L"Title", L"Artist", L"Time"};

// A play-list row: title, artist and duration, each drawn as text in its cell.
class SongRow : public MirlListView::INFORMATION_ITEM {
public:
    SongRow(int number, Gdiplus::Font *font, Gdiplus::Brush *ink) : m_Number(number), m_Font(font), m_Ink(ink) {}
    void PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell) override
    {
        wchar_t text[32];
        if (column == 0) {
            swprintf(text, 32, L"Song %d", m_Number);
        } else if (column == 1) {
            swprintf(text, 32, L"Artist %d", m_Number % 97);
        } else {
            swprintf(text, 32, L"%d:%02d", 2 + m_Number % 5, m_Number % 60);
        }
        const Gdiplus::RectF box(static_cast<Gdiplus::REAL>(cell->left + 4), static_cast<Gdiplus::REAL>(cell->top),
                                 static_cast<Gdiplus::REAL>(cell->right - cell->left - 4),
                                 static_cast<Gdiplus::REAL>(cell->bottom - cell->top));
        graphics.DrawString(text, -1, m_Font, box, nullptr, m_Ink);
    }

private:
    int m_Number;
    Gdiplus::Font *m_Font;
    Gdiplus::Brush *m_Ink;
};

// A top-level window to hold the lists, and the font and ink of their rows.
class ListBench {
public:
    ListBench() : m_Font(L"Tahoma", 9.0f), m_Ink(Gdiplus::Color(0xFF101040))
    {
        INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_LISTVIEW_CLASSES};
        ::InitCommonControlsEx(&classes);
        m_Host = ::CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP | WS_VISIBLE, 0, 0, 420, 440, nullptr, nullptr,
                                   nullptr, nullptr);
        if (m_Host == nullptr) {
            throw BenchError("the list benchmark could not create its window");
        }
    }
    ~ListBench() { ::DestroyWindow(m_Host); }
    ListBench(const ListBench &) = delete;
    ListBench &operator=(const ListBench &) = delete;

    // A list view of 400 by 420 pixels with the three columns and rows rows.
    std::unique_ptr<MirlListView> MakeList(int rows)
    {
        std::unique_ptr<MirlListView> list(new MirlListView());
        RECT place = {0, 0, 400, 420};
        if (list->Create(nullptr, m_Host, &place, L"BenchList") == nullptr) {
            throw BenchError("the library did not create a list view");
        }
        for (int c = 0; c < kColumns; ++c) {
            list->AddColumn(nullptr, kColumnNames[c], kColumnWidths[c]);
        }
        for (int i = 0; i < rows; ++i) {
            list->AddItem(new SongRow(i, &m_Font, &m_Ink));
        }
        return list;
    }

    HWND MakeSystemList()
    {
        HWND list = ::CreateWindowExW(0, WC_LISTVIEWW, nullptr, WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0, 400, 420,
                                      m_Host, nullptr, nullptr, nullptr);
        if (list == nullptr) {
            throw BenchError("the system's list view was not created");
        }
        for (int c = 0; c < kColumns; ++c) {
            LVCOLUMNW column = {};
            column.mask = LVCF_TEXT | LVCF_WIDTH;
            column.cx = kColumnWidths[c];
            column.pszText = const_cast<wchar_t *>(kColumnNames[c]);
            ListView_InsertColumn(list, c, &column);
        }
        return list;
    }

    Gdiplus::Font *Font() { return &m_Font; }
    Gdiplus::Brush *Ink() { return &m_Ink; }

private:
    HWND m_Host;
    Gdiplus::Font m_Font;
    Gdiplus::SolidBrush m_Ink;
};

// The list paints one page into a memory picture the size of its client area: the mean of a
// few pages, since one page is a few milliseconds and a shared machine's hiccups are as long.
double PaintPage(HWND list, HDC picture)
{
    const int pages = 5;
    const double start = Milliseconds();
    for (int i = 0; i < pages; ++i) {
        ::SendMessageW(list, WM_PAINT, reinterpret_cast<WPARAM>(picture), 0);
        ::GdiFlush();
    }
    return (Milliseconds() - start) / pages;
}

// Moves the vertical bar to the middle of its range, as a user would have scrolled there.
void ScrollToMiddle(MirlListView *list)
{
    HWND bar = list->GetVScrollBar();
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE;
    ::GetScrollInfo(bar, SB_CTL, &info);
    ::SetScrollPos(bar, SB_CTL, info.nMax / 2 - 1, FALSE);
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
}

class Picture {
public:
    Picture()
    {
        HDC screen = ::GetDC(nullptr);
        m_Dc = ::CreateCompatibleDC(screen);
        m_Bitmap = ::CreateCompatibleBitmap(screen, 400, 420);
        ::ReleaseDC(nullptr, screen);
        m_Old = ::SelectObject(m_Dc, m_Bitmap);
    }
    ~Picture()
    {
        ::SelectObject(m_Dc, m_Old);
        ::DeleteObject(m_Bitmap);
        ::DeleteDC(m_Dc);
    }
    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;
    HDC dc() const { return m_Dc; }

private:
    HDC m_Dc;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Old;
};

} // namespace

std::vector<Figure> MeasureLists(int repetitions)
{

    ListBench bench;
    Picture picture;
    std::vector<Figure> figures;

    Figure append;
    append.name = "list append 10,000";
    append.unit = "ms";
    append.target = 1.5;
    Samples appendSamples;
    Repeat(
        repetitions, appendSamples,
        [&]() {
            std::unique_ptr<MirlListView> list(new MirlListView());
            RECT place = {0, 0, 400, 420};
            list->Create(nullptr, nullptr, &place, L"BenchList");
            list->DestroyWindow();
            const double start = Milliseconds();
            std::unique_ptr<MirlListView> filled = bench.MakeList(10000);
            PumpMessages();
            const double took = Milliseconds() - start;
            if (filled->GetItemCount() != 10000) {
                throw BenchError("the list view holds " + std::to_string(filled->GetItemCount()) + " rows");
            }
            filled->DestroyWindow();
            return took;
        },
        [&]() {
            const double start = Milliseconds();
            HWND list = bench.MakeSystemList();
            // The system list at its fastest: no redraw while filling, room for all items made
            // once (under Wine a visible list redrawn at each insert took 8.5 s for 1,000).
            ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
            ListView_SetItemCount(list, 10000);
            wchar_t text[32];
            for (int i = 0; i < 10000; ++i) {
                swprintf(text, 32, L"Song %d", i);
                LVITEMW item = {};
                item.mask = LVIF_TEXT;
                item.iItem = i;
                item.pszText = text;
                const int index = ListView_InsertItem(list, &item);
                swprintf(text, 32, L"Artist %d", i % 97);
                ListView_SetItemText(list, index, 1, text);
                swprintf(text, 32, L"%d:%02d", 2 + i % 5, i % 60);
                ListView_SetItemText(list, index, 2, text);
            }
            ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
            PumpMessages();
            const double took = Milliseconds() - start;
            if (ListView_GetItemCount(list) != 10000) {
                throw BenchError("the system's list view holds too few items");
            }
            ::DestroyWindow(list);
            return took;
        });
    Summarise(appendSamples, append);
    figures.push_back(append);

    std::unique_ptr<MirlListView> large = bench.MakeList(100000);
    std::unique_ptr<MirlListView> small = bench.MakeList(100);
    ::ShowWindow(small->m_hWnd, SW_HIDE);
    ScrollToMiddle(large.get());
    ScrollToMiddle(small.get());
    PaintPage(large->m_hWnd, picture.dc());
    PaintPage(small->m_hWnd, picture.dc());

    Figure paint;
    paint.name = "list paint page";
    paint.unit = "ms";
    paint.target = 1.3;
    Samples paintSamples;
    Repeat(
        repetitions, paintSamples, [&]() { return PaintPage(large->m_hWnd, picture.dc()); },
        [&]() { return PaintPage(small->m_hWnd, picture.dc()); });
    Summarise(paintSamples, paint);
    figures.push_back(paint);

    std::unique_ptr<MirlListView> thousand = bench.MakeList(1000);
    ::ShowWindow(thousand->m_hWnd, SW_HIDE);
    ScrollToMiddle(thousand.get());
    // One page down and its paint; the next run starts from the middle again. The list measured
    // is the one shown: a shown list's bar repaints itself inside SetScrollPos and a hidden one's
    // does not, which alone made the long list (shown) look twice as dear as the short (hidden).
    auto scrollPage = [&](MirlListView *list) {
        for (MirlListView *each : {large.get(), small.get(), thousand.get()}) {
            if (each != list) {
                ::ShowWindow(each->m_hWnd, SW_HIDE);
            }
        }
        ::ShowWindow(list->m_hWnd, SW_SHOWNA);
        PumpMessages();
        // The mean of a few pages, as for the paint.
        const int pages = 5;
        double took = 0;
        for (int i = 0; i < pages; ++i) {
            ScrollToMiddle(list);
            const double start = Milliseconds();
            ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(list->GetVScrollBar()));
            ::SendMessageW(list->m_hWnd, WM_PAINT, reinterpret_cast<WPARAM>(picture.dc()), 0);
            ::GdiFlush();
            took += Milliseconds() - start;
        }
        return took / pages;
    };
    Figure scroll;
    scroll.name = "list scroll page";
    scroll.unit = "ms";
    scroll.target = 1.3;
    Samples scrollSamples;
    Repeat(
        repetitions, scrollSamples, [&]() { return scrollPage(large.get()); },
        [&]() { return scrollPage(thousand.get()); });
    Summarise(scrollSamples, scroll);
    figures.push_back(scroll);

    large->DestroyWindow();
    small->DestroyWindow();
    thousand->DestroyWindow();
    return figures;
}

} // namespace mirlbench
