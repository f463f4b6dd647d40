// Message maps: handler entries, bHandled, chaining, alternate maps, exceptions in handlers.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

typedef ATL::CWinTraits<WS_POPUP, 0> PopupTraits;

// A map held by a member object.
struct MemberMap {
    int calls = 0;
    BEGIN_MSG_MAP(MemberMap)
        MESSAGE_HANDLER(WM_APP + 21, OnMember)
    ALT_MSG_MAP(1)
        MESSAGE_HANDLER(WM_APP + 22, OnMemberAlt)
    END_MSG_MAP()
    LRESULT OnMember(UINT, WPARAM, LPARAM, BOOL &) { ++calls; return 21; }
    LRESULT OnMemberAlt(UINT, WPARAM, LPARAM, BOOL &) { ++calls; return 22; }
};

// A map of a base class.
struct BaseMap {
    BEGIN_MSG_MAP(BaseMap)
        MESSAGE_HANDLER(WM_APP + 20, OnBase)
        MESSAGE_HANDLER(WM_APP + 1, OnBase) // never reached: the derived map answers first
    ALT_MSG_MAP(2)
        MESSAGE_HANDLER(WM_APP + 23, OnBaseAlt)
    END_MSG_MAP()
    LRESULT OnBase(UINT uMsg, WPARAM, LPARAM, BOOL &) { return static_cast<LRESULT>(uMsg - WM_APP) + 1000; }
    LRESULT OnBaseAlt(UINT, WPARAM, LPARAM, BOOL &) { return 23; }
};

struct Call {
    WORD code;
    WORD id;
    HWND control;
};

class MapWindow : public ATL::CWindowImpl<MapWindow, ATL::CWindow, PopupTraits>, public BaseMap {
public:
    DECLARE_WND_CLASS(L"AtlTestMapWindow")

    MemberMap m_member;
    Call m_lastCommand = {};
    int m_lastNotifyId = -1;
    bool m_throwOnTextLength = false;
    int m_declined = 0;

    BEGIN_MSG_MAP(MapWindow)
        MESSAGE_HANDLER(WM_APP + 1, OnFirst)
        MESSAGE_HANDLER(WM_APP + 2, OnDecline)
        MESSAGE_HANDLER(WM_APP + 2, OnSecond)
        MESSAGE_HANDLER(WM_GETTEXTLENGTH, OnTextLength)
        MESSAGE_RANGE_HANDLER(WM_APP + 10, WM_APP + 12, OnRange)
        COMMAND_HANDLER(100, BN_CLICKED, OnCommandIdAndCode)
        COMMAND_ID_HANDLER(100, OnCommandId)
        COMMAND_CODE_HANDLER(EN_CHANGE, OnCommandCode)
        COMMAND_RANGE_HANDLER(300, 310, OnCommandRange)
        NOTIFY_HANDLER(200, NM_CLICK, OnNotifyIdAndCode)
        NOTIFY_ID_HANDLER(200, OnNotifyId)
        NOTIFY_CODE_HANDLER(NM_RETURN, OnNotifyCode)
        NOTIFY_RANGE_HANDLER(400, 410, OnNotifyRange)
        CHAIN_MSG_MAP(BaseMap)
        CHAIN_MSG_MAP_MEMBER(m_member)
        CHAIN_MSG_MAP_ALT_MEMBER(m_member, 1)
        CHAIN_MSG_MAP_ALT(BaseMap, 2)
    ALT_MSG_MAP(5)
        MESSAGE_HANDLER(WM_APP + 1, OnAlternate)
    END_MSG_MAP()

