// The jog wheel: 48 frames over a mask, one frame forward or back per mouse message while the
// left button is held. It reports nothing and keeps no value but the frame shown.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlRangeLogic.h"

#include <cstdio>

MirlInchingSwitch::MirlInchingSwitch()
    : m_pMask(NULL), m_nFrame(0), m_nWidth(0), m_nHeight(0), m_nMaskX(0), m_nMaskY(0), m_nMaskWidth(0),
      m_nMaskHeight(0), m_nFrameX(0), m_nFrameY(0), m_nFrameWidth(0), m_nFrameHeight(0), m_nLastX(0)
{
}

MirlInchingSwitch::~MirlInchingSwitch()
{
    FreeImages();
    // Freed and cleared here, so that the window template's own release finds nothing left.
    ReleaseResource();
}

HWND MirlInchingSwitch::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                               unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID,
                               void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlInchingSwitch::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlInchingSwitch::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlInchingSwitch::FreeImages()
{
    delete m_pMask;
    m_pMask = NULL;
    for (Gdiplus::Bitmap *frame : m_vFrames) {
        delete frame;
    }
    m_vFrames.clear();
}

Gdiplus::Bitmap *MirlInchingSwitch::GetFrameBitmap(int index) const
{
    return index >= 0 && static_cast<size_t>(index) < m_vFrames.size() ? m_vFrames[index] : NULL;
}

Gdiplus::Bitmap *MirlInchingSwitch::SizingFrame() const
{
    for (Gdiplus::Bitmap *frame : m_vFrames) {
        if (frame != NULL) {
            return frame;
        }
    }
    return NULL;
}

LRESULT MirlInchingSwitch::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    LRESULT result = Base::OnCreate(uMsg, wParam, lParam, bHandled);
    FreeImages();
    m_pMask = MIRL::LoadSkinBitmap(L"InchingSwitchMask");
    // A frame the skin lacks stays empty in its place: the wheel shows the frames it has.
    m_vFrames.reserve(MIRL::kInchingFrames);
    for (int i = 0; i < MIRL::kInchingFrames; ++i) {
        wchar_t name[32];
        swprintf(name, sizeof(name) / sizeof(name[0]), L"%ls%d", L"InchingSwitch", i);
        m_vFrames.push_back(MIRL::LoadSkinBitmap(name));
    }
    m_nMaskWidth = m_pMask != NULL ? static_cast<int>(m_pMask->GetWidth()) : 0;
    m_nMaskHeight = m_pMask != NULL ? static_cast<int>(m_pMask->GetHeight()) : 0;
    Gdiplus::Bitmap *sizing = SizingFrame();
    m_nFrameWidth = sizing != NULL ? static_cast<int>(sizing->GetWidth()) : 0;
    m_nFrameHeight = sizing != NULL ? static_cast<int>(sizing->GetHeight()) : 0;
    return result;
}

LRESULT MirlInchingSwitch::OnSize(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    Base::OnSize(uMsg, wParam, lParam, bHandled);
    m_nWidth = LOWORD(lParam);
    m_nHeight = HIWORD(lParam);
    PlaceImages();
    return 0;
}

void MirlInchingSwitch::PlaceImages()
{
    m_nMaskX = MIRL::CentreOffset(m_nWidth, m_nMaskWidth);
    m_nMaskY = MIRL::CentreOffset(m_nHeight, m_nMaskHeight);
    m_nFrameX = MIRL::CentreOffset(m_nWidth, m_nFrameWidth);
    m_nFrameY = MIRL::CentreOffset(m_nHeight, m_nFrameHeight);
}

LRESULT MirlInchingSwitch::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    if (!(wParam & MK_LBUTTON)) {
        return 0;
    }
    const unsigned int x = LOWORD(lParam);
    m_nFrame = MIRL::NextInchingFrame(m_nFrame, x, m_nLastX);
    m_nLastX = static_cast<int>(x);
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    return 0;
}

LRESULT MirlInchingSwitch::OnLButtonDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    LRESULT result = DefWindowProc(uMsg, wParam, lParam);
    m_nLastX = LOWORD(lParam);
    return result;
}

void MirlInchingSwitch::DoPaint(WTL::CDCHandle dc)
{
    Gdiplus::Graphics graphics(dc);
    if (m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, m_nWidth, m_nHeight);
    }
    if (m_pMask != NULL && MIRL::LandsInside(m_nMaskX, m_nMaskY, m_nMaskWidth, m_nMaskHeight, m_nWidth, m_nHeight)) {
        graphics.DrawImage(m_pMask, m_nMaskX, m_nMaskY, m_nMaskWidth, m_nMaskHeight);
    }
    Gdiplus::Bitmap *frame = GetFrameBitmap(m_nFrame);
    if (frame != NULL) {
        const int width = static_cast<int>(frame->GetWidth());
        const int height = static_cast<int>(frame->GetHeight());
        if (MIRL::LandsInside(m_nFrameX, m_nFrameY, width, height, m_nWidth, m_nHeight)) {
            graphics.DrawImage(frame, m_nFrameX, m_nFrameY, width, height);
        }
    }
}
