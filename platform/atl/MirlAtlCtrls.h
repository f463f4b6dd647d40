// MirlAtlCtrls.h - control wrappers of WTL.
//
// WTL::CStaticT<TBase>           CStatic
// WTL::CButtonT<TBase>           CButton
// WTL::CEditT<TBase>             CEdit
// WTL::CProgressBarCtrlT<TBase>  CProgressBarCtrl
// WTL::CUpDownCtrlT<TBase>       CUpDownCtrl
// WTL::CTrackBarCtrlT<TBase>     CTrackBarCtrl
// WTL::CCustomDraw<T>            NM_CUSTOMDRAW dispatch by draw stage
//
// Each wrapper derives from TBase (ATL::CWindow or a class built on it), adds Create with its
// system class name and GetWndClassName, and turns each message of the control into a typed
// method: one assertion that the window exists and one SendMessage.

#ifndef MIRL_PLATFORM_ATL_MIRLATLCTRLS_H
#define MIRL_PLATFORM_ATL_MIRLATLCTRLS_H

#include "MirlAtlBase.h"
#include "MirlAtlWin.h"

namespace WTL
{

#define MIRL_CONTROL_COMMON(ClassName, szClassName) \
public: \
    ClassName(HWND hWnd = NULL) : TBase(hWnd) {} \
    ClassName& operator=(HWND hWnd) \
    { \
        this->m_hWnd = hWnd; \
        return *this; \
    } \
    HWND Create(HWND hWndParent, ATL::_U_RECT rect = NULL, LPCWSTR szWindowName = NULL, DWORD dwStyle = 0, \
                DWORD dwExStyle = 0, ATL::_U_MENUorID MenuOrID = 0U, LPVOID lpCreateParam = NULL) \
    { \
        return TBase::Create(GetWndClassName(), hWndParent, rect.m_lpRect, szWindowName, dwStyle, dwExStyle, \
                             MenuOrID.m_hMenu, lpCreateParam); \
    } \
    static LPCWSTR GetWndClassName() { return szClassName; }

#define MIRL_SEND(msg, wParam, lParam) \
    (ATLASSERT(::IsWindow(this->m_hWnd)), ::SendMessageW(this->m_hWnd, (msg), (WPARAM)(wParam), (LPARAM)(lParam)))

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CStaticT : public TBase
{
    MIRL_CONTROL_COMMON(CStaticT, L"STATIC")

    HICON GetIcon() const { return reinterpret_cast<HICON>(MIRL_SEND(STM_GETICON, 0, 0)); }
    HICON SetIcon(HICON hIcon) { return reinterpret_cast<HICON>(MIRL_SEND(STM_SETICON, hIcon, 0)); }
    HBITMAP GetBitmap() const { return reinterpret_cast<HBITMAP>(MIRL_SEND(STM_GETIMAGE, IMAGE_BITMAP, 0)); }
    HBITMAP SetBitmap(HBITMAP hBitmap) { return reinterpret_cast<HBITMAP>(MIRL_SEND(STM_SETIMAGE, IMAGE_BITMAP, hBitmap)); }
};

typedef CStaticT<ATL::CWindow> CStatic;

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CButtonT : public TBase
{
    MIRL_CONTROL_COMMON(CButtonT, L"BUTTON")

    // Attributes
    UINT GetState() const { return static_cast<UINT>(MIRL_SEND(BM_GETSTATE, 0, 0)); }
    void SetState(BOOL bHighlight) { MIRL_SEND(BM_SETSTATE, bHighlight, 0); }
    int GetCheck() const { return static_cast<int>(MIRL_SEND(BM_GETCHECK, 0, 0)); }
    void SetCheck(int nCheck) { MIRL_SEND(BM_SETCHECK, nCheck, 0); }
    // The BS_ part of the window style.
    UINT GetButtonStyle() const
    {
        ATLASSERT(::IsWindow(this->m_hWnd));
        return static_cast<UINT>(::GetWindowLongW(this->m_hWnd, GWL_STYLE)) & 0xFFFF;
    }
    void SetButtonStyle(UINT nStyle, BOOL bRedraw = TRUE) { MIRL_SEND(BM_SETSTYLE, nStyle, bRedraw); }
    HICON GetIcon() const { return reinterpret_cast<HICON>(MIRL_SEND(BM_GETIMAGE, IMAGE_ICON, 0)); }
    HICON SetIcon(HICON hIcon) { return reinterpret_cast<HICON>(MIRL_SEND(BM_SETIMAGE, IMAGE_ICON, hIcon)); }
    HBITMAP GetBitmap() const { return reinterpret_cast<HBITMAP>(MIRL_SEND(BM_GETIMAGE, IMAGE_BITMAP, 0)); }
    HBITMAP SetBitmap(HBITMAP hBitmap) { return reinterpret_cast<HBITMAP>(MIRL_SEND(BM_SETIMAGE, IMAGE_BITMAP, hBitmap)); }

    // Operations
    void Click() { MIRL_SEND(BM_CLICK, 0, 0); }
};

typedef CButtonT<ATL::CWindow> CButton;

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CEditT : public TBase
{
    MIRL_CONTROL_COMMON(CEditT, L"EDIT")

    // Attributes
    BOOL CanUndo() const { return static_cast<BOOL>(MIRL_SEND(EM_CANUNDO, 0, 0)); }
    int GetLineCount() const { return static_cast<int>(MIRL_SEND(EM_GETLINECOUNT, 0, 0)); }
    BOOL GetModify() const { return static_cast<BOOL>(MIRL_SEND(EM_GETMODIFY, 0, 0)); }
    void SetModify(BOOL bModified = TRUE) { MIRL_SEND(EM_SETMODIFY, bModified, 0); }
    void GetRect(LPRECT lpRect) const { MIRL_SEND(EM_GETRECT, 0, lpRect); }
    void SetRect(LPCRECT lpRect) { MIRL_SEND(EM_SETRECT, 0, lpRect); }
    // Start in the low word, end in the high word.
    DWORD GetSel() const { return static_cast<DWORD>(MIRL_SEND(EM_GETSEL, 0, 0)); }
    void GetSel(int& nStartChar, int& nEndChar) const
    {
        DWORD dwStart = 0;
        DWORD dwEnd = 0;
        MIRL_SEND(EM_GETSEL, &dwStart, &dwEnd);
        nStartChar = static_cast<int>(dwStart);
        nEndChar = static_cast<int>(dwEnd);
    }
    UINT GetLimitText() const { return static_cast<UINT>(MIRL_SEND(EM_GETLIMITTEXT, 0, 0)); }
    void SetLimitText(UINT nMax) { MIRL_SEND(EM_SETLIMITTEXT, nMax, 0); }
    void LimitText(int nChars = 0) { MIRL_SEND(EM_LIMITTEXT, nChars, 0); }
    // Copies line nIndex into lpszBuffer, which holds nMaxLength characters; no terminator.
    int GetLine(int nIndex, LPWSTR lpszBuffer, int nMaxLength) const
    {
        ATLASSERT(nMaxLength > 0);
        lpszBuffer[0] = static_cast<WCHAR>(nMaxLength); // EM_GETLINE reads the size from the buffer
        return static_cast<int>(MIRL_SEND(EM_GETLINE, nIndex, lpszBuffer));
    }
    int LineLength(int nLine = -1) const { return static_cast<int>(MIRL_SEND(EM_LINELENGTH, nLine, 0)); }
    int LineIndex(int nLine = -1) const { return static_cast<int>(MIRL_SEND(EM_LINEINDEX, nLine, 0)); }
    int LineFromChar(int nIndex = -1) const { return static_cast<int>(MIRL_SEND(EM_LINEFROMCHAR, nIndex, 0)); }
    int GetFirstVisibleLine() const { return static_cast<int>(MIRL_SEND(EM_GETFIRSTVISIBLELINE, 0, 0)); }
    WCHAR GetPasswordChar() const { return static_cast<WCHAR>(MIRL_SEND(EM_GETPASSWORDCHAR, 0, 0)); }
    void SetPasswordChar(WCHAR ch) { MIRL_SEND(EM_SETPASSWORDCHAR, ch, 0); }
    BOOL SetReadOnly(BOOL bReadOnly = TRUE) { return static_cast<BOOL>(MIRL_SEND(EM_SETREADONLY, bReadOnly, 0)); }
    DWORD GetMargins() const { return static_cast<DWORD>(MIRL_SEND(EM_GETMARGINS, 0, 0)); }
    void SetMargins(UINT nLeft, UINT nRight, WORD wFlags = EC_LEFTMARGIN | EC_RIGHTMARGIN)
    {
        MIRL_SEND(EM_SETMARGINS, wFlags, MAKELONG(nLeft, nRight));
    }
    // The character nearest to a client point, in the low word.
    int CharFromPos(POINT pt) const
    {
        return static_cast<int>(LOWORD(MIRL_SEND(EM_CHARFROMPOS, 0, MAKELPARAM(pt.x, pt.y))));
    }
    POINT PosFromChar(UINT nChar) const
    {
        const DWORD dwRet = static_cast<DWORD>(MIRL_SEND(EM_POSFROMCHAR, nChar, 0));
        POINT point = { static_cast<short>(LOWORD(dwRet)), static_cast<short>(HIWORD(dwRet)) };
        return point;
    }

    // Operations
    void SetSel(int nStartChar, int nEndChar, BOOL bNoScroll = FALSE)
    {
        MIRL_SEND(EM_SETSEL, nStartChar, nEndChar);
        if (!bNoScroll)
            MIRL_SEND(EM_SCROLLCARET, 0, 0);
    }
    void SetSel(DWORD dwSelection, BOOL bNoScroll = FALSE)
    {
        SetSel(LOWORD(dwSelection), HIWORD(dwSelection), bNoScroll);
    }
    void SetSelAll(BOOL bNoScroll = FALSE) { SetSel(0, -1, bNoScroll); }
    void SetSelNone(BOOL bNoScroll = FALSE) { SetSel(-1, 0, bNoScroll); }
    void ReplaceSel(LPCWSTR lpszNewText, BOOL bCanUndo = FALSE) { MIRL_SEND(EM_REPLACESEL, bCanUndo, lpszNewText); }
    void ScrollCaret() { MIRL_SEND(EM_SCROLLCARET, 0, 0); }
    BOOL Undo() { return static_cast<BOOL>(MIRL_SEND(EM_UNDO, 0, 0)); }
    void EmptyUndoBuffer() { MIRL_SEND(EM_EMPTYUNDOBUFFER, 0, 0); }
    void Clear() { MIRL_SEND(WM_CLEAR, 0, 0); }
    void Copy() { MIRL_SEND(WM_COPY, 0, 0); }
    void Cut() { MIRL_SEND(WM_CUT, 0, 0); }
    void Paste() { MIRL_SEND(WM_PASTE, 0, 0); }
};

typedef CEditT<ATL::CWindow> CEdit;

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CProgressBarCtrlT : public TBase
{
    MIRL_CONTROL_COMMON(CProgressBarCtrlT, PROGRESS_CLASSW)

    // Attributes. The former position comes back as a signed 16-bit value, as the control gives it.
    DWORD SetRange(int nLower, int nUpper) { return static_cast<DWORD>(MIRL_SEND(PBM_SETRANGE, 0, MAKELPARAM(nLower, nUpper))); }
    DWORD SetRange32(int nLower, int nUpper) { return static_cast<DWORD>(MIRL_SEND(PBM_SETRANGE32, nLower, nUpper)); }
    void GetRange(PPBRANGE pPBRange) const { MIRL_SEND(PBM_GETRANGE, TRUE, pPBRange); }
    void GetRange(int& nLower, int& nUpper) const
    {
        PBRANGE range = {};
        MIRL_SEND(PBM_GETRANGE, TRUE, &range);
        nLower = range.iLow;
        nUpper = range.iHigh;
    }
    int GetRangeLimit(BOOL bLowLimit) const { return static_cast<int>(MIRL_SEND(PBM_GETRANGE, bLowLimit, 0)); }
    int SetPos(int nPos) { return static_cast<short>(LOWORD(MIRL_SEND(PBM_SETPOS, nPos, 0))); }
    UINT GetPos() const { return static_cast<UINT>(MIRL_SEND(PBM_GETPOS, 0, 0)); }
    int OffsetPos(int nPos) { return static_cast<short>(LOWORD(MIRL_SEND(PBM_DELTAPOS, nPos, 0))); }
    int SetStep(int nStep) { return static_cast<short>(LOWORD(MIRL_SEND(PBM_SETSTEP, nStep, 0))); }
    int GetStep() const { return static_cast<int>(MIRL_SEND(PBM_GETSTEP, 0, 0)); }
    COLORREF SetBarColor(COLORREF clr) { return static_cast<COLORREF>(MIRL_SEND(PBM_SETBARCOLOR, 0, clr)); }
    COLORREF GetBarColor() const { return static_cast<COLORREF>(MIRL_SEND(PBM_GETBARCOLOR, 0, 0)); }
    COLORREF SetBkColor(COLORREF clr) { return static_cast<COLORREF>(MIRL_SEND(PBM_SETBKCOLOR, 0, clr)); }
    COLORREF GetBkColor() const { return static_cast<COLORREF>(MIRL_SEND(PBM_GETBKCOLOR, 0, 0)); }
    BOOL SetMarquee(BOOL bMarquee, UINT uUpdateTime = 0U) { return static_cast<BOOL>(MIRL_SEND(PBM_SETMARQUEE, bMarquee, uUpdateTime)); }

    // Operations
    int StepIt() { return static_cast<short>(LOWORD(MIRL_SEND(PBM_STEPIT, 0, 0))); }
};

typedef CProgressBarCtrlT<ATL::CWindow> CProgressBarCtrl;

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CUpDownCtrlT : public TBase
{
    MIRL_CONTROL_COMMON(CUpDownCtrlT, UPDOWN_CLASSW)

    UINT GetAccel(int nAccel, UDACCEL* pAccel) const { return static_cast<UINT>(LOWORD(MIRL_SEND(UDM_GETACCEL, nAccel, pAccel))); }
    BOOL SetAccel(int nAccel, UDACCEL* pAccel) { return static_cast<BOOL>(LOWORD(MIRL_SEND(UDM_SETACCEL, nAccel, pAccel))); }
    UINT GetBase() const { return static_cast<UINT>(LOWORD(MIRL_SEND(UDM_GETBASE, 0, 0))); }
    int SetBase(int nBase) { return static_cast<int>(MIRL_SEND(UDM_SETBASE, nBase, 0)); }
    ATL::CWindow GetBuddy() const { return ATL::CWindow(reinterpret_cast<HWND>(MIRL_SEND(UDM_GETBUDDY, 0, 0))); }
    ATL::CWindow SetBuddy(HWND hWndBuddy) { return ATL::CWindow(reinterpret_cast<HWND>(MIRL_SEND(UDM_SETBUDDY, hWndBuddy, 0))); }
    // 16-bit position; *lpbError tells whether the control could not read it from its buddy.
    int GetPos(LPBOOL lpbError = NULL) const
    {
        const DWORD dwRet = static_cast<DWORD>(MIRL_SEND(UDM_GETPOS, 0, 0));
        if (lpbError != NULL)
            *lpbError = HIWORD(dwRet) != 0 ? TRUE : FALSE;
        return static_cast<short>(LOWORD(dwRet));
    }
    int SetPos(int nPos) { return static_cast<short>(LOWORD(MIRL_SEND(UDM_SETPOS, 0, MAKELPARAM(nPos, 0)))); }
    void GetRange(int& nLower, int& nUpper) const
    {
        const DWORD dwRet = static_cast<DWORD>(MIRL_SEND(UDM_GETRANGE, 0, 0));
        nLower = static_cast<short>(HIWORD(dwRet));
        nUpper = static_cast<short>(LOWORD(dwRet));
    }
    DWORD GetRange() const { return static_cast<DWORD>(MIRL_SEND(UDM_GETRANGE, 0, 0)); }
    void SetRange(int nLower, int nUpper) { MIRL_SEND(UDM_SETRANGE, 0, MAKELPARAM(nUpper, nLower)); }
    void GetRange32(int& nLower, int& nUpper) const { MIRL_SEND(UDM_GETRANGE32, &nLower, &nUpper); }
    void SetRange32(int nLower, int nUpper) { MIRL_SEND(UDM_SETRANGE32, nLower, nUpper); }
    int GetPos32(LPBOOL lpbError = NULL) const { return static_cast<int>(MIRL_SEND(UDM_GETPOS32, 0, lpbError)); }
    int SetPos32(int nPos) { return static_cast<int>(MIRL_SEND(UDM_SETPOS32, 0, nPos)); }
    BOOL GetUnicodeFormat() const { return static_cast<BOOL>(MIRL_SEND(UDM_GETUNICODEFORMAT, 0, 0)); }
    BOOL SetUnicodeFormat(BOOL bUnicode = TRUE) { return static_cast<BOOL>(MIRL_SEND(UDM_SETUNICODEFORMAT, bUnicode, 0)); }
};

typedef CUpDownCtrlT<ATL::CWindow> CUpDownCtrl;

// ---------------------------------------------------------------------------------------------

template <class TBase>
class CTrackBarCtrlT : public TBase
{
    MIRL_CONTROL_COMMON(CTrackBarCtrlT, TRACKBAR_CLASSW)

