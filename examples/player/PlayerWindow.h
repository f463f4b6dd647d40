// The player's window: made from the sample skin's "PlayerWindow" template and wired to the
// model. How an application hears its controls:
//   - a window made by the skin sends its own children's notifications back to them (that is
//     how a tab or a combo box acts on its own click), so the player listens on each container
//     with SetWindowSubclass and hears WM_COMMAND, WM_NOTIFY, scrolls and the library's own
//     messages after the container has handled them;
//   - the popup menu's choice and the list's context menu come straight to this window;
//   - a list view cleared and filled again paints its header without images, so the play list
//     is made anew for each filtering, in the place of the skin's list, which stays hidden and
//     laid out by its parent as the place holder.
#pragma once

#include "Mirl.h"
#include "InfoDialog.h"
#include "PlayerModel.h"

#include <memory>
#include <vector>

namespace player {

// A notification heard on a container: lParam points to the HeardMessage.
#define WM_PLAYER_HEARD (WM_APP + 1)

struct HeardMessage {
    HWND container;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// What the rows paint with; owned by the window.
struct RowStyle {
    Gdiplus::Font *font;
    Gdiplus::SolidBrush *text;
    Gdiplus::SolidBrush *dim;
    Gdiplus::SolidBrush *accent;
    Gdiplus::SolidBrush *selection;
};

// One play list row: a track of the model, by id, painted cell by cell.
class TrackRow : public MirlListView::INFORMATION_ITEM {
public:
    TrackRow(const PlayerModel &model, const RowStyle &style, int trackId);
    int TrackId() const { return m_TrackId; }
    void PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell) override;
    std::wstring GetCellText(int column) const override;

private:
    const PlayerModel &m_Model;
    const RowStyle &m_Style;
    int m_TrackId;
};

class PlayerWindow : public MirlWindowImpl<PlayerWindow> {
public:
    enum Page { PageLibrary = 0, PagePlaying = 1, PageSettings = 2 };
    // The menu's rows and the clock.
    enum : unsigned long { kMenuPlay = 0x4501, kMenuQueue = 0x4502, kMenuRemove = 0x4503, kMenuProperties = 0x4504 };
    enum : UINT_PTR { kClockTimer = 1 };
    enum { kClockStep = 250 };

    explicit PlayerWindow(PlayerModel &model);
    ~PlayerWindow() override;
    PlayerWindow(const PlayerWindow &) = delete;
    PlayerWindow &operator=(const PlayerWindow &) = delete;

    // Makes the window from the skin and fills it; null if the skin has no player template.
    HWND Open();

    // The program's main window ends the message loop when it goes; a test's does not.
    void SetQuitOnClose(bool quit) { m_QuitOnClose = quit; }
    int CurrentPage() const { return m_Page; }
    void ShowPage(int page);
    // The play list anew from the model, the selection kept where its tracks still show.
    void RefreshList();
    // Rows' track ids, in list order, and those selected.
    std::vector<int> ListedIds();
    std::vector<int> SelectedIds();
    // The Now playing page anew from the model: title, time, seek bar, play or pause.
    void RefreshPlaying();
    // The popup menu of the play list at a screen point.
    void OpenTrackMenu(POINT screen);
    // One step of the clock, as the timer gives it.
    void AdvanceClock(int milliseconds);

    // The controls, for the demo's pictures and the tests.
    MirlWindowBase *Page(int page);
    MirlWindowBase *Find(const wchar_t *path);
    MirlListView *List() { return m_List.get(); }
    InfoDialog &Info() { return m_Info; }

    BEGIN_MSG_MAP(PlayerWindow)
        MESSAGE_HANDLER(WM_PLAYER_HEARD, OnHeard)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        MESSAGE_HANDLER(WM_CONTEXTMENU, OnContextMenu)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(MirlWindowImpl<PlayerWindow>)
    END_MSG_MAP()

    LRESULT OnHeard(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCommand(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnContextMenu(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnTimer(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);

private:
    void Wire();
    void Listen(MirlWindowBase *container);
    void FillColumns(MirlListView &list);
    void PlaceList();
    void OnHeardCommand(HWND control, UINT id, UINT code);
    void OnTabChosen();
    void OnFolderChosen();
    void OnJogTurned();
    void OnMenuChoice(unsigned long id);
    void ShowProperties(int trackId);
    void ShowAbout();
    void SetText(const wchar_t *path, const std::wstring &text);

    PlayerModel &m_Model;
    RowStyle m_Style;
    int m_Page;
    MirlListView *m_Placeholder;
    std::unique_ptr<MirlListView> m_List;
    MirlEdit *m_Search;
    MirlComboBox *m_Sort;
    MIRLOutlookCtrl *m_Folders;
    MirlMediaSeekBar *m_Seek;
    MirlSlider *m_Volume;
    MirlTrackBar *m_Balance;
    MirlInchingSwitch *m_Jog;
    MirlProgressBar *m_Scan;
    MirlCommonEdit *m_Crossfade;
    MirlSpinCtrl *m_CrossfadeSpin;
    int m_JogFrame;
    bool m_QuitOnClose;
    std::vector<HWND> m_Heard;
    InfoDialog m_Info;
};

} // namespace player
