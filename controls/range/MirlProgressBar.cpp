// The skinned progress bar: the system control keeps range and position, the class keeps a
// copy of them for painting and draws the background and the fill from the skin's images.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlRangeDraw.h"
#include "MirlRangeLogic.h"

namespace {

MIRL::MirlImageSize SizeOf(Gdiplus::Bitmap *bitmap)
{
    MIRL::MirlImageSize size = {0, 0};
    if (bitmap != NULL) {
        size.width = static_cast<int>(bitmap->GetWidth());
        size.height = static_cast<int>(bitmap->GetHeight());
    }
    return size;
}

void DrawSlice(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const MIRL::MirlSlice &slice)
{
    MIRL::DrawStretched(graphics, bitmap, slice.target, slice.source);
}

} // namespace

MirlProgressBar::MirlProgressBar()
    : m_pFillLeft(NULL), m_pFillMid(NULL), m_pFillRight(NULL), m_pBackLeft(NULL), m_pBackMid(NULL),
      m_pBackRight(NULL), m_nMin(1), m_nMax(100), m_nPos(0)
{
    m_pBackLeft = MIRL::LoadSkinBitmap(L"PGBL");
    m_pBackMid = MIRL::LoadSkinBitmap(L"PGBX");
    m_pBackRight = MIRL::LoadSkinBitmap(L"PGBR");
    m_pFillLeft = MIRL::LoadSkinBitmap(L"PGFL");
    m_pFillMid = MIRL::LoadSkinBitmap(L"PGFX");
    m_pFillRight = MIRL::LoadSkinBitmap(L"PGFR");
}

MirlProgressBar::~MirlProgressBar()
{
    delete m_pBackLeft;
    delete m_pBackMid;
    delete m_pBackRight;
    delete m_pFillLeft;
    delete m_pFillMid;
    delete m_pFillRight;
}

HWND MirlProgressBar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                             unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    // The system class must exist before the superclass is made from it.
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_PROGRESS_CLASS};
    ::InitCommonControlsEx(&init);
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlProgressBar::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlProgressBar::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    if (source == NULL || source->m_hWnd == NULL) {
        return Base::SubclassWindow(source, parent);
    }
    // The window template announces the takeover with WM_USER + 1, which the system control
    // reads as PBM_SETRANGE to 0..0: its range and position are put back afterwards.
    PBRANGE range = {0, 0};
    ::SendMessageW(source->m_hWnd, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    const LRESULT pos = ::SendMessageW(source->m_hWnd, PBM_GETPOS, 0, 0);
    const BOOL result = Base::SubclassWindow(source, parent);
    ::SendMessageW(m_hWnd, PBM_SETRANGE32, static_cast<WPARAM>(range.iLow), range.iHigh);
    ::SendMessageW(m_hWnd, PBM_SETPOS, static_cast<WPARAM>(pos), 0);
    return result;
}

DWORD MirlProgressBar::SetRange(int lower, int upper)
{
    DWORD result = static_cast<DWORD>(::SendMessageW(m_hWnd, PBM_SETRANGE, 0, MAKELPARAM(lower, upper)));
    PBRANGE range = {m_nMin, m_nMax};
    ::SendMessageW(m_hWnd, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    m_nMin = range.iLow;
    m_nMax = range.iHigh;
    return result;
}

DWORD MirlProgressBar::SetRange32(int lower, int upper)
{
    DWORD result = static_cast<DWORD>(::SendMessageW(m_hWnd, PBM_SETRANGE32, static_cast<WPARAM>(lower), upper));
    PBRANGE range = {m_nMin, m_nMax};
    ::SendMessageW(m_hWnd, PBM_GETRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
    m_nMin = range.iLow;
    m_nMax = range.iHigh;
    return result;
}

int MirlProgressBar::ReadPosBack(LRESULT former)
{
    const int pos = static_cast<int>(::SendMessageW(m_hWnd, PBM_GETPOS, 0, 0));
    if (pos != m_nPos) {
        m_nPos = pos;
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    }
    return static_cast<short>(LOWORD(former));
}

int MirlProgressBar::SetPos(int pos)
{
    return ReadPosBack(::SendMessageW(m_hWnd, PBM_SETPOS, static_cast<WPARAM>(pos), 0));
}

int MirlProgressBar::OffsetPos(int delta)
{
    return ReadPosBack(::SendMessageW(m_hWnd, PBM_DELTAPOS, static_cast<WPARAM>(delta), 0));
}

int MirlProgressBar::StepIt()
{
    return ReadPosBack(::SendMessageW(m_hWnd, PBM_STEPIT, 0, 0));
}

int MirlProgressBar::GetFillLength() const
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    return MIRL::ProgressFillLength(client.right - client.left, m_nPos, m_nMin, m_nMax);
}

LRESULT MirlProgressBar::OnSetPos(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    if (m_nPos != static_cast<int>(wParam)) {
        m_nPos = static_cast<int>(wParam);
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    }
    ::RedrawWindow(m_hWnd, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    return 0;
}

LRESULT MirlProgressBar::OnCreate(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    bHandled = FALSE;
    return 0;
}

LRESULT MirlProgressBar::OnCreateWindow(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // The system control allocates its state here: without this it answers 0 to everything.
    LRESULT result = DefWindowProc(uMsg, wParam, lParam);
    if (result == -1) {
        return -1;
    }
    Base::OnCreate(uMsg, wParam, lParam, bHandled);
    bHandled = TRUE;
    return result;
}

LRESULT MirlProgressBar::OnSizeWindow(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    Base::OnSize(uMsg, wParam, lParam, bHandled);
    bHandled = FALSE;
    return 0;
}

LRESULT MirlProgressBar::OnDropPictureOrSetPos(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (MIRL::IsDroppingMemory(m_hWnd)) {
        return Base::OnDeleteMemoryDC(uMsg, wParam, lParam, bHandled);
    }
    bHandled = FALSE;
    return 0;
}

void MirlProgressBar::DoPaint(WTL::CDCHandle dc)
{
    if (m_Transparent) {
        PaintParentBkGround(dc);
    }
    Gdiplus::Graphics graphics(dc);
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);

    MIRL::MirlSlice back[3];
    MIRL::PlanProgressBack(client, SizeOf(m_pBackLeft), SizeOf(m_pBackMid), SizeOf(m_pBackRight), back);
    DrawSlice(graphics, m_pBackLeft, back[0]);
    DrawSlice(graphics, m_pBackMid, back[1]);
    DrawSlice(graphics, m_pBackRight, back[2]);

    const int width = client.right - client.left;
    const int fill = MIRL::ProgressFillLength(width, m_nPos, m_nMin, m_nMax);
    MIRL::MirlSlice parts[3];
    const int count = MIRL::PlanProgressFill(fill, width, SizeOf(m_pFillLeft), SizeOf(m_pFillMid),
                                             SizeOf(m_pFillRight), parts);
    if (count == 3) {
        DrawSlice(graphics, m_pFillLeft, parts[0]);
        DrawSlice(graphics, m_pFillMid, parts[1]);
        DrawSlice(graphics, m_pFillRight, parts[2]);
    } else if (count == 2) {
        DrawSlice(graphics, m_pFillLeft, parts[0]);
        DrawSlice(graphics, m_pFillRight, parts[1]);
    }
}