    // Attributes
    int GetLineSize() const { return static_cast<int>(MIRL_SEND(TBM_GETLINESIZE, 0, 0)); }
    int SetLineSize(int nSize) { return static_cast<int>(MIRL_SEND(TBM_SETLINESIZE, 0, nSize)); }
    int GetPageSize() const { return static_cast<int>(MIRL_SEND(TBM_GETPAGESIZE, 0, 0)); }
    int SetPageSize(int nSize) { return static_cast<int>(MIRL_SEND(TBM_SETPAGESIZE, 0, nSize)); }
    int GetRangeMin() const { return static_cast<int>(MIRL_SEND(TBM_GETRANGEMIN, 0, 0)); }
    void SetRangeMin(int nMin, BOOL bRedraw = FALSE) { MIRL_SEND(TBM_SETRANGEMIN, bRedraw, nMin); }
    int GetRangeMax() const { return static_cast<int>(MIRL_SEND(TBM_GETRANGEMAX, 0, 0)); }
    void SetRangeMax(int nMax, BOOL bRedraw = FALSE) { MIRL_SEND(TBM_SETRANGEMAX, bRedraw, nMax); }
    void GetRange(int& nMin, int& nMax) const
    {
        nMin = GetRangeMin();
        nMax = GetRangeMax();
    }
    void SetRange(int nMin, int nMax, BOOL bRedraw = TRUE) { MIRL_SEND(TBM_SETRANGE, bRedraw, MAKELPARAM(nMin, nMax)); }
    int GetSelStart() const { return static_cast<int>(MIRL_SEND(TBM_GETSELSTART, 0, 0)); }
    void SetSelStart(int nMin, BOOL bRedraw = FALSE) { MIRL_SEND(TBM_SETSELSTART, bRedraw, nMin); }
    int GetSelEnd() const { return static_cast<int>(MIRL_SEND(TBM_GETSELEND, 0, 0)); }
    void SetSelEnd(int nMax, BOOL bRedraw = FALSE) { MIRL_SEND(TBM_SETSELEND, bRedraw, nMax); }
    void GetSelection(int& nMin, int& nMax) const
    {
        nMin = GetSelStart();
        nMax = GetSelEnd();
    }
    void SetSelection(int nMin, int nMax, BOOL bRedraw = TRUE) { MIRL_SEND(TBM_SETSEL, bRedraw, MAKELPARAM(nMin, nMax)); }
    void GetChannelRect(LPRECT lprc) const { MIRL_SEND(TBM_GETCHANNELRECT, 0, lprc); }
    void GetThumbRect(LPRECT lprc) const { MIRL_SEND(TBM_GETTHUMBRECT, 0, lprc); }
    int GetPos() const { return static_cast<int>(MIRL_SEND(TBM_GETPOS, 0, 0)); }
    void SetPos(int nPos) { MIRL_SEND(TBM_SETPOS, TRUE, nPos); }
    UINT GetNumTics() const { return static_cast<UINT>(MIRL_SEND(TBM_GETNUMTICS, 0, 0)); }
    DWORD* GetTicArray() const { return reinterpret_cast<DWORD*>(MIRL_SEND(TBM_GETPTICS, 0, 0)); }
    int GetTic(int nTic) const { return static_cast<int>(MIRL_SEND(TBM_GETTIC, nTic, 0)); }
    BOOL SetTic(int nTic) { return static_cast<BOOL>(MIRL_SEND(TBM_SETTIC, 0, nTic)); }
    int GetTicPos(int nTic) const { return static_cast<int>(MIRL_SEND(TBM_GETTICPOS, nTic, 0)); }
    void SetTicFreq(int nFreq) { MIRL_SEND(TBM_SETTICFREQ, nFreq, 0); }
    int GetThumbLength() const { return static_cast<int>(MIRL_SEND(TBM_GETTHUMBLENGTH, 0, 0)); }
    void SetThumbLength(int nLength) { MIRL_SEND(TBM_SETTHUMBLENGTH, nLength, 0); }
    ATL::CWindow GetBuddy(BOOL bLeft = TRUE) const { return ATL::CWindow(reinterpret_cast<HWND>(MIRL_SEND(TBM_GETBUDDY, bLeft, 0))); }
    ATL::CWindow SetBuddy(HWND hWndBuddy, BOOL bLeft = TRUE) { return ATL::CWindow(reinterpret_cast<HWND>(MIRL_SEND(TBM_SETBUDDY, bLeft, hWndBuddy))); }
    HWND GetToolTips() const { return reinterpret_cast<HWND>(MIRL_SEND(TBM_GETTOOLTIPS, 0, 0)); }
    void SetToolTips(HWND hWndTT) { MIRL_SEND(TBM_SETTOOLTIPS, hWndTT, 0); }
    int SetTipSide(int nSide) { return static_cast<int>(MIRL_SEND(TBM_SETTIPSIDE, nSide, 0)); }

