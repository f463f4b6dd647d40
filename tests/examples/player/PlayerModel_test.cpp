// The player's model without a window: the built-in library, what the play list shows, the
// queue and the clock.
#include "PlayerModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

using player::Folder;
using player::PlayerModel;
using player::SortOrder;
using player::Track;

std::vector<Track> Three()
{
    return {{1, L"Night Drive", L"The Midnight Lines", L"After Hours", 245},
            {2, L"Blue Hour", L"Lena Moor", L"Small Rooms", 258},
            {3, L"\u591C\u884C", L"\u5348\u591C\u7EBF\u8DEF", L"\u591C\u73ED", 180}};
}

TEST(PlayerLibrary, HasTwoHundredTracksTheSameOnEveryRun)
{
    const std::vector<Track> first = player::MakeLibrary();
    const std::vector<Track> second = player::MakeLibrary();
    ASSERT_EQ(200u, first.size());
    std::set<int> ids;
    for (size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(static_cast<int>(i) + 1, first[i].id);
        EXPECT_EQ(first[i].title, second[i].title);
        EXPECT_GE(first[i].seconds, 150);
        EXPECT_LE(first[i].seconds, 390);
        ids.insert(first[i].id);
    }
    EXPECT_EQ(200u, ids.size());
    // Three artists of twenty have Chinese names: thirty tracks.
    const size_t chinese = std::count_if(first.begin(), first.end(), [](const Track &t) { return t.artist[0] > 0x2E80; });
    EXPECT_EQ(30u, chinese);
}

TEST(PlayerLibrary, FormatsTimesAsMinutesAndSeconds)
{
    EXPECT_EQ(L"0:00", player::FormatTime(0));
    EXPECT_EQ(L"0:09", player::FormatTime(9));
    EXPECT_EQ(L"4:05", player::FormatTime(245));
    EXPECT_EQ(L"61:01", player::FormatTime(3661));
    EXPECT_EQ(L"0:00", player::FormatTime(-5));
}

TEST(PlayerModel, SearchMatchesTitleArtistOrAlbumIgnoringCase)
{
    PlayerModel model(Three());
    EXPECT_EQ((std::vector<int>{2, 1, 3}), model.Visible()); // by title
    model.SetSearch(L"NIGHT");
    EXPECT_EQ((std::vector<int>{1}), model.Visible());
    model.SetSearch(L"rooms");
    EXPECT_EQ((std::vector<int>{2}), model.Visible());
    model.SetSearch(L"\u591C"); // 夜: title, artist and album of the third
    EXPECT_EQ((std::vector<int>{3}), model.Visible());
    model.SetSearch(L"nothing like it");
    EXPECT_TRUE(model.Visible().empty());
}

TEST(PlayerModel, SortsByEachOrderAndIgnoresOthers)
{
    PlayerModel model(Three());
    model.SetSort(SortOrder::Length);
    EXPECT_EQ((std::vector<int>{3, 1, 2}), model.Visible());
    model.SetSort(SortOrder::Artist);
    EXPECT_EQ((std::vector<int>{2, 1, 3}), model.Visible());
    model.SetSort(SortOrder::Album);
    EXPECT_EQ((std::vector<int>{1, 2, 3}), model.Visible());
    model.SetSort(static_cast<SortOrder>(9));
    EXPECT_EQ(SortOrder::Album, model.GetSort());
}

TEST(PlayerModel, FoldersFollowTheFocusedTrack)
{
    std::vector<Track> tracks = Three();
    tracks.push_back({4, L"Early Frost", L"Lena Moor", L"Coastlines", 200});
    PlayerModel model(tracks);
    model.SetFocusTrack(2);
    model.SetFolder(Folder::Artists);
    EXPECT_EQ((std::vector<int>{2, 4}), model.Visible());
    model.SetFolder(Folder::Albums);
    EXPECT_EQ((std::vector<int>{2}), model.Visible());
    // With no focus the playing track leads, else the library's first.
    model.SetFocusTrack(0);
    EXPECT_EQ(1, model.FocusTrack());
    model.Play(4);
    EXPECT_EQ(4, model.FocusTrack());
    model.SetFolder(Folder::Playlists);
    EXPECT_EQ(4u, model.Visible().size());
}

