// MirlStatic: the library's label. A caption, an image or both, in the orders of "Layout", with
// any number of clickable links in the caption; a click on one tells the parent by WM_COMMAND.
#pragma once

#include "MirlCaptionLayout.h"
#include "MirlText.h"
#include "MirlWindow.h"

#include <string>
#include <vector>

// One link of a label: its box in client pixels, and its characters in the displayed text
// (after expansion, so each character of the link counts two).
struct MirlStaticLink {
    RECT rect;
    int nStart;
    int nEnd;
};

class MIRL_API MirlStatic : public MirlWindowImpl<MirlStatic>,
                            public CTransparentImpl<MirlStatic>,
                            public WTL::CDoubleBufferImpl<MirlStatic>,
                            public WTL::CMessageFilter {
public:
    // Its WM_SIZE does not lay children out: a child of its template is made where it says.
    enum { LaysOutChildrenOnSize = 0 };

    MirlStatic();
    MirlStatic(const MirlStatic &source);
    MirlStatic &operator=(const MirlStatic &source);
    ~MirlStatic() override;

    // Defined in the library, beside the destructor that undoes them, whether the label comes
    // from a template or from the application's own code.
    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // 0 for the first link in the text; -1 if the last press hit none, or there was none.
    int GetCurLink() const { return m_CurLink; }
    BOOL PreTranslateMessage(MSG *msg) override;
    LRESULT OnNcHitTest(UINT, WPARAM, LPARAM, BOOL &) { return HTTRANSPARENT; }

    // The links as the last layout built them.
    unsigned int GetLinkCount() const { return static_cast<unsigned int>(m_Links.size()); }
    const MirlStaticLink *GetLink(unsigned int index) const { return index < m_Links.size() ? m_Links[index] : NULL; }
    const wchar_t *GetDisplayText() const { return m_DisplayText.c_str(); }
    bool HasLinks() const { return m_HasLinks != 0; }
    Gdiplus::Bitmap *GetBitmap() const { return m_Bitmap; }
    Gdiplus::RectF GetImageRect() const { return m_ImageRect; }
    const MirlTextLayout &GetTextLayout() const { return m_TextLayout; }

    void BuildLinks();
    void BuildLinksRegion(Gdiplus::Graphics &g);
    void ClearLinks();
    bool PrepareRect(Gdiplus::Graphics &g, bool hasText, bool unused = false);
    void DoPaint(WTL::CDCHandle dc);

    BEGIN_MSG_MAP_EX(MirlStatic)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkGnd)
        MESSAGE_HANDLER(WM_SETTEXT, OnSetWindowText)
        MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_SYSCOLORCHANGE, OnSysColorChange)
        MESSAGE_HANDLER(OCM_CTLCOLORBTN, OnCtlColor)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlStatic>)
        CHAIN_MSG_MAP(MirlWindowImpl<MirlStatic>)
    END_MSG_MAP()

    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSetWindowText(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSetCursor(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSysColorChange(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCtlColor(UINT, WPARAM, LPARAM, BOOL &);

protected:
    int FindLink(POINT point) const;

    Gdiplus::Bitmap *m_Bitmap;
    bool m_LinksReady;
    MirlTextLayout m_TextLayout;
    unsigned long m_Align;
    Gdiplus::RectF m_ImageRect;
    HCURSOR m_CursorHand;
    HCURSOR m_CursorArrow;
    int m_HasLinks;
    int m_OverLink;
    int m_CurLink;
    std::wstring m_DisplayText;
    std::vector<MirlStaticLink *> m_Links;
};

namespace MIRL {
// Every "(link)...(/link)" run of a caption expanded, in text order, with each run's range in the
// result. Scanning stops at a closing mark before the next opening one; the rest stays as it is.
MIRL_API std::wstring ExpandAllLinks(const std::wstring &text, std::vector<std::pair<int, int>> &ranges);
// The text as '&'-prefix drawing shows it, and for each character of text its index there.
MIRL_API std::wstring StripHotkeyPrefixes(const std::wstring &text, std::vector<int> &shownIndex);
}