    // Operations
    void ClearSel(BOOL bRedraw = FALSE) { MIRL_SEND(TBM_CLEARSEL, bRedraw, 0); }
    void ClearTics(BOOL bRedraw = FALSE) { MIRL_SEND(TBM_CLEARTICS, bRedraw, 0); }
};

typedef CTrackBarCtrlT<ATL::CWindow> CTrackBarCtrl;

#undef MIRL_SEND
#undef MIRL_CONTROL_COMMON

// ---------------------------------------------------------------------------------------------
// Custom draw: chain with CHAIN_MSG_MAP_ALT(CCustomDraw<T>, 1) in a control that receives its
// notifications reflected, or CHAIN_MSG_MAP(CCustomDraw<T>) in the parent. T overrides the
// stages it draws; the others answer CDRF_DODEFAULT.

template <class T>
class CCustomDraw
{
public:
    BEGIN_MSG_MAP(CCustomDraw)
        NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
    ALT_MSG_MAP(1)
        REFLECTED_NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
    END_MSG_MAP()

    LRESULT OnCustomDraw(int idCtrl, LPNMHDR pnmh, BOOL& bHandled)
    {
        T* pT = static_cast<T*>(this);
        LPNMCUSTOMDRAW lpNMCustomDraw = reinterpret_cast<LPNMCUSTOMDRAW>(pnmh);
        switch (lpNMCustomDraw->dwDrawStage)
        {
        case CDDS_PREPAINT: return pT->OnPrePaint(idCtrl, lpNMCustomDraw);
        case CDDS_POSTPAINT: return pT->OnPostPaint(idCtrl, lpNMCustomDraw);
        case CDDS_PREERASE: return pT->OnPreErase(idCtrl, lpNMCustomDraw);
        case CDDS_POSTERASE: return pT->OnPostErase(idCtrl, lpNMCustomDraw);
        case CDDS_ITEMPREPAINT: return pT->OnItemPrePaint(idCtrl, lpNMCustomDraw);
        case CDDS_ITEMPOSTPAINT: return pT->OnItemPostPaint(idCtrl, lpNMCustomDraw);
        case CDDS_ITEMPREERASE: return pT->OnItemPreErase(idCtrl, lpNMCustomDraw);
        case CDDS_ITEMPOSTERASE: return pT->OnItemPostErase(idCtrl, lpNMCustomDraw);
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM: return pT->OnSubItemPrePaint(idCtrl, lpNMCustomDraw);
        default:
            bHandled = FALSE;
            return 0;
        }
    }

    // Overrideables
    DWORD OnPrePaint(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnPostPaint(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnPreErase(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnPostErase(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnItemPrePaint(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnItemPostPaint(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnItemPreErase(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnItemPostErase(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
    DWORD OnSubItemPrePaint(int /*idCtrl*/, LPNMCUSTOMDRAW /*lpNMCustomDraw*/) { return CDRF_DODEFAULT; }
};

} // namespace WTL

#endif // MIRL_PLATFORM_ATL_MIRLATLCTRLS_H