TEST(PlayerModel, ClockPlaysOnIntoTheNextTrackAndStopsAfterTheLast)
{
    PlayerModel model(Three());
    ASSERT_TRUE(model.Play(1));
    model.Tick(2500);
    EXPECT_EQ(2500, model.PositionMs());
    EXPECT_NEAR(2500.0 / 245000.0, model.Fraction(), 1e-9);
    model.Tick(245000);
    EXPECT_EQ(3, model.PlayingId()); // after "Night Drive" by title comes 夜行
    EXPECT_EQ(0, model.PositionMs());
    model.Tick(180000);
    EXPECT_FALSE(model.IsPlaying());
    EXPECT_EQ(0, model.PositionMs());
    EXPECT_FALSE(model.Play(99));
}

TEST(PlayerModel, TheQueueComesFirst)
{
    PlayerModel model(Three());
    model.Play(2);
    EXPECT_TRUE(model.Queue(3));
    EXPECT_FALSE(model.Queue(42));
    ASSERT_TRUE(model.Next());
    EXPECT_EQ(3, model.PlayingId());
    EXPECT_TRUE(model.QueuedIds().empty());
    ASSERT_TRUE(model.Previous());
    EXPECT_EQ(1, model.PlayingId());
}

TEST(PlayerModel, RemovingTheQueuedAndPlayingTrackLeavesNoTrace)
{
    PlayerModel model(Three());
    model.Play(1);
    model.Queue(1);
    model.SetFocusTrack(1);
    EXPECT_TRUE(model.Remove(1));
    EXPECT_FALSE(model.Remove(1));
    EXPECT_EQ(nullptr, model.Find(1));
    EXPECT_EQ(0, model.PlayingId());
    EXPECT_FALSE(model.IsPlaying());
    EXPECT_TRUE(model.QueuedIds().empty());
    EXPECT_EQ(2, model.FocusTrack());
    EXPECT_FALSE(model.Resume());
    EXPECT_EQ((std::vector<int>{2, 3}), model.Visible());
}

TEST(PlayerModel, SeekingAndScrubbingHoldInsideTheTrack)
{
    PlayerModel model(Three());
    model.SeekFraction(0.5); // nothing playing: nothing moves
    EXPECT_EQ(0, model.PositionMs());
    model.Play(3);
    model.SeekFraction(0.5);
    EXPECT_EQ(90000, model.PositionMs());
    model.SeekFraction(7.0);
    EXPECT_EQ(180000, model.PositionMs());
    model.SeekThousandths(250);
    EXPECT_EQ(45000, model.PositionMs());
    model.SeekThousandths(1001);
    EXPECT_EQ(180000, model.PositionMs());
    model.Scrub(-200);
    EXPECT_EQ(0, model.PositionMs());
    model.Scrub(3);
    EXPECT_EQ(3000, model.PositionMs());
}

TEST(PlayerModel, SettingsHoldInTheirRanges)
{
    PlayerModel model(Three());
    EXPECT_EQ(70, model.Volume());
    model.SetVolume(140);
    EXPECT_EQ(100, model.Volume());
    model.SetBalance(-90);
    EXPECT_EQ(-50, model.Balance());
    EXPECT_EQ(5, model.Crossfade());
    model.SetCrossfade(13);
    EXPECT_EQ(12, model.Crossfade());
    model.SetCrossfade(-1);
    EXPECT_EQ(0, model.Crossfade());
    model.AdvanceScan(2);
    model.AdvanceScan(-4);
    EXPECT_EQ(2, model.Scanned());
    model.AdvanceScan(10);
    EXPECT_EQ(3, model.Scanned());
}

} // namespace
