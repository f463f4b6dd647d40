// The edit's painting: background or veil, watermark, selection, every character at the place
// the engine's tables give it, and the border.
#include "MirlEdit.h"

#include "MirlEditGlyphRuns.h"

namespace {

const Gdiplus::ARGB kFocusedVeil = 0xC8D7D7D7;
const Gdiplus::ARGB kSolidGrey = 0xFFD7D7D7;
const Gdiplus::ARGB kWaterColor = 0xFF808080;

} // namespace

bool MirlEdit::PreparePaintPicture(HDC target, int width, int height)
{
    if (m_PaintDC != NULL && m_PaintSize.cx == width && m_PaintSize.cy == height) {
        return true;
    }
    FreePaintPicture();
    if (width <= 0 || height <= 0) {
        return false;
    }
    m_PaintDC = ::CreateCompatibleDC(target);
    m_PaintBitmap = m_PaintDC != NULL ? ::CreateCompatibleBitmap(target, width, height) : NULL;
    if (m_PaintBitmap == NULL) {
        FreePaintPicture();
        return false;
    }
    m_PaintOldBitmap = static_cast<HBITMAP>(::SelectObject(m_PaintDC, m_PaintBitmap));
    m_PaintSize.cx = width;
    m_PaintSize.cy = height;
    return true;
}

void MirlEdit::FreePaintPicture()
{
    MIRL::ReleaseOffscreen(m_PaintDC, m_PaintBitmap, m_PaintOldBitmap);
    m_PaintSize.cx = 0;
    m_PaintSize.cy = 0;
}

LRESULT MirlEdit::OnPaint(UINT, WPARAM wParam, LPARAM, BOOL &handled)
{
    if (wParam != 0) {
        handled = FALSE;
        return 0;
    }
    // Typing repaints the whole edit for every character: the off-screen picture is made once
    // for the client's size instead of at each paint. It is the same kind of bitmap as the
    // double buffer would make (compatible with the window's device context), and DoPaint
    // covers the whole of it, so the pixels are the same.
    PAINTSTRUCT paint = {};
    HDC dc = ::BeginPaint(m_hWnd, &paint);
    if (dc == NULL) {
        return 0;
    }
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    if (PreparePaintPicture(dc, client.right - client.left, client.bottom - client.top)) {
        DoPaint(WTL::CDCHandle(m_PaintDC));
        ::BitBlt(dc, paint.rcPaint.left, paint.rcPaint.top, paint.rcPaint.right - paint.rcPaint.left,
                 paint.rcPaint.bottom - paint.rcPaint.top, m_PaintDC, paint.rcPaint.left, paint.rcPaint.top, SRCCOPY);
    } else {
        WTL::CMemoryDC picture(dc, paint.rcPaint);
        DoPaint(WTL::CDCHandle(picture.m_hDC));
    }
    ::EndPaint(m_hWnd, &paint);
    return 0;
}

void MirlEdit::DoPaint(WTL::CDCHandle dc)
{
    Gdiplus::Graphics graphics(dc.m_hDC);
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    const int width = client.right - client.left;
    const int height = client.bottom - client.top;

    if (m_Transparent) {
        PaintParentBkGround(dc.m_hDC);
        // A transparent edit shows the parent through a light veil while focused.
        Gdiplus::SolidBrush veil{Gdiplus::Color(m_HasFocus ? kFocusedVeil : kSolidGrey)};
        graphics.FillRectangle(&veil, 0, 0, width, height);
    } else if (m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, width, height);
    }

    if (!m_WaterText.empty() && !m_HasFocus && m_Text.empty() && m_TxFont != NULL) {
        Gdiplus::SolidBrush water{Gdiplus::Color(kWaterColor)};
        Gdiplus::StringFormat format(0, 0);
        format.SetAlignment(Gdiplus::StringAlignmentNear);
        format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
        const Gdiplus::RectF box(static_cast<float>(client.left + 4), static_cast<float>(client.top),
                                 static_cast<float>(width - 4), static_cast<float>(height));
        graphics.DrawString(m_WaterText.c_str(), static_cast<INT>(m_WaterText.size()), m_TxFont, box, &format, &water);
    }

    m_LastTextDrawCalls = 0;
    if (m_Style & ES_MULTILINE) {
        PaintMultiLine(graphics, client);
    } else {
        PaintSingleLine(graphics, client);
    }

    if ((m_Style & WS_BORDER) && m_BorderPen != NULL) {
        graphics.DrawRectangle(m_BorderPen, 0, 0, width - 1, height - 1);
    }
    graphics.ResetTransform();
}

