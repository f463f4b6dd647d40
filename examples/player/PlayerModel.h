// The player's model: a built-in library of tracks, what the play list shows (folder, search,
// sort), the queue, and playback as a clock. No window and no audio: the window reads and drives
// it, and tests check it directly.
#pragma once

#include <string>
#include <vector>

namespace player {

struct Track {
    int id;
    std::wstring title;
    std::wstring artist;
    std::wstring album;
    int seconds;
};

// About two hundred tracks from a fixed seed: the same library on every run. Some artists have
// Chinese names and titles, so that a search typed in Chinese finds something.
std::vector<Track> MakeLibrary();

// "m:ss"; a negative time reads as 0:00.
std::wstring FormatTime(int seconds);

// Which tracks the folders on the side show: all, or those of the focused track's artist or album.
enum class Folder { Playlists = 0, Artists = 1, Albums = 2 };
// The sort order's values are the sort box's item ids.
enum class SortOrder { Title = 1, Artist = 2, Album = 3, Length = 4 };

class PlayerModel {
public:
    explicit PlayerModel(std::vector<Track> tracks);

    const std::vector<Track> &Tracks() const { return m_Tracks; }
    // Null for an id that isn't (or is no longer) in the library.
    const Track *Find(int id) const;

    // The play list as shown: the folder's tracks that match the search, in the sort order.
    std::vector<int> Visible() const;
    void SetSearch(const std::wstring &text) { m_Search = text; }
    const std::wstring &Search() const { return m_Search; }
    void SetFolder(Folder folder) { m_Folder = folder; }
    Folder GetFolder() const { return m_Folder; }
    // An order outside the four keeps the current one.
    void SetSort(SortOrder order);
    SortOrder GetSort() const { return m_Sort; }
    // The track that the Artists and Albums folders take their artist or album from; 0 for none,
    // when they follow the playing track, or the first track of the library.
    void SetFocusTrack(int id) { m_Focus = id; }
    int FocusTrack() const;

    // Takes the track out of the library, the queue and the player; false if it wasn't there.
    bool Remove(int id);
    // Appends to the queue; false for an unknown id.
    bool Queue(int id);
    const std::vector<int> &QueuedIds() const { return m_Queue; }

    // Playback. Play starts a track from its beginning; false for an unknown id.
    bool Play(int id);
    void Pause() { m_IsPlaying = false; }
    // Goes on with the current track; false if there is none.
    bool Resume();
    void Stop();
    // The queue's first track, else the one after the current in the play list; false at the end.
    bool Next();
    bool Previous();
    // The clock: moves the position on while playing; at the track's end the next one starts,
    // or playback stops after the last.
    void Tick(int milliseconds);
    // A position given as a fraction of the track (0 to 1, held inside) or moved by seconds.
    void SeekFraction(double fraction);
    // The seek bar's form: thousandths of the track, held from 0 to 1000; exact in milliseconds.
    void SeekThousandths(int thousandths);
    void Scrub(int seconds);
    int PlayingId() const { return m_Playing; }
    bool IsPlaying() const { return m_IsPlaying; }
    int PositionMs() const { return m_PositionMs; }
    double Fraction() const;

    // Settings: each held in its range.
    void SetVolume(int volume);
    int Volume() const { return m_Volume; }
    void SetBalance(int balance);
    int Balance() const { return m_Balance; }
    void SetCrossfade(int seconds);
    int Crossfade() const { return m_Crossfade; }

    // The simulated library scan: tracks scanned of all.
    void AdvanceScan(int tracks);
    int Scanned() const { return m_Scanned; }
    int ScanTotal() const { return static_cast<int>(m_Tracks.size()); }

    enum { kMaxVolume = 100, kMaxBalance = 50, kMaxCrossfade = 12 };

private:
    bool Matches(const Track &track, int focus) const;

    std::vector<Track> m_Tracks;
    std::wstring m_Search;
    Folder m_Folder;
    SortOrder m_Sort;
    int m_Focus;
    std::vector<int> m_Queue;
    int m_Playing;
    bool m_IsPlaying;
    int m_PositionMs;
    int m_Volume;
    int m_Balance;
    int m_Crossfade;
    int m_Scanned;
};

} // namespace player
