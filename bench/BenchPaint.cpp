// Paint: the "Paint" template repainted from nothing into a memory picture, against copying
// the same area out of a picture that is already made.
#include "BenchFigures.h"

#include "Mirl.h"
#include "MirlImage.h"
#include "MirlViewRender.h"

#include <memory>

namespace mirlbench {

namespace {

// The application's window under the buttons: its skin image tiled over the client area with
// a GDI pattern brush (a GDI+ texture brush took half a second for this area under Wine).
class TexturedFrame : public MirlWindowImpl<TexturedFrame> {
public:
    ~TexturedFrame() override
    {
        if (m_Brush != nullptr) {
            ::DeleteObject(m_Brush);
        }
        if (m_Texture != nullptr) {
            ::DeleteObject(m_Texture);
        }
    }

    void DoPaint(HDC dc)
    {
        if (m_Brush == nullptr && m_Texture == nullptr && GetPic() != nullptr) {
            std::unique_ptr<Gdiplus::Bitmap> texture(MIRL::LoadElementBitmap(GetPic()));
            if (texture != nullptr && texture->GetHBITMAP(Gdiplus::Color(0xFF000000), &m_Texture) == Gdiplus::Ok) {
                m_Brush = ::CreatePatternBrush(m_Texture);
            }
        }
        if (m_Brush == nullptr) {
            MirlWindowImpl<TexturedFrame>::DoPaint(dc);
            return;
        }
        RECT client = {};
        ::GetClientRect(m_hWnd, &client);
        ::FillRect(dc, &client, m_Brush);
    }

private:
    HBITMAP m_Texture = nullptr;
    HBRUSH m_Brush = nullptr;
};

RECT PlaceIn(HWND child, HWND parent)
{
    RECT r = {};
    ::GetWindowRect(child, &r);
    ::MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT *>(&r), 2);
    return r;
}

DWORD PixelAt(const mirlview::Picture &picture, int x, int y)
{
    ::GdiFlush();
    return picture.bits()[static_cast<size_t>(y) * picture.width() + x] & 0xFFFFFF;
}

} // namespace

Figure MeasurePaint(int repetitions, const wchar_t *png)
{
    std::unique_ptr<TexturedFrame> frame(new TexturedFrame());
    if (frame->Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Paint") == nullptr) {
        throw BenchError("the library did not create the template Paint");
    }
    if (frame->GetChildCount() != 300) {
        throw BenchError("the template Paint made " + std::to_string(frame->GetChildCount()) + " of 300 buttons");
    }
    // A third of the buttons each normal, held down and disabled; the hover state needs the
    // pointer and the capture, which only one button can have at a time.
    std::vector<HWND> buttons;
    std::vector<RECT> places;
    for (unsigned int i = 0; i < frame->GetChildCount(); ++i) {
        HWND button = frame->GetChildByIndex(i)->m_hWnd;
        if (i % 3 == 1) {
            ::SendMessageW(button, BM_SETSTATE, TRUE, 0);
        } else if (i % 3 == 2) {
            ::EnableWindow(button, FALSE);
        }
        buttons.push_back(button);
        places.push_back(PlaceIn(button, frame->m_hWnd));
    }
    PumpMessages();
    RECT client = {};
    frame->GetClientRect(&client);
    mirlview::Picture canvas(client.right, client.bottom);
    mirlview::Picture prepared(client.right, client.bottom);
    if (!canvas.IsValid() || !prepared.IsValid()) {
        throw BenchError("no memory picture for the paint");
    }
    for (const RECT &r : places) {
        if (r.right - r.left != places[0].right - places[0].left || r.bottom - r.top != places[0].bottom - places[0].top) {
            throw BenchError("the buttons of the template Paint are not all of one size");
        }
    }

    // A full repaint starts from no cached picture, as after a resize: the frame paints into
    // the canvas, and each button into a layer of its own that is copied to its place (a
    // system button clips its painting to its client rectangle in device units, so it can't
    // paint into a context whose origin was moved), taking its background from the frame.
    mirlview::Picture layer(places[0].right - places[0].left, places[0].bottom - places[0].top);
    auto repaint = [&] {
        const double start = Milliseconds();
        frame->DeleteAllMemory();
        ::SendMessageW(frame->m_hWnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
        for (size_t i = 0; i < buttons.size(); ++i) {
            const RECT &r = places[i];
            ::SendMessageW(buttons[i], WM_PRINTCLIENT, reinterpret_cast<WPARAM>(layer.dc()), PRF_CLIENT);
            ::BitBlt(canvas.dc(), r.left, r.top, r.right - r.left, r.bottom - r.top, layer.dc(), 0, 0, SRCCOPY);
        }
        ::GdiFlush();
        return Milliseconds() - start;
    };
    auto copy = [&] {
        const double start = Milliseconds();
        ::BitBlt(canvas.dc(), 0, 0, client.right, client.bottom, prepared.dc(), 0, 0, SRCCOPY);
        for (const RECT &r : places) {
            ::BitBlt(canvas.dc(), r.left, r.top, r.right - r.left, r.bottom - r.top, prepared.dc(), r.left, r.top,
                     SRCCOPY);
        }
        ::GdiFlush();
        return Milliseconds() - start;
    };

    canvas.Fill(RGB(0, 0, 0));
    repaint();
    if (png != nullptr) {
        std::wstring error;
        if (!mirlview::SavePng(canvas, png, error)) {
            throw BenchError("could not write the picture: " + Narrow(error));
        }
    }
    // The middle of the first (normal) button is its blue face, not the brown texture.
    const DWORD face = PixelAt(canvas, (places[0].left + places[0].right) / 2, (places[0].top + places[0].bottom) / 2);
    if ((face & 0xFF) <= ((face >> 16) & 0xFF)) {
        throw BenchError("the repaint did not draw the buttons' faces");
    }
    ::BitBlt(prepared.dc(), 0, 0, client.right, client.bottom, canvas.dc(), 0, 0, SRCCOPY);
    copy();

    Samples samples;
    Repeat(repetitions, samples, repaint, copy);
    Figure figure{"paint", "ms"};
    figure.target = 15;
    Summarise(samples, figure);

    frame->DestroyWindow();
    frame.reset();
    PumpMessages();
    return figure;
}

} // namespace mirlbench