void MirlEdit::PaintSingleLine(Gdiplus::Graphics &graphics, const RECT &rect)
{
    if (m_Lines.empty() || m_Text.empty()) {
        return;
    }
    const MirlEditLine &line = m_Lines[0];
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    const bool showSelection = (m_HasSelection || m_Highlighting) && m_SelAnchor != m_CursorPos;
    const int lineX = Truncate(line.x);
    const int lineY = Truncate(line.y);
    const int lineHeight = Truncate(line.height);
    const int textLength = static_cast<int>(std::min(m_Text.size(), m_CharRects.size()));

    if (showSelection && m_SelBrush != NULL) {
        int x = lineX;
        int start = lineX;
        for (int i = std::max(m_StartChar, 0); i < line.count; ++i) {
            if (i == low) {
                start = x;
            }
            if (i == high) {
                break;
            }
            x += CharWidth(i);
        }
        graphics.FillRectangle(m_SelBrush, start, lineY, x - start, lineHeight);
    }

    MirlEditGlyphRuns painter(graphics, m_SingleLineFont, m_DrawEachCharacter);
    const int limit = rect.right - m_Margin;
    int x = lineX;
    const bool flags = m_HasSelection || m_Highlighting;
    auto brushFor = [&](int i) -> Gdiplus::Brush * { return flags && i >= low && i < high ? m_SelTextBrush : m_TxBrush; };
    if (m_Margin + Truncate(line.width) >= limit) {
        // The text does not fit: from the view's first character, as far as the client goes.
        for (int i = std::max(m_StartChar, 0); i < textLength; ++i) {
            if (CharWidth(i) + x > limit) {
                break;
            }
            painter.Draw(&m_Text[static_cast<size_t>(i)], static_cast<float>(x), static_cast<float>(lineY), brushFor(i));
            x += CharWidth(i);
        }
    } else {
        // It fits: the view returns to the start.
        m_StartChar = 0;
        const int last = std::min(line.first + line.count, textLength);
        for (int i = 0; i < last; ++i) {
            if (static_cast<float>(limit) >= static_cast<float>(x) + CharWidthF(i)) {
                painter.Draw(&m_Text[static_cast<size_t>(i)], static_cast<float>(x) - m_CharRects[static_cast<size_t>(i)].X,
                             static_cast<float>(lineY), brushFor(i));
            }
            x += CharWidth(i);
        }
    }
    painter.Flush();
    m_LastTextDrawCalls = painter.GetDrawCalls();
}

void MirlEdit::PaintMultiLine(Gdiplus::Graphics &graphics, const RECT &rect)
{
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    const bool flags = m_HasSelection || m_Highlighting;
    if (flags && low != high && m_SelBrush != NULL && !m_Lines.empty()) {
        const int a = FindLineForChar(low);
        const int b = FindLineForChar(high);
        if (a >= 0 && b >= 0) {
            if (a == b) {
                const MirlEditLine &line = m_Lines[static_cast<size_t>(a)];
                int x = Truncate(line.x);
                int start = x;
                for (int k = 0; k < line.count; ++k) {
                    const int i = line.first + k;
                    if (i == low) {
                        start = x;
                    }
                    if (i == high) {
                        break;
                    }
                    x += CharWidth(i);
                }
                graphics.FillRectangle(m_SelBrush, start, Truncate(line.y), x - start, Truncate(line.height));
            } else {
                for (int k = a; k <= b && static_cast<size_t>(k) < m_Lines.size(); ++k) {
                    const MirlEditLine &line = m_Lines[static_cast<size_t>(k)];
                    const int y = Truncate(line.y);
                    if (k == a) {
                        int x = Truncate(line.x);
                        for (int n = 0; n < line.count && line.first + n != low; ++n) {
                            x += CharWidth(line.first + n);
                        }
                        graphics.FillRectangle(m_SelBrush, x, y, rect.right - m_Margin - x, Truncate(line.height));
                    } else if (k == b) {
                        int sum = 0;
                        for (int n = 0; n < line.count && line.first + n != high; ++n) {
                            sum += CharWidth(line.first + n);
                        }
                        graphics.FillRectangle(m_SelBrush, m_Margin + rect.left, y, sum, Truncate(line.height));
                    } else {
                        const MirlEditLine &lineB = m_Lines[static_cast<size_t>(b)];
                        graphics.FillRectangle(m_SelBrush, m_Margin + rect.left, y,
                                               rect.right - 2 * m_Margin - rect.left, Truncate(lineB.height));
                    }
                }
            }
        }
    }
    if (m_Text.empty() || m_Lines.empty()) {
        return;
    }
    const int textLength = static_cast<int>(std::min(m_Text.size(), m_CharRects.size()));
    MirlEditGlyphRuns painter(graphics, m_TxFont, m_DrawEachCharacter);
    size_t current = 0;
    int x = Truncate(m_Lines[0].x);
    int y = Truncate(m_Lines[0].y);
    bool pastLastLine = false;
    for (int i = 0; i < textLength && !pastLastLine; ++i) {
        while (current < m_Lines.size() && i >= m_Lines[current].first + m_Lines[current].count) {
            if (current + 1 >= m_Lines.size()) {
                pastLastLine = true;
                break;
            }
            ++current;
            x = Truncate(m_Lines[current].x);
            y = Truncate(m_Lines[current].y);
        }
        if (pastLastLine) {
            break;
        }
        Gdiplus::Brush *brush = flags && i >= low && i < high ? m_SelTextBrush : m_TxBrush;
        painter.Draw(&m_Text[static_cast<size_t>(i)], static_cast<float>(x) - m_CharRects[static_cast<size_t>(i)].X,
                     static_cast<float>(y), brush);
        x += CharWidth(i);
    }
    painter.Flush();
    m_LastTextDrawCalls = painter.GetDrawCalls();
}
