// The skinned track bar: the system control does everything but draw its channel and thumb,
// which it asks its parent for by custom draw; the parent reflects the request back here.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlRangeDraw.h"
#include "MirlRangeLogic.h"

MirlTrackBar::MirlTrackBar() : m_pThumb(NULL), m_pThumbGlow(NULL), m_pChannel(NULL)
{
}

MirlTrackBar::~MirlTrackBar()
{
    delete m_pThumb;
    delete m_pThumbGlow;
    delete m_pChannel;
}

HWND MirlTrackBar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    // The system class must exist before the superclass is made from it.
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&init);
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlTrackBar::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlTrackBar::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

LRESULT MirlTrackBar::OnCreate(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    LoadingSkinResource();
    if (!m_ToolTip.empty()) {
        SetTooltipText(m_ToolTip.c_str(), true);
    }
    delete m_pThumb;
    delete m_pThumbGlow;
    delete m_pChannel;
    m_pThumb = MIRL::LoadSkinBitmap(L"TrackBarThumb");
    // Loaded as the skin's contract asks, never drawn.
    m_pThumbGlow = MIRL::LoadSkinBitmap(L"TrackBarThumbGlow");
    m_pChannel = MIRL::LoadSkinBitmap(L"ProgressFill");
    // The system control sets itself up in the same message.
    bHandled = FALSE;
    return 0;
}

DWORD MirlTrackBar::OnPrePaint(int, LPNMCUSTOMDRAW)
{
    return CDRF_NOTIFYITEMDRAW;
}

DWORD MirlTrackBar::OnItemPrePaint(int, LPNMCUSTOMDRAW draw)
{
    switch (draw->dwItemSpec) {
    case TBCD_THUMB:
        if (m_pThumb == NULL) {
            // A skin without a thumb shows the system's.
            return CDRF_DODEFAULT;
        }
        DrawThumb(*draw);
        return CDRF_SKIPDEFAULT;
    case TBCD_CHANNEL:
        DrawChannel(*draw);
        return CDRF_SKIPDEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

// The former thumb needs no invalidation of its own: every paint of the channel copies the
// parent's picture over the whole window first. Invalidating from inside the paint would ask
// for another paint after every paint, for ever.
void MirlTrackBar::DrawThumb(const NMCUSTOMDRAW &draw)
{
    const int width = static_cast<int>(m_pThumb->GetWidth());
    const int height = static_cast<int>(m_pThumb->GetHeight());
    const int x = draw.rc.left;
    const int y = MIRL::TrackThumbTop(draw.rc, height);
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    // A thumb taller than the system's rectangle lands far outside the window: nothing shows.
    if (!MIRL::LandsInside(x, y, width, height, client.right, client.bottom)) {
        return;
    }
    Gdiplus::Graphics graphics(draw.hdc);
    graphics.DrawImage(m_pThumb, Gdiplus::Rect(x, y, width, height), 0, 0, width, height, Gdiplus::UnitPixel);
}

void MirlTrackBar::DrawChannel(const NMCUSTOMDRAW &draw)
{
    MirlWindowBase *source = m_Parent != NULL ? m_Parent : m_PackageParent;
    if (source != NULL && source->m_hWnd != NULL) {
        MirlTransparentDC *picture = source->GetMemoryDC(false);
        RECT window = {};
        ::GetWindowRect(m_hWnd, &window);
        POINT corner = {window.left, window.top};
        ::ScreenToClient(::GetParent(m_hWnd), &corner);
        if (picture != NULL && picture->m_hDC != NULL) {
            ::BitBlt(draw.hdc, 0, 0, window.right - window.left, window.bottom - window.top, picture->m_hDC, corner.x,
                     corner.y, SRCCOPY);
        }
    }
    if (m_pChannel == NULL) {
        return;
    }
    const Gdiplus::Rect band =
        MIRL::TrackChannelBand(static_cast<int>(m_pChannel->GetWidth()), static_cast<int>(m_pChannel->GetHeight()));
    const Gdiplus::Rect target(draw.rc.left, draw.rc.top, draw.rc.right - draw.rc.left, draw.rc.bottom - draw.rc.top);
    Gdiplus::Graphics graphics(draw.hdc);
    MIRL::DrawStretched(graphics, m_pChannel, target, band);
}
