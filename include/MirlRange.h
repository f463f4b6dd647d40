// The range controls.
//
//   MirlProgressBar     the system progress bar, drawn from two three-slice image sets
//   MirlTrackBar        the system track bar with a skinned channel and thumb (custom draw)
//   MirlInchingSwitch   a jog wheel of 48 frames that turns one frame per mouse message
#pragma once

#include "MirlWindow.h"

#include <commctrl.h>

#include <vector>

class MIRL_API MirlProgressBar
    : public MirlWindowImpl<MirlProgressBar, WTL::CProgressBarCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>>,
      public WTL::CDoubleBufferImpl<MirlProgressBar> {
    typedef MirlWindowImpl<MirlProgressBar, WTL::CProgressBarCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>>
        Base;

public:
    DECLARE_WND_SUPERCLASS(L"MirlWindowImpl", PROGRESS_CLASSW)

    // Loads the six images of the skin, which must be loaded first.
    MirlProgressBar();
    ~MirlProgressBar() override;
    // The bar owns its images: it isn't copied.
    MirlProgressBar(const MirlProgressBar &) = delete;
    MirlProgressBar &operator=(const MirlProgressBar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Each sends the system's message, then reads range or position back for painting. The
    // former position comes back cut to a signed 16-bit value, as the system gives it.
    DWORD SetRange(int lower, int upper);
    DWORD SetRange32(int lower, int upper);
    int SetPos(int pos);
    int OffsetPos(int delta);
    int StepIt();

    // What painting uses: range and position as last read back.
    int GetShownMin() const { return m_nMin; }
    int GetShownMax() const { return m_nMax; }
    int GetShownPos() const { return m_nPos; }
    // The filled length that the next paint draws.
    int GetFillLength() const;

    // For a derived class's map: takes wParam as the shown position and repaints at once.
    LRESULT OnSetPos(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // For a derived class's map: lets creation go on to the system and the window base.
    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    void DoPaint(WTL::CDCHandle dc);
    BOOL PreTranslateMessage(MSG *) { return 0; }

    BEGIN_MSG_MAP(MirlProgressBar)
        MESSAGE_HANDLER(WM_CREATE, OnCreateWindow)
        MESSAGE_HANDLER(WM_SIZE, OnSizeWindow)
        MESSAGE_HANDLER(WM_MIRL_DELETE_MEMORY_DC, OnDropPictureOrSetPos)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlProgressBar>)
    END_MSG_MAP()

    // The system sets itself up first; then brushes, font, tooltip and children.
    LRESULT OnCreateWindow(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // Pictures are dropped, and the system sees the new size too.
    LRESULT OnSizeWindow(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // WM_USER + 2 from DeleteAllMemory drops the picture; from anyone else it is PBM_SETPOS.
    LRESULT OnDropPictureOrSetPos(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

protected:
    // Reads the system's position into m_nPos and answers former cut to 16 bits.
    int ReadPosBack(LRESULT former);

    Gdiplus::Bitmap *m_pFillLeft;
    Gdiplus::Bitmap *m_pFillMid;
    Gdiplus::Bitmap *m_pFillRight;
    Gdiplus::Bitmap *m_pBackLeft;
    Gdiplus::Bitmap *m_pBackMid;
    Gdiplus::Bitmap *m_pBackRight;
    int m_nMin;
    int m_nMax;
    int m_nPos;
};

class MIRL_API MirlTrackBar
    : public MirlWindowImpl<MirlTrackBar, WTL::CTrackBarCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>>,
      public WTL::CCustomDraw<MirlTrackBar> {
    typedef MirlWindowImpl<MirlTrackBar, WTL::CTrackBarCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    DECLARE_WND_SUPERCLASS(L"TRACKBAR", TRACKBAR_CLASSW)

    MirlTrackBar();
    ~MirlTrackBar() override;
    MirlTrackBar(const MirlTrackBar &) = delete;
    MirlTrackBar &operator=(const MirlTrackBar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    Gdiplus::Bitmap *GetThumbBitmap() const { return m_pThumb; }
    Gdiplus::Bitmap *GetThumbGlowBitmap() const { return m_pThumbGlow; }
    Gdiplus::Bitmap *GetChannelBitmap() const { return m_pChannel; }

    // Custom draw: the channel and the thumb are the control's, the tics the system's.
    DWORD OnPrePaint(int id, LPNMCUSTOMDRAW draw);
    DWORD OnItemPrePaint(int id, LPNMCUSTOMDRAW draw);

    BEGIN_MSG_MAP(MirlTrackBar)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkGnd)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP_ALT(WTL::CCustomDraw<MirlTrackBar>, 1)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    // Brushes, font, tooltip and the three images; the system then creates itself.
    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

protected:
    void DrawThumb(const NMCUSTOMDRAW &draw);
    void DrawChannel(const NMCUSTOMDRAW &draw);

    Gdiplus::Bitmap *m_pThumb;
    Gdiplus::Bitmap *m_pThumbGlow;
    Gdiplus::Bitmap *m_pChannel;
};

class MIRL_API MirlInchingSwitch : public MirlWindowImpl<MirlInchingSwitch>,
                                   public WTL::CDoubleBufferImpl<MirlInchingSwitch> {
    typedef MirlWindowImpl<MirlInchingSwitch> Base;

public:
    MirlInchingSwitch();
    ~MirlInchingSwitch() override;
    // The wheel owns its 49 images: it isn't copied.
    MirlInchingSwitch(const MirlInchingSwitch &) = delete;
    MirlInchingSwitch &operator=(const MirlInchingSwitch &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The frame shown, 0 to 47, and the x of the last press or move.
    int GetFrame() const { return m_nFrame; }
    int GetLastX() const { return m_nLastX; }
    // Frame index's image, null where the skin has none.
    Gdiplus::Bitmap *GetFrameBitmap(int index) const;
    Gdiplus::Bitmap *GetMaskBitmap() const { return m_pMask; }
    POINT GetMaskPlace() const { return POINT{m_nMaskX, m_nMaskY}; }
    POINT GetFramePlace() const { return POINT{m_nFrameX, m_nFrameY}; }

    void DoPaint(WTL::CDCHandle dc);

    BEGIN_MSG_MAP(MirlInchingSwitch)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlInchingSwitch>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnSize(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnMouseMove(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnLButtonDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

protected:
    void FreeImages();
    // Centres mask and frame in the client.
    void PlaceImages();
    // Where the frames' size comes from: frame 0, or the first frame the skin has.
    Gdiplus::Bitmap *SizingFrame() const;

    Gdiplus::Bitmap *m_pMask;
    std::vector<Gdiplus::Bitmap *> m_vFrames;
    int m_nFrame;
    int m_nWidth;
    int m_nHeight;
    int m_nMaskX;
    int m_nMaskY;
    int m_nMaskWidth;
    int m_nMaskHeight;
    int m_nFrameX;
    int m_nFrameY;
    int m_nFrameWidth;
    int m_nFrameHeight;
    int m_nLastX;
};
