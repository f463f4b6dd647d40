// The range controls.
//
//   MirlProgressBar     the system progress bar, drawn from two three-slice image sets
//   MirlTrackBar        the system track bar with a skinned channel and thumb (custom draw)
//   MirlInchingSwitch   a jog wheel of 48 frames that turns one frame per mouse message
//
//   MirlScrollBar      constructors: MirlScrollBar, ~MirlScrollBar (loads and frees the
//                        nineteen fixed images)
//                      the owner's interface: GetScrollInfo, GetScrollPos, SetScrollInfo,
//                        SetScrollPos; notifications are WM_VSCROLL to the notify window
//                      painting: DoPaint, OnPaint, OwnerPaint
//   MirlSlider         attributes: GetRange, SetRange, GetPos, SetPos
//                      painting: DoPaint, PaintBkGround, PaintBkTrack
//                      notification: WM_SLIDER_POSITION (WM_USER + 120) to the parent
//   MirlMediaSeekBar   operations: SetSeekPercent, SetSeekPostion, SetAssociateButton,
//                        ShowControlButton; notification: WM_SEEK_POSITION (0xBD0) to the parent
#pragma once

#include "MirlWindow.h"
#include "MirlButton.h"
#include "MirlExport.h"

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

// The slider's position, to its parent: wParam the value's low 16 bits above the mouse flags,
// lParam the slider.
#define WM_SLIDER_POSITION (WM_USER + 120)
// The seek bar's position in thousandths, to its parent; lParam 0.
#define WM_SEEK_POSITION 0xBD0

// ---------------------------------------------------------------------------------------------
// MirlScrollBar

