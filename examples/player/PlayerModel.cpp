#include "PlayerModel.h"

#include <algorithm>
#include <cwctype>

namespace player {

namespace {

const wchar_t *const kArtists[] = {
    L"The Midnight Lines", L"Aurora Fields", L"Harbour Town", L"The Fieldnotes", L"Lena Moor",
    L"Copper Kites", L"Northbound", L"Mira Vale", L"The Slow Hours", L"Paper Lanterns",
    L"Juniper Street", L"Oskar Brandt", L"Silver Pines", L"The Long Weekend", L"Tilde",
    L"Rosa Calder", L"Blue Meridian",
    L"\u5348\u591C\u7EBF\u8DEF",  // 午夜线路
    L"\u6781\u5149\u539F\u91CE",  // 极光原野
    L"\u6E2F\u6E7E\u5C0F\u9547"}; // 港湾小镇
const int kLatinArtists = 17;

const wchar_t *const kFirst[] = {L"Night", L"Northern", L"Paper", L"Slow", L"Glass", L"Early", L"Signal", L"Blue",
                                 L"Tin", L"Long", L"Static", L"Quiet", L"Open", L"Last", L"Morning", L"Silver"};
const wchar_t *const kSecond[] = {L"Drive", L"Lights", L"Boats", L"River", L"Houses", L"Frost", L"Fires", L"Hour",
                                  L"Roofs", L"Way Home", L"Bloom", L"Engine", L"Water", L"Tram", L"Light", L"Lines"};
const wchar_t *const kChineseFirst[] = {L"\u591C", L"\u5317", L"\u7EB8", L"\u6162", L"\u84DD", L"\u65E9", L"\u9759",
                                        L"\u957F"}; // 夜 北 纸 慢 蓝 早 静 长
const wchar_t *const kChineseSecond[] = {L"\u884C", L"\u6CB3", L"\u8239", L"\u5149", L"\u96E8", L"\u971C", L"\u706F",
                                         L"\u8DEF"}; // 行 河 船 光 雨 霜 灯 路
const wchar_t *const kAlbumWords[] = {L"Harbour Songs", L"Field Recordings", L"After Hours", L"Weather Report",
                                      L"Small Rooms", L"Coastlines", L"Night Shift", L"Open Country"};
const wchar_t *const kChineseAlbums[] = {L"\u6D77\u6E2F\u4E4B\u6B4C", L"\u591C\u73ED", L"\u6674\u96E8\u8868"};
// 海港之歌 夜班 晴雨表

const int kAlbumsPerArtist = 2;
const int kTracksPerAlbum = 5;

// A small generator of our own, so that the library is the same with every compiler.
class Sequence {
public:
    explicit Sequence(unsigned int seed) : m_State(seed) {}
    unsigned int Next(unsigned int bound)
    {
        m_State = m_State * 1103515245u + 12345u;
        return (m_State >> 16) % bound;
    }

private:
    unsigned int m_State;
};

std::wstring Lower(const std::wstring &text)
{
    std::wstring lower(text);
    for (wchar_t &c : lower) {
        c = static_cast<wchar_t>(std::towlower(c));
    }
    return lower;
}

bool Contains(const std::wstring &text, const std::wstring &lowerNeedle)
{
    return Lower(text).find(lowerNeedle) != std::wstring::npos;
}

} // namespace

std::vector<Track> MakeLibrary()
{
    std::vector<Track> tracks;
    Sequence sequence(2026);
    int id = 1;
    const int artists = static_cast<int>(sizeof(kArtists) / sizeof(kArtists[0]));
    for (int a = 0; a < artists; ++a) {
        const bool chinese = a >= kLatinArtists;
        for (int b = 0; b < kAlbumsPerArtist; ++b) {
            const std::wstring album =
                chinese ? std::wstring(kChineseAlbums[(a + b) % 3]) : std::wstring(kAlbumWords[(a * 2 + b) % 8]);
            for (int t = 0; t < kTracksPerAlbum; ++t) {
                Track track;
                track.id = id++;
                if (chinese) {
                    track.title = std::wstring(kChineseFirst[sequence.Next(8)]) + kChineseSecond[sequence.Next(8)];
                } else {
                    track.title = std::wstring(kFirst[sequence.Next(16)]) + L" " + kSecond[sequence.Next(16)];
                }
                track.artist = kArtists[a];
                track.album = album;
                track.seconds = 150 + static_cast<int>(sequence.Next(241));
                tracks.push_back(track);
            }
        }
    }
    return tracks;
}

std::wstring FormatTime(int seconds)
{
    if (seconds < 0) {
        seconds = 0;
    }
    const int minutes = seconds / 60;
    const int rest = seconds % 60;
    std::wstring result = std::to_wstring(minutes) + L":";
    if (rest < 10) {
        result += L"0";
    }
    return result + std::to_wstring(rest);
}

PlayerModel::PlayerModel(std::vector<Track> tracks)
    : m_Tracks(std::move(tracks)), m_Folder(Folder::Playlists), m_Sort(SortOrder::Title), m_Focus(0), m_Playing(0),
      m_IsPlaying(false), m_PositionMs(0), m_Volume(70), m_Balance(0), m_Crossfade(5), m_Scanned(0)
{
}

const Track *PlayerModel::Find(int id) const
{
    for (const Track &track : m_Tracks) {
        if (track.id == id) {
            return &track;
        }
    }
    return nullptr;
}

int PlayerModel::FocusTrack() const
{
    if (Find(m_Focus) != nullptr) {
        return m_Focus;
    }
    if (Find(m_Playing) != nullptr) {
        return m_Playing;
    }
    return m_Tracks.empty() ? 0 : m_Tracks.front().id;
}

bool PlayerModel::Matches(const Track &track, int focus) const
{
    const Track *focused = Find(focus);
    if (m_Folder == Folder::Artists && focused != nullptr && track.artist != focused->artist) {
        return false;
    }
    if (m_Folder == Folder::Albums && focused != nullptr &&
        (track.album != focused->album || track.artist != focused->artist)) {
        return false;
    }
    if (m_Search.empty()) {
        return true;
    }
    const std::wstring needle = Lower(m_Search);
    return Contains(track.title, needle) || Contains(track.artist, needle) || Contains(track.album, needle);
}

std::vector<int> PlayerModel::Visible() const
{
    const int focus = FocusTrack();
    std::vector<const Track *> shown;
    for (const Track &track : m_Tracks) {
        if (Matches(track, focus)) {
            shown.push_back(&track);
        }
    }
    const SortOrder order = m_Sort;
    // Ties keep the library's order, so that the list never shuffles between two equal rows.
    std::stable_sort(shown.begin(), shown.end(), [order](const Track *a, const Track *b) {
        switch (order) {
        case SortOrder::Artist: return a->artist < b->artist;
        case SortOrder::Album: return a->album < b->album;
        case SortOrder::Length: return a->seconds < b->seconds;
        case SortOrder::Title:
        default: return a->title < b->title;
        }
    });
    std::vector<int> ids;
    ids.reserve(shown.size());
    for (const Track *track : shown) {
        ids.push_back(track->id);
    }
    return ids;
}

void PlayerModel::SetSort(SortOrder order)
{
    if (order >= SortOrder::Title && order <= SortOrder::Length) {
        m_Sort = order;
    }
}

bool PlayerModel::Remove(int id)
{
    auto found = std::find_if(m_Tracks.begin(), m_Tracks.end(), [id](const Track &t) { return t.id == id; });
    if (found == m_Tracks.end()) {
        return false;
    }
    m_Tracks.erase(found);
    m_Queue.erase(std::remove(m_Queue.begin(), m_Queue.end(), id), m_Queue.end());
    if (m_Playing == id) {
        Stop();
        m_Playing = 0;
    }
    if (m_Focus == id) {
        m_Focus = 0;
    }
    m_Scanned = std::min(m_Scanned, ScanTotal());
    return true;
}

bool PlayerModel::Queue(int id)
{
    if (Find(id) == nullptr) {
        return false;
    }
    m_Queue.push_back(id);
    return true;
}

bool PlayerModel::Play(int id)
{
    if (Find(id) == nullptr) {
        return false;
    }
    m_Playing = id;
    m_PositionMs = 0;
    m_IsPlaying = true;
    return true;
}

bool PlayerModel::Resume()
{
    if (Find(m_Playing) == nullptr) {
        return false;
    }
    m_IsPlaying = true;
    return true;
}

void PlayerModel::Stop()
{
    m_IsPlaying = false;
    m_PositionMs = 0;
}

bool PlayerModel::Next()
{
    while (!m_Queue.empty()) {
        const int queued = m_Queue.front();
        m_Queue.erase(m_Queue.begin());
        if (Play(queued)) {
            return true;
        }
    }
    const std::vector<int> shown = Visible();
    auto at = std::find(shown.begin(), shown.end(), m_Playing);
    if (at == shown.end()) {
        return !shown.empty() && Play(shown.front());
    }
    if (++at == shown.end()) {
        return false;
    }
    return Play(*at);
}

bool PlayerModel::Previous()
{
    const std::vector<int> shown = Visible();
    auto at = std::find(shown.begin(), shown.end(), m_Playing);
    if (at == shown.end() || at == shown.begin()) {
        return false;
    }
    return Play(*(at - 1));
}

void PlayerModel::Tick(int milliseconds)
{
    const Track *track = Find(m_Playing);
    if (!m_IsPlaying || track == nullptr || milliseconds <= 0) {
        return;
    }
    m_PositionMs += milliseconds;
    if (m_PositionMs >= track->seconds * 1000) {
        if (!Next()) {
            Stop();
        }
    }
}

void PlayerModel::SeekFraction(double fraction)
{
    const Track *track = Find(m_Playing);
    if (track == nullptr) {
        return;
    }
    fraction = std::max(0.0, std::min(1.0, fraction));
    m_PositionMs = static_cast<int>(fraction * track->seconds * 1000.0);
}

void PlayerModel::SeekThousandths(int thousandths)
{
    const Track *track = Find(m_Playing);
    if (track == nullptr) {
        return;
    }
    m_PositionMs = track->seconds * std::max(0, std::min(1000, thousandths));
}

void PlayerModel::Scrub(int seconds)
{
    const Track *track = Find(m_Playing);
    if (track == nullptr) {
        return;
    }
    const long long position = static_cast<long long>(m_PositionMs) + seconds * 1000LL;
    m_PositionMs = static_cast<int>(std::max(0LL, std::min(position, track->seconds * 1000LL)));
}

double PlayerModel::Fraction() const
{
    const Track *track = Find(m_Playing);
    if (track == nullptr || track->seconds <= 0) {
        return 0.0;
    }
    return static_cast<double>(m_PositionMs) / (track->seconds * 1000.0);
}

void PlayerModel::SetVolume(int volume)
{
    m_Volume = std::max(0, std::min(static_cast<int>(kMaxVolume), volume));
}

void PlayerModel::SetBalance(int balance)
{
    m_Balance = std::max(-static_cast<int>(kMaxBalance), std::min(static_cast<int>(kMaxBalance), balance));
}

void PlayerModel::SetCrossfade(int seconds)
{
    m_Crossfade = std::max(0, std::min(static_cast<int>(kMaxCrossfade), seconds));
}

void PlayerModel::AdvanceScan(int tracks)
{
    if (tracks > 0) {
        m_Scanned = std::min(ScanTotal(), m_Scanned + tracks);
    }
}

} // namespace player
