#include "PlayerWindow.h"

#include "DemoSupport.h"

#include <commctrl.h>

#include <algorithm>

namespace player {

namespace {

// The messages a container passes on to the player, after handling them itself.
bool IsHeard(UINT message)
{
    switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_HSCROLL:
    case WM_VSCROLL:
    // A row's click and a folder's change share one number (WM_USER + 101): the container
    // that heard it tells them apart.
    case WM_MIRL_LIST_CLICK:
    case WM_MIRL_LIST_DBLCLK:
    case WM_SLIDER_POSITION:
    case WM_SEEK_POSITION:
    case WM_SIZE: return true;
    default: return false;
    }
}

// Subclass ids: a container's notifications, or the jog wheel's own mouse, which it reports
// to no one.
const UINT_PTR kHearContainer = 1;
const UINT_PTR kHearJog = 2;

LRESULT CALLBACK HearProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR owner)
{
    if (message == WM_NCDESTROY) {
        ::RemoveWindowSubclass(window, HearProc, id);
        return ::DefSubclassProc(window, message, wParam, lParam);
    }
    const LRESULT result = ::DefSubclassProc(window, message, wParam, lParam);
    const bool heard = id == kHearJog ? (message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN) : IsHeard(message);
    if (heard) {
        HeardMessage what = {window, message, wParam, lParam};
        ::SendMessageW(reinterpret_cast<HWND>(owner), WM_PLAYER_HEARD, 0, reinterpret_cast<LPARAM>(&what));
    }
    return result;
}

Gdiplus::RectF CellBox(const RECT &cell)
{
    return Gdiplus::RectF(static_cast<Gdiplus::REAL>(cell.left + 8), static_cast<Gdiplus::REAL>(cell.top),
                          static_cast<Gdiplus::REAL>(cell.right - cell.left - 12),
                          static_cast<Gdiplus::REAL>(cell.bottom - cell.top));
}

// The play list's columns: their text elements and widths.
struct ColumnSpec {
    const wchar_t *text;
    int width;
};
// Together narrower than the list beside its vertical bar, so that no horizontal bar is needed.
const ColumnSpec kColumns[] = {{L"TxtColTitle", 160}, {L"TxtColArtist", 124}, {L"TxtColAlbum", 110}, {L"TxtColTime", 50}};
const wchar_t *const kTabs[] = {L"TabLibrary", L"TabPlaying", L"TabSettings"};

} // namespace

// ---------------------------------------------------------------------------------------------
// TrackRow

TrackRow::TrackRow(const PlayerModel &model, const RowStyle &style, int trackId)
    : m_Model(model), m_Style(style), m_TrackId(trackId)
{
}

std::wstring TrackRow::GetCellText(int column) const
{
    const Track *track = m_Model.Find(m_TrackId);
    if (track == nullptr) {
        return std::wstring();
    }
    switch (column) {
    case 0: return track->title;
    case 1: return track->artist;
    case 2: return track->album;
    case 3: return FormatTime(track->seconds);
    default: return std::wstring();
    }
}

void TrackRow::PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell)
{
    if (cell == nullptr || m_Style.font == nullptr) {
        return;
    }
    if (selected) {
        graphics.FillRectangle(m_Style.selection, static_cast<INT>(cell->left), static_cast<INT>(cell->top),
                               static_cast<INT>(cell->right - cell->left), static_cast<INT>(cell->bottom - cell->top - 1));
    }
    const std::wstring text = GetCellText(column);
    Gdiplus::StringFormat format;
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    Gdiplus::SolidBrush *brush = m_Model.PlayingId() == m_TrackId ? m_Style.accent : column == 0 ? m_Style.text : m_Style.dim;
    graphics.DrawString(text.c_str(), -1, m_Style.font, CellBox(*cell), &format, brush);
}

// ---------------------------------------------------------------------------------------------
// PlayerWindow

PlayerWindow::PlayerWindow(PlayerModel &model)
    : m_Model(model), m_Style{}, m_Page(PageLibrary), m_Placeholder(nullptr), m_Search(nullptr), m_Sort(nullptr),
      m_Folders(nullptr), m_Seek(nullptr), m_Volume(nullptr), m_Balance(nullptr), m_Jog(nullptr), m_Scan(nullptr),
      m_Crossfade(nullptr), m_CrossfadeSpin(nullptr), m_JogFrame(0), m_QuitOnClose(false)
{
}