class MIRL_API MirlScrollBar
    : public MirlWindowImpl<MirlScrollBar, MirlWindowBase, ATL::CWinTraits<0x56000000, 0>>,
      public WTL::CDoubleBufferImpl<MirlScrollBar> {
    typedef MirlWindowImpl<MirlScrollBar, MirlWindowBase, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    // A class of its own, not a superclass of the system's scroll bar or button.
    DECLARE_WND_CLASS_EX(L"MirlScrollBar", CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, COLOR_WINDOW)

    // The nineteen images, in the order they are loaded.
    enum Image {
        NormalTop, HoverTop, ClickTop, NormalBottom, HoverBottom, ClickBottom,
        YRepeateNormal, YRepeateHover, YRepeateClick, TopNormal, TopHover, TopPressed,
        GripNormal, GripHover, GripClick, BottomNormal, BottomHover, BottomClick, YRepeat,
        ImageCount
    };
    // What the pressed button does (m_nClickPart).
    enum ClickPart { ClickNone = -1, ClickUp = 1, ClickDown = 2, ClickThumb = 3, ClickPageUp = 4, ClickPageDown = 5 };
    // What is drawn hot or pressed (m_nDrawPart).
    enum DrawPart {
        DrawNormal = -1, DrawUpHot = 1, DrawUpPressed = 2, DrawDownHot = 3, DrawDownPressed = 4,
        DrawThumbHot = 5, DrawThumbPressed = 6
    };
    // Which part took the press (m_nPressedPart).
    enum PressedPart { PressedNone = -1, PressedUp = 1, PressedThumb = 2, PressedDown = 3 };
    enum { kRepeatTimerId = 1000, kRepeatInterval = 100 };

    // The skin must be loaded: the images are fixed elements, looked up here.
    MirlScrollBar();
    ~MirlScrollBar() override;
    // The bar owns its images and its timer: it isn't copied.
    MirlScrollBar(const MirlScrollBar &) = delete;
    MirlScrollBar &operator=(const MirlScrollBar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The owner's interface. GetScrollInfo copies all seven words whatever fMask says and
    // returns 1; SetScrollInfo stores them, computes the thumb and returns 0 (0 and nothing
    // stored without a window); SetScrollPos lowers pos to the largest position and returns the
    // former one, without repainting.
    virtual int GetScrollInfo(SCROLLINFO *info);
    virtual int GetScrollPos();
    virtual int SetScrollInfo(SCROLLINFO *info);
    virtual int SetScrollPos(int pos);

    void DoPaint(WTL::CDCHandle dc);
    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL &);
    void OwnerPaint(Gdiplus::Graphics &g);

    // State, for the application and for tests.
    int GetClickPart() const { return m_nClickPart; }
    int GetDrawPart() const { return m_nDrawPart; }
    int GetPressedPart() const { return m_nPressedPart; }
    int GetThumbTop() const { return m_nThumbTop; }
    int GetThumbLength() const { return m_nThumbLength; }
    int GetMaxPos() const { return m_nMaxPos; }
    float GetScale() const { return m_fScale; }
    bool IsRepeating() const { return m_nTimerId != 0; }
    bool IsMouseTracked() const { return m_bMouseTracked != 0; }
    HWND GetNotifyWindow() const { return m_hNotifyWnd; }
    Gdiplus::Bitmap *GetImage(int image) const { return image >= 0 && image < ImageCount ? m_Images[image] : NULL; }
    // The rectangles as painting computes them, and the thumb as it is drawn.
    RECT GetUpArrowRect() const;
    RECT GetDownArrowRect() const;
    RECT GetTrackRect() const;
    RECT GetThumbRect() const;

    BEGIN_MSG_MAP(MirlScrollBar)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_MOUSELEAVE, OnMouseLeave)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(SBM_SETSCROLLINFO, OnSetScrollInfo)
        MESSAGE_HANDLER(WM_LBUTTONDBLCLK, OnLButtonDblClk)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkgnd)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlScrollBar>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseLeave(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSetScrollInfo(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDblClk(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnEraseBkgnd(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnTimer(UINT, WPARAM, LPARAM, BOOL &);

protected:
    struct Rects {
        RECT up;
        RECT track;
        RECT down;
        RECT thumb;
    };
    Rects Layout() const;
    int ThumbPos(int top, const Rects &rects) const;
    // WM_VSCROLL with code to the notify window (the parent while none is set). False when
    // the bar is gone after the send: the owner may destroy it from its handler.
    bool Notify(WPARAM code);
    void StopRepeat();
    void RefreshBar(int drawPart, const RECT &up, const RECT &down, const RECT &thumb);
    void DrawThumb(Gdiplus::Graphics &g, const RECT &thumb, int set);

    int m_bMouseTracked;
    int m_nClickPart;
    int m_nDrawPart;
    int m_nPressedPart;
    int m_nDragOffset;
    int m_nThumbTop;
    POINT m_ptLast;
    UINT_PTR m_nTimerId;
    Gdiplus::Bitmap *m_Images[ImageCount];
    SCROLLINFO m_scrollInfo;
    HWND m_hNotifyWnd;
    int m_nThumbLength;
    int m_nMaxPos;
    float m_fScale;
};

// ---------------------------------------------------------------------------------------------
// MirlSlider

class MIRL_API MirlSlider : public MirlWindowImpl<MirlSlider>,
                            public CTransparentImpl<MirlSlider>,
                            public WTL::CDoubleBufferImpl<MirlSlider> {
    typedef MirlWindowImpl<MirlSlider> Base;

public:
    MirlSlider();
    ~MirlSlider() override;
    // The slider owns its images: it isn't copied.
    MirlSlider(const MirlSlider &) = delete;
    MirlSlider &operator=(const MirlSlider &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Fills both bounds; returns the value.
    int GetRange(int &min, int &max) const;
    // Stores the bounds and holds the value inside them (max wins over min); returns the value.
    // The thumb stays where it is until the value changes or the slider is resized.
    int SetRange(int min, int max, bool redraw);
    int GetPos() const;
    // Holds pos inside the bounds and moves the thumb if it changed; returns the former value.
    int SetPos(int pos, bool redraw);

    void DoPaint(WTL::CDCHandle dc);
    // Three slices: left half, one stretched column, right half, centred vertically.
    void PaintBkGround(Gdiplus::Graphics &g, Gdiplus::Bitmap *bmp, const WTL::CRect &rc);
    // The image's top-left part of the thumb's size, unstretched, into the thumb rectangle.
    void PaintBkTrack(Gdiplus::Graphics &g, Gdiplus::Bitmap *bmp);

    // State, for the application and for tests.
    int GetTrackPos() const { return m_nTrackPos; }
    RECT GetThumbRect() const { return m_rcThumb; }
    bool IsHovering() const { return m_bHover; }
    bool IsActive() const { return m_bActive; }
    bool IsCreatedDisabled() const { return m_bDisabled; }
    Gdiplus::Bitmap *GetCurrentThumb() const { return m_pCurrentThumb; }
    Gdiplus::Bitmap *GetThumbImage() const { return m_pPicThumb; }
    Gdiplus::Bitmap *GetThumbGlowImage() const { return m_pPicThumbGlow; }
    Gdiplus::Bitmap *GetThumbDownImage() const { return m_pPicThumbDown; }
    Gdiplus::Bitmap *GetThumbDisableImage() const { return m_pPicThumbDisable; }
    Gdiplus::Bitmap *GetBackgroundImage() const { return m_pPicBk; }
    Gdiplus::Bitmap *GetDisabledBackgroundImage() const { return m_pPicBkDisable; }
    Gdiplus::Bitmap *GetBorderBackgroundImage() const { return m_pPicBkBorder; }
    Gdiplus::Bitmap *GetDisabledBorderBackgroundImage() const { return m_pPicBkDisableBorder; }
    // The background that painting chooses now.
    Gdiplus::Bitmap *GetPaintedBackground() const;

    BEGIN_MSG_MAP(MirlSlider)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_KILLFOCUS, OnKillFocus)
        MESSAGE_HANDLER(WM_SETFOCUS, OnSetFocus)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
        MESSAGE_HANDLER(WM_ACTIVATE, OnActivate)
        MESSAGE_HANDLER(WM_ENABLE, OnEnable)
        MESSAGE_HANDLER(WM_CANCELMODE, OnCancelMode)
        MESSAGE_HANDLER(WM_CAPTURECHANGED, OnCaptureChanged)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlSlider>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnKillFocus(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSetFocus(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnActivate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCancelMode(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCaptureChanged(UINT, WPARAM, LPARAM, BOOL &);

protected:
    // A mouse x becomes the value, and the parent is told.
    void SetPostion(int x, unsigned flags);
    // Stores pos unclamped and moves the thumb; does nothing while the bounds are equal.
    void SetPosInternal(int pos, bool redraw);
    void ObtainTrackPos(int width);
    // The common reset: no hover, not active, the normal thumb, a repaint.
    void CancelHover();
    void FreeImages();
    // The image of the attribute's element, or of the default element when there is none.
    Gdiplus::Bitmap *LoadNamedImage(const wchar_t *attribute, const wchar_t *defaultName) const;
    int ClientWidth() const;
    void ReleaseOwnCapture();

    Gdiplus::Bitmap *m_pPicThumb;
    Gdiplus::Bitmap *m_pPicThumbGlow;
    Gdiplus::Bitmap *m_pPicThumbDown;
    Gdiplus::Bitmap *m_pPicThumbDisable;
    Gdiplus::Bitmap *m_pPicBk;
    Gdiplus::Bitmap *m_pPicBkDisable;
    Gdiplus::Bitmap *m_pPicBkBorder;
    Gdiplus::Bitmap *m_pPicBkDisableBorder;
    Gdiplus::Bitmap *m_pCurrentThumb;
    int m_nPos;
    int m_nMin;
    int m_nMax;
    bool m_bHover;
    bool m_bActive;
    // Nothing sets it yet: the border backgrounds wait for a setter.
    bool m_bBorder;
    bool m_bDisabled;
    int m_nTrackPos;
    RECT m_rcThumb;
};

// ---------------------------------------------------------------------------------------------
// MirlMediaSeekBar

class MIRL_API MirlMediaSeekBar : public MirlWindowImpl<MirlMediaSeekBar>,
                                  public WTL::CDoubleBufferImpl<MirlMediaSeekBar> {
    typedef MirlWindowImpl<MirlMediaSeekBar> Base;

public:
    MirlMediaSeekBar();
    ~MirlMediaSeekBar() override;
    // The bar owns its images: it isn't copied.
    MirlMediaSeekBar(const MirlMediaSeekBar &) = delete;
    MirlMediaSeekBar &operator=(const MirlMediaSeekBar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The application's form: stores percent as it is, moves the thumb, repaints; the parent
    // is not told.
    void SetSeekPercent(float percent);
    // The mouse's form: x is the wanted centre of the thumb; the fraction is held from 0.0 to
    // 1.0 and the parent is told in thousandths.
    void SetSeekPostion(int x);
    // The bar does not own the buttons.
    void SetAssociateButton(MirlButton *play, MirlButton *pause);
    // Shows the first button and hides the second while playing, the reverse otherwise.
    void ShowControlButton(int playing);

    void DoPaint(WTL::CDCHandle dc);

    // State, for the application and for tests.
    float GetSeekPercent() const { return m_fPercent; }
    RECT GetTrackRect() const { return m_rcTrack; }
    RECT GetThumbRect() const { return m_rcThumb; }
    bool IsDragging() const { return m_bDragging != 0; }

    BEGIN_MSG_MAP(MirlMediaSeekBar)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlMediaSeekBar>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &);

protected:
    void FreeImages();
    int ThumbWidth() const;

    float m_fPercent;
    RECT m_rcTrack;
    RECT m_rcThumb;
    int m_bDragging;
    Gdiplus::Bitmap *m_pProgressBk;
    Gdiplus::Bitmap *m_pProgressFill;
    Gdiplus::Bitmap *m_pProgressTrack;
    Gdiplus::Bitmap *m_pProgressTrackGlow;
    Gdiplus::Bitmap *m_pProgressTrackDown;
    MirlButton *m_pPlayButton;
    MirlButton *m_pPauseButton;
};