    LRESULT OnFirst(UINT, WPARAM, LPARAM, BOOL &) { return 11; }
    LRESULT OnDecline(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ++m_declined;
        bHandled = FALSE;
        return 99;
    }
    LRESULT OnSecond(UINT, WPARAM, LPARAM, BOOL &) { return 22; }
    LRESULT OnTextLength(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        if (m_throwOnTextLength)
            throw std::runtime_error("handler failed");
        ++m_declined;
        bHandled = FALSE;
        return 99;
    }
    LRESULT OnRange(UINT uMsg, WPARAM, LPARAM, BOOL &) { return static_cast<LRESULT>(uMsg - WM_APP); }
    LRESULT OnCommandIdAndCode(WORD code, WORD id, HWND control, BOOL &)
    {
        m_lastCommand = {code, id, control};
        return 1001;
    }
    LRESULT OnCommandId(WORD code, WORD id, HWND control, BOOL &)
    {
        m_lastCommand = {code, id, control};
        return 1002;
    }
    LRESULT OnCommandCode(WORD code, WORD id, HWND control, BOOL &)
    {
        m_lastCommand = {code, id, control};
        return 1003;
    }
    LRESULT OnCommandRange(WORD, WORD id, HWND, BOOL &) { return 3000 + id; }
    LRESULT OnNotifyIdAndCode(int id, LPNMHDR, BOOL &)
    {
        m_lastNotifyId = id;
        return 2001;
    }
    LRESULT OnNotifyId(int id, LPNMHDR, BOOL &)
    {
        m_lastNotifyId = id;
        return 2002;
    }
    LRESULT OnNotifyCode(int id, LPNMHDR, BOOL &)
    {
        m_lastNotifyId = id;
        return 2003;
    }
    LRESULT OnNotifyRange(int, LPNMHDR pnmh, BOOL &) { return 4000 + static_cast<LRESULT>(pnmh->idFrom); }
    LRESULT OnAlternate(UINT, WPARAM, LPARAM, BOOL &) { return 55; }
};

class MsgMapTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        WTL::CRect rc(0, 0, 100, 60);
        ASSERT_NE(nullptr, w.Create(nullptr, rc, L"abc"));
    }
    void TearDown() override
    {
        if (w.IsWindow())
            w.DestroyWindow();
    }
    LRESULT Notify(UINT_PTR id, UINT code)
    {
        NMHDR nm = {w.m_hWnd, id, code};
        return w.SendMessage(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&nm));
    }
    MapWindow w;
};

TEST_F(MsgMapTest, HandlerAnswerIsTheResult)
{
    EXPECT_EQ(11, w.SendMessage(WM_APP + 1));
}

TEST_F(MsgMapTest, DeclinedMessageGoesToTheNextEntry)
{
    EXPECT_EQ(22, w.SendMessage(WM_APP + 2));
    EXPECT_EQ(1, w.m_declined);
}

TEST_F(MsgMapTest, DeclinedMessageWithNoOtherEntryGetsDefaultProcessing)
{
    // DefWindowProc answers the length of the title "abc", not the handler's 99.
    EXPECT_EQ(3, w.SendMessage(WM_GETTEXTLENGTH));
    EXPECT_EQ(1, w.m_declined);
}

TEST_F(MsgMapTest, ExceptionInAHandlerEndsInDefaultProcessing)
{
    w.m_throwOnTextLength = true;
    EXPECT_EQ(3, w.SendMessage(WM_GETTEXTLENGTH));
    EXPECT_EQ(0, w.m_declined);
    EXPECT_EQ(11, w.SendMessage(WM_APP + 1)); // the window goes on working
}

TEST_F(MsgMapTest, RangeHandlerTakesBothEnds)
{
    EXPECT_EQ(10, w.SendMessage(WM_APP + 10));
    EXPECT_EQ(11, w.SendMessage(WM_APP + 11));
    EXPECT_EQ(12, w.SendMessage(WM_APP + 12));
    EXPECT_EQ(0, w.SendMessage(WM_APP + 13)); // DefWindowProc
    EXPECT_EQ(0, w.SendMessage(WM_APP + 9));
}

TEST_F(MsgMapTest, CommandHandlersMatchIdAndCode)
{
    HWND control = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x1230));
    EXPECT_EQ(1001, w.SendMessage(WM_COMMAND, MAKEWPARAM(100, BN_CLICKED), reinterpret_cast<LPARAM>(control)));
    EXPECT_EQ(BN_CLICKED, w.m_lastCommand.code);
    EXPECT_EQ(100, w.m_lastCommand.id);
    EXPECT_EQ(control, w.m_lastCommand.control);

    EXPECT_EQ(1002, w.SendMessage(WM_COMMAND, MAKEWPARAM(100, 5), 0));
    EXPECT_EQ(5, w.m_lastCommand.code);

    EXPECT_EQ(1003, w.SendMessage(WM_COMMAND, MAKEWPARAM(101, EN_CHANGE), 0));
    EXPECT_EQ(101, w.m_lastCommand.id);

    EXPECT_EQ(3300, w.SendMessage(WM_COMMAND, MAKEWPARAM(300, 9), 0));
    EXPECT_EQ(3310, w.SendMessage(WM_COMMAND, MAKEWPARAM(310, 9), 0));

    w.m_lastCommand = {};
    EXPECT_EQ(0, w.SendMessage(WM_COMMAND, MAKEWPARAM(101, 7), 0)); // no entry: DefWindowProc
    EXPECT_EQ(0, w.m_lastCommand.id);
}