PlayerWindow::~PlayerWindow()
{
    if (IsWindow()) {
        DestroyWindow();
    }
    m_List.reset();
    delete m_Style.font;
    delete m_Style.text;
    delete m_Style.dim;
    delete m_Style.accent;
    delete m_Style.selection;
}

HWND PlayerWindow::Open()
{
    if (Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"PlayerWindow") == nullptr) {
        return nullptr;
    }
    Wire();
    return m_hWnd;
}

MirlWindowBase *PlayerWindow::Find(const wchar_t *path)
{
    MirlWindowBase *at = this;
    std::wstring rest(path);
    while (at != nullptr && !rest.empty()) {
        const size_t slash = rest.find(L'/');
        at = at->GetWindowItem(rest.substr(0, slash).c_str());
        rest = slash == std::wstring::npos ? std::wstring() : rest.substr(slash + 1);
    }
    return at;
}

MirlWindowBase *PlayerWindow::Page(int page)
{
    static const wchar_t *const kPages[] = {L"PageLibrary", L"PagePlaying", L"PageSettings"};
    return page >= 0 && page < 3 ? GetWindowItem(kPages[page]) : nullptr;
}

void PlayerWindow::Wire()
{
    m_Placeholder = dynamic_cast<MirlListView *>(Find(L"PageLibrary/Main/PlayList"));
    m_Search = dynamic_cast<MirlEdit *>(Find(L"PageLibrary/Main/Search"));
    m_Sort = dynamic_cast<MirlComboBox *>(Find(L"PageLibrary/Main/Sort"));
    m_Folders = dynamic_cast<MIRLOutlookCtrl *>(Find(L"PageLibrary/Side/Folders"));
    m_Scan = dynamic_cast<MirlProgressBar *>(Find(L"PageLibrary/Side/Scan"));
    m_Seek = dynamic_cast<MirlMediaSeekBar *>(Find(L"PagePlaying/Seek"));
    m_Volume = dynamic_cast<MirlSlider *>(Find(L"PagePlaying/Volume"));
    m_Balance = dynamic_cast<MirlTrackBar *>(Find(L"PagePlaying/Balance"));
    m_Jog = dynamic_cast<MirlInchingSwitch *>(Find(L"PagePlaying/Jog"));
    m_Crossfade = dynamic_cast<MirlCommonEdit *>(Find(L"PageSettings/Options/Crossfade"));
    m_CrossfadeSpin = dynamic_cast<MirlSpinCtrl *>(Find(L"PageSettings/Options/CrossfadeSpin"));

    for (const wchar_t *path : {L"Tabs", L"PageLibrary/Side/Folders", L"PageLibrary/Main", L"PagePlaying", L"PageSettings"}) {
        Listen(Find(path));
    }
    if (m_Jog != nullptr && ::SetWindowSubclass(m_Jog->m_hWnd, HearProc, kHearJog, reinterpret_cast<DWORD_PTR>(m_hWnd))) {
        m_Heard.push_back(m_Jog->m_hWnd);
        m_JogFrame = m_Jog->GetFrame();
    }

    // The rows paint with the skin's face and colours.
    m_Style.font = new Gdiplus::Font(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    m_Style.text = new Gdiplus::SolidBrush(Gdiplus::Color(0xFF, 230, 234, 242));
    m_Style.dim = new Gdiplus::SolidBrush(Gdiplus::Color(0xFF, 150, 160, 182));
    m_Style.accent = new Gdiplus::SolidBrush(Gdiplus::Color(0xFF, 63, 167, 255));
    m_Style.selection = new Gdiplus::SolidBrush(Gdiplus::Color(0xFF, 0x2A, 0x4C, 0x78));

    if (m_Placeholder != nullptr) {
        m_Placeholder->ShowWindow(SW_HIDE);
        RefreshList();
    }
    if (m_Sort != nullptr) {
        m_Sort->SetCurSel(static_cast<int>(m_Model.GetSort()) - 1);
    }
    if (m_Seek != nullptr) {
        m_Seek->SetAssociateButton(dynamic_cast<MirlButton *>(Find(L"PagePlaying/Pause")),
                                   dynamic_cast<MirlButton *>(Find(L"PagePlaying/Play")));
    }
    if (m_Volume != nullptr) {
        m_Volume->SetRange(0, PlayerModel::kMaxVolume, false);
        m_Volume->SetPos(m_Model.Volume(), true);
    }
    if (m_Balance != nullptr) {
        m_Balance->SetRange(-PlayerModel::kMaxBalance, PlayerModel::kMaxBalance);
        m_Balance->SetTicFreq(10);
        m_Balance->SetPos(m_Model.Balance());
    }
    if (m_Scan != nullptr) {
        m_Scan->SetRange32(0, m_Model.ScanTotal());
        m_Scan->SetPos(m_Model.Scanned());
    }
    if (m_Crossfade != nullptr && m_CrossfadeSpin != nullptr) {
        // The system's arrows count down from the top one until given a rising range.
        ::SendMessageW(m_CrossfadeSpin->m_hWnd, UDM_SETRANGE32, 0, PlayerModel::kMaxCrossfade);
        m_CrossfadeSpin->SetBuddyWindow(m_Crossfade);
        m_CrossfadeSpin->SetStep(1);
        m_CrossfadeSpin->SetPosition(m_Model.Crossfade());
    }
    RefreshPlaying();
    SetTimer(kClockTimer, kClockStep);
}

void PlayerWindow::Listen(MirlWindowBase *container)
{
    if (container != nullptr && container->IsWindow() &&
        ::SetWindowSubclass(container->m_hWnd, HearProc, kHearContainer, reinterpret_cast<DWORD_PTR>(m_hWnd))) {
        m_Heard.push_back(container->m_hWnd);
    }
}

void PlayerWindow::FillColumns(MirlListView &list)
{
    for (const ColumnSpec &column : kColumns) {
        list.AddColumn(nullptr, demo::SkinText(column.text).c_str(), column.width);
    }
}

void PlayerWindow::PlaceList()
{
    if (m_List == nullptr || m_Placeholder == nullptr || !m_List->IsWindow()) {
        return;
    }
    RECT place = {};
    m_Placeholder->GetWindowRect(&place);
    ::MapWindowPoints(nullptr, m_List->GetParent(), reinterpret_cast<POINT *>(&place), 2);
    m_List->MoveWindow(&place, TRUE);
}

void PlayerWindow::ShowPage(int page)
{
    if (Page(page) == nullptr) {
        return;
    }
    for (int i = 0; i < 3; ++i) {
        if (MirlWindowBase *each = Page(i)) {
            each->ShowWindow(i == page ? SW_SHOW : SW_HIDE);
        }
    }
    m_Page = page;
    // A page shown by the program shows its tab as chosen too; a click has done this already.
    MirlToolbar *tabs = dynamic_cast<MirlToolbar *>(GetWindowItem(L"Tabs"));
    if (tabs != nullptr) {
        for (int i = 0; i < 3; ++i) {
            if (MirlTabButton *tab = dynamic_cast<MirlTabButton *>(tabs->GetWindowItem(kTabs[i]))) {
                tab->SetSelected(i == page);
            }
        }
        tabs->SelectTab(page);
    }
}

std::vector<int> PlayerWindow::ListedIds()
{
    std::vector<int> ids;
    if (m_List != nullptr) {
        for (MirlListView::INFORMATION_ITEM *item : *m_List->GetItems()) {
            ids.push_back(static_cast<TrackRow *>(item)->TrackId());
        }
    }
    return ids;
}

std::vector<int> PlayerWindow::SelectedIds()
{
    std::vector<int> ids;
    if (m_List != nullptr) {
        for (MirlListView::INFORMATION_ITEM *item : *m_List->GetItems()) {
            if (item->selected) {
                ids.push_back(static_cast<TrackRow *>(item)->TrackId());
            }
        }
    }
    return ids;
}

void PlayerWindow::RefreshList()
{
    MirlWindowBase *main = Find(L"PageLibrary/Main");
    if (m_Placeholder == nullptr || main == nullptr) {
        return;
    }
    const std::vector<int> selected = SelectedIds();
    RECT place = {};
    m_Placeholder->GetWindowRect(&place);
    ::MapWindowPoints(nullptr, main->m_hWnd, reinterpret_cast<POINT *>(&place), 2);
    std::unique_ptr<MirlListView> list(new MirlListView());
    if (list->Create(main, main->m_hWnd, &place, L"PlayList") == nullptr) {
        return;
    }
    list->SetRowHeight(24);
    list->SetAllowMultiSelection(true);
    FillColumns(*list);
    for (int id : m_Model.Visible()) {
        TrackRow *row = new TrackRow(m_Model, m_Style, id);
        row->selected = std::find(selected.begin(), selected.end(), id) != selected.end();
        list->AddItem(row);
    }
    // The former list goes with its rows; never from inside one of its own notifications.
    if (m_List != nullptr && m_List->IsWindow()) {
        m_List->DestroyWindow();
    }
    m_List = std::move(list);
}

void PlayerWindow::SetText(const wchar_t *path, const std::wstring &text)
{
    if (MirlWindowBase *window = Find(path)) {
        window->SetWindowText(text.c_str());
        window->Invalidate();
    }
}

void PlayerWindow::RefreshPlaying()
{
    const Track *track = m_Model.Find(m_Model.PlayingId());
    SetText(L"PagePlaying/NowTitle", track != nullptr ? track->title : demo::SkinText(L"TxtNothing"));
    SetText(L"PagePlaying/NowArtist", track != nullptr ? track->artist + L"  \u2014  " + track->album : L"");
    SetText(L"PagePlaying/Time", track != nullptr ? FormatTime(m_Model.PositionMs() / 1000) + L" / " + FormatTime(track->seconds)
                                                  : L"");
    if (m_Seek != nullptr) {
        // A thumb being dragged is the user's: the clock doesn't take it back.
        if (!m_Seek->IsDragging()) {
            m_Seek->SetSeekPercent(static_cast<float>(m_Model.Fraction()));
        }
        m_Seek->ShowControlButton(m_Model.IsPlaying() ? 1 : 0);
    }
}

void PlayerWindow::AdvanceClock(int milliseconds)
{
    const int before = m_Model.PlayingId();
    m_Model.Tick(milliseconds);
    if (m_Model.Scanned() < m_Model.ScanTotal()) {
        m_Model.AdvanceScan(1);
        if (m_Scan != nullptr) {
            m_Scan->SetPos(m_Model.Scanned());
        }
    }
    RefreshPlaying();
    if (before != m_Model.PlayingId() && m_List != nullptr) {
        m_List->Invalidate();
    }
}

void PlayerWindow::OpenTrackMenu(POINT screen)
{
    MirlMenuWindow carrier;
    const RECT place = {screen.x, screen.y, screen.x + 160, screen.y + 112};
    carrier.TrackPopupMenu(L"TrackMenu", place, this);
}

void PlayerWindow::ShowProperties(int trackId)
{
    const Track *track = m_Model.Find(trackId);
    if (track == nullptr) {
        return;
    }
    const std::wstring body = demo::SkinText(L"TxtColArtist") + L": " + track->artist + L"\n" + demo::SkinText(L"TxtColAlbum") +
                              L": " + track->album + L"\n" + demo::SkinText(L"TxtColTime") + L": " + FormatTime(track->seconds);
    m_Info.Open(m_hWnd, demo::SkinText(L"TxtMenuProperties"), track->title, body, demo::SkinText(L"TxtOk"));
}

void PlayerWindow::ShowAbout()
{
    m_Info.Open(m_hWnd, demo::SkinText(L"TxtAboutTitle"), demo::SkinText(L"TxtTitle"), demo::SkinText(L"TxtAboutBody"), demo::SkinText(L"TxtOk"));
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT PlayerWindow::OnHeard(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    const HeardMessage &heard = *reinterpret_cast<const HeardMessage *>(lParam);
    switch (heard.message) {
    case WM_COMMAND:
        if (heard.lParam != 0) {
            OnHeardCommand(reinterpret_cast<HWND>(heard.lParam), LOWORD(heard.wParam), HIWORD(heard.wParam));
        }
        break;
    case WM_MIRL_LIST_CLICK:
        if (m_Folders != nullptr && heard.container == m_Folders->m_hWnd) {
            OnFolderChosen();
        }
        break;
    case WM_MIRL_LIST_DBLCLK:
        if (heard.wParam != 0 && m_Model.Play(reinterpret_cast<TrackRow *>(heard.wParam)->TrackId())) {
            RefreshPlaying();
            m_List->Invalidate();
        }
        break;
    case WM_SEEK_POSITION:
        m_Model.SeekThousandths(static_cast<int>(heard.wParam));
        RefreshPlaying();
        break;
    case WM_SLIDER_POSITION:
        if (m_Volume != nullptr) {
            m_Model.SetVolume(m_Volume->GetPos());
        }
        break;
    case WM_HSCROLL:
        if (m_Balance != nullptr && reinterpret_cast<HWND>(heard.lParam) == m_Balance->m_hWnd) {
            m_Model.SetBalance(m_Balance->GetPos());
        }
        break;
    case WM_VSCROLL:
        if (m_CrossfadeSpin != nullptr && reinterpret_cast<HWND>(heard.lParam) == m_CrossfadeSpin->m_hWnd) {
            m_Model.SetCrossfade(m_CrossfadeSpin->GetPosition());
            // The arrows count on past the model's ceiling: the field shows what holds.
            if (m_CrossfadeSpin->GetPosition() != m_Model.Crossfade()) {
                m_CrossfadeSpin->SetPosition(m_Model.Crossfade());
            }
        }
        break;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN: OnJogTurned(); break;
    case WM_SIZE: PlaceList(); break;
    default: break;
    }
    return 0;
}

void PlayerWindow::OnHeardCommand(HWND control, UINT id, UINT code)
{
    if (MirlWindowBase *tabs = GetWindowItem(L"Tabs")) {
        if (::GetParent(control) == tabs->m_hWnd) {
            OnTabChosen();
            return;
        }
    }
    if (m_Search != nullptr && control == m_Search->m_hWnd) {
        if (code == EN_CHANGE) {
            m_Model.SetSearch(m_Search->GetEditText());
            RefreshList();
        }
        return;
    }
    if (m_Sort != nullptr && control == m_Sort->m_hWnd) {
        const MirlComboBox::COMBOBO_ITEM *item = m_Sort->GetCurItem();
        if (code == CBN_SELCHANGE && item != nullptr) {
            m_Model.SetSort(static_cast<SortOrder>(item->id));
            RefreshList();
        }
        return;
    }
    if (m_Crossfade != nullptr && control == m_Crossfade->m_hWnd) {
        if (code == EN_CHANGE) {
            m_Model.SetCrossfade(m_Crossfade->GetPosition());
        }
        return;
    }
    if (code != BN_CLICKED) {
        return;
    }
    switch (id) {
    case 0x4311: m_Model.Previous(); break;
    case 0x4312:
        if (!m_Model.Resume()) {
            const std::vector<int> chosen = SelectedIds().empty() ? ListedIds() : SelectedIds();
            if (!chosen.empty()) {
                m_Model.Play(chosen.front());
            }
        }
        break;
    case 0x4313: m_Model.Pause(); break;
    case 0x4314: m_Model.Stop(); break;
    case 0x4315: m_Model.Next(); break;
    case 0x4420: ShowAbout(); return;
    default: return;
    }
    RefreshPlaying();
    if (m_List != nullptr) {
        m_List->Invalidate();
    }
}

void PlayerWindow::OnTabChosen()
{
    MirlTabButton *current = MirlToolbar::GetCurrentTab();
    MirlWindowBase *tabs = GetWindowItem(L"Tabs");
    if (current == nullptr || tabs == nullptr) {
        return;
    }
    for (int page = 0; page < 3; ++page) {
        if (tabs->GetWindowItem(kTabs[page]) == current) {
            ShowPage(page);
        }
    }
}

void PlayerWindow::OnFolderChosen()
{
    if (m_Folders == nullptr) {
        return;
    }
    MirlOutlookBar *current = MIRLOutlookCtrl::GetCurrentBar();
    for (unsigned int i = 0; i < m_Folders->GetFolderCount() && i < 3; ++i) {
        const OUTLOOK_FOLDER *folder = m_Folders->GetFolder(i);
        if (folder != nullptr && folder->pBar == current) {
            // Artists and Albums follow the track chosen now: the first selected, else the playing.
            const std::vector<int> selected = SelectedIds();
            m_Model.SetFocusTrack(selected.empty() ? 0 : selected.front());
            m_Model.SetFolder(static_cast<Folder>(i));
            RefreshList();
        }
    }
}

void PlayerWindow::OnJogTurned()
{
    if (m_Jog == nullptr) {
        return;
    }
    // Frames wrap at 48: the shorter way round is the turn, a frame a second.
    const int frame = m_Jog->GetFrame();
    int turn = (frame - m_JogFrame + 48) % 48;
    if (turn > 24) {
        turn -= 48;
    }
    m_JogFrame = frame;
    if (turn != 0) {
        m_Model.Scrub(turn);
        RefreshPlaying();
    }
}

LRESULT PlayerWindow::OnCommand(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // The popup's choice: the row's id, from the popup's window.
    const unsigned long id = LOWORD(wParam);
    MirlMenuWindow *popup = MirlMenuWindow::Instance();
    const bool fromPopup = popup != nullptr && reinterpret_cast<HWND>(lParam) == popup->m_hWnd;
    if (!fromPopup || id < kMenuPlay || id > kMenuProperties) {
        bHandled = FALSE;
        return 0;
    }
    OnMenuChoice(id);
    return 0;
}

void PlayerWindow::OnMenuChoice(unsigned long id)
{
    const std::vector<int> selected = SelectedIds();
    if (selected.empty()) {
        return;
    }
    switch (id) {
    case kMenuPlay:
        m_Model.Play(selected.front());
        RefreshPlaying();
        break;
    case kMenuQueue:
        for (int track : selected) {
            m_Model.Queue(track);
        }
        break;
    case kMenuRemove:
        for (int track : selected) {
            m_Model.Remove(track);
        }
        RefreshList();
        RefreshPlaying();
        break;
    case kMenuProperties: ShowProperties(selected.front()); break;
    default: break;
    }
    if (m_List != nullptr) {
        m_List->Invalidate();
    }
}

LRESULT PlayerWindow::OnContextMenu(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // The request climbs from the list through its parents, each naming itself as it passes it
    // on: the list is known by the point, or by the focus for one from the keyboard.
    POINT screen = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    RECT area = {};
    if (m_List != nullptr) {
        m_List->GetWindowRect(&area);
    }
    const bool onList = m_List != nullptr && (reinterpret_cast<HWND>(wParam) == m_List->m_hWnd ||
                                              (lParam == -1 ? ::GetFocus() == m_List->m_hWnd : ::PtInRect(&area, screen) != FALSE));
    if (!onList) {
        bHandled = FALSE;
        return 0;
    }
    if (lParam == -1) {
        // From the keyboard: under the list's top left corner.
        RECT place = {};
        m_List->GetWindowRect(&place);
        screen = {place.left + 24, place.top + 24};
    } else {
        // A right press on a row that isn't selected chooses that row alone.
        POINT client = screen;
        m_List->ScreenToClient(&client);
        int index = 0;
        for (MirlListView::INFORMATION_ITEM *item : *m_List->GetItems()) {
            if (::PtInRect(&item->rect, client) && client.y >= m_List->GetTitleHeight()) {
                if (!item->selected) {
                    m_List->SetCurSel(index);
                    m_List->Invalidate();
                }
                break;
            }
            ++index;
        }
    }
    OpenTrackMenu(screen);
    return 0;
}

LRESULT PlayerWindow::OnTimer(UINT, WPARAM wParam, LPARAM, BOOL &bHandled)
{
    if (wParam != kClockTimer) {
        bHandled = FALSE;
        return 0;
    }
    AdvanceClock(kClockStep);
    return 0;
}

LRESULT PlayerWindow::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    KillTimer(kClockTimer);
    m_Info.Close();
    for (HWND window : m_Heard) {
        if (::IsWindow(window)) {
            ::RemoveWindowSubclass(window, HearProc, kHearContainer);
            ::RemoveWindowSubclass(window, HearProc, kHearJog);
        }
    }
    m_Heard.clear();
    // The popup may still be held for this window.
    if (MirlMenuWindow *popup = MirlMenuWindow::Instance()) {
        if (popup->GetHolder() == this) {
            MirlMenuWindow::FinalDestroy();
        }
    }
    if (m_QuitOnClose) {
        ::PostQuitMessage(0);
    }
    bHandled = FALSE;
    return 0;
}

} // namespace player
