// MirlAtl.h - the ATL/WTL subset the library builds on, in one include.
//
// MirlAtlBase.h   system headers, ATLASSERT, module instance and lock
// MirlAtlThunk.h  the per-window procedure thunk
// MirlAtlMisc.h   WTL::CSize, CPoint, CRect
// MirlAtlWin.h    ATL::CWindow, CWinTraits, CWindowImplBaseT, CWindowImpl, message maps, reflection
// MirlAtlGdi.h    WTL::CDCT and the DC helpers, CMemoryDC, GDI object wrappers
// MirlAtlFrame.h  WTL::CDoubleBufferImpl, CMessageFilter
// MirlAtlCtrls.h  WTL::CStaticT, CButtonT, CEditT, CProgressBarCtrlT, CUpDownCtrlT, CTrackBarCtrlT, CCustomDraw

#ifndef MIRL_PLATFORM_ATL_MIRLATL_H
#define MIRL_PLATFORM_ATL_MIRLATL_H

#include "MirlAtlBase.h"
#include "MirlAtlThunk.h"
#include "MirlAtlMisc.h"
#include "MirlAtlWin.h"
#include "MirlAtlGdi.h"
#include "MirlAtlFrame.h"
#include "MirlAtlCtrls.h"

#endif // MIRL_PLATFORM_ATL_MIRLATL_H