TEST_F(MsgMapTest, NotifyHandlersMatchIdAndCode)
{
    EXPECT_EQ(2001, Notify(200, NM_CLICK));
    EXPECT_EQ(200, w.m_lastNotifyId);
    EXPECT_EQ(2002, Notify(200, NM_DBLCLK));
    EXPECT_EQ(2003, Notify(300, NM_RETURN));
    EXPECT_EQ(300, w.m_lastNotifyId);
    EXPECT_EQ(4400, Notify(400, NM_DBLCLK));
    EXPECT_EQ(4410, Notify(410, NM_DBLCLK));
    w.m_lastNotifyId = -1;
    EXPECT_EQ(0, Notify(300, NM_DBLCLK));
    EXPECT_EQ(-1, w.m_lastNotifyId);
}

TEST_F(MsgMapTest, ChainedMapsAnswerWhatTheOwnMapLeaves)
{
    EXPECT_EQ(1020, w.SendMessage(WM_APP + 20)); // base class
    EXPECT_EQ(21, w.SendMessage(WM_APP + 21));   // member
    EXPECT_EQ(22, w.SendMessage(WM_APP + 22));   // member's alternate map
    EXPECT_EQ(23, w.SendMessage(WM_APP + 23));   // base's alternate map
    EXPECT_EQ(2, w.m_member.calls);
    EXPECT_EQ(11, w.SendMessage(WM_APP + 1));    // own entry first
}

TEST_F(MsgMapTest, AlternateMapIsChosenByIdentifier)
{
    LRESULT result = -1;
    EXPECT_TRUE(w.ProcessWindowMessage(w, WM_APP + 1, 0, 0, result, 5));
    EXPECT_EQ(55, result);
    result = -1;
    EXPECT_FALSE(w.ProcessWindowMessage(w, WM_APP + 2, 0, 0, result, 5));
    EXPECT_EQ(-1, result);
}

TEST_F(MsgMapTest, UnknownMapIdentifierHandlesNothing)
{
    LRESULT result = -1;
    EXPECT_FALSE(w.ProcessWindowMessage(w, WM_APP + 1, 0, 0, result, 7));
    EXPECT_EQ(-1, result);
}

TEST_F(MsgMapTest, CurrentMessageIsSetOnlyDuringAMessage)
{
    EXPECT_EQ(nullptr, w.GetCurrentMessage());
}

// BEGIN_MSG_MAP_EX: the handled mark belongs to one message and is restored afterwards.
class ExWindow : public ATL::CWindowImpl<ExWindow, ATL::CWindow, PopupTraits> {
public:
    ExWindow() { m_bMsgHandled = 7; }
    BOOL m_seenInside = -1;
    BOOL m_seenAfterNested = -1;

    BEGIN_MSG_MAP_EX(ExWindow)
        MESSAGE_HANDLER(WM_APP + 1, OnOuter)
        MESSAGE_HANDLER(WM_APP + 2, OnInner)
    END_MSG_MAP()

    LRESULT OnOuter(UINT, WPARAM, LPARAM, BOOL &)
    {
        SetMsgHandled(TRUE);
        SendMessage(WM_APP + 2);
        m_seenAfterNested = IsMsgHandled();
        return 1;
    }
    LRESULT OnInner(UINT, WPARAM, LPARAM, BOOL &)
    {
        m_seenInside = IsMsgHandled();
        SetMsgHandled(FALSE);
        return 2;
    }
};

TEST(MsgMapExTest, HandledMarkIsSavedAndRestoredAroundEachMessage)
{
    ExWindow w;
    ASSERT_NE(nullptr, w.Create(nullptr));
    EXPECT_EQ(1, w.SendMessage(WM_APP + 1));
    EXPECT_EQ(TRUE, w.m_seenInside);          // the outer message's mark, as it stood
    EXPECT_EQ(TRUE, w.m_seenAfterNested);     // the nested message didn't leave its FALSE behind
    EXPECT_EQ(7, w.m_bMsgHandled);            // and the mark from before is back
    w.DestroyWindow();
}

} // namespace
