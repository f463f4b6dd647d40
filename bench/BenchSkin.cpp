// Skin load and lookup: the library against the bare parser, and a large skin against a small.
#include "BenchFigures.h"

#include "Mirl.h"

#include <unzip.h>

#include <cwchar>
#include <random>
#include <utility>

namespace mirlbench {

namespace {

// Element counts of the two lookup skins, as GenerateSkins.cmake writes them: texts Txt00000..
// in 1033, the first ones again in 2052, templates Win00000.., images Img00000...
struct LookupSkin {
    const wchar_t *name;
    int english;
    int chinese;
    int templates;
    int images;
};

const LookupSkin kLarge = {L"bench_large", 12000, 8000, 2000, 500};
const LookupSkin kSmall = {L"bench_small", 48, 32, 10, 10};

const wchar_t *const kDocuments[] = {L"Skin.xml", L"Texts1.xml", L"Texts2.xml", L"Chinese.xml", L"Windows.xml",
                                     L"Images.xml"};

const CLSID kDomDocument30 = {0xf5078f32, 0xc551, 0x11d3, {0x89, 0xb9, 0x00, 0x00, 0xf8, 0x1f, 0xe2, 0x21}};

// One entry of the archive into a movable block, as any reader of a ZIP would; null if absent.
HGLOBAL ExtractEntry(unzFile zip, const std::wstring &name)
{
    if (unzLocateFile(zip, Narrow(name).c_str(), 2) != UNZ_OK) {
        return nullptr;
    }
    unz_file_info info = {};
    if (unzGetCurrentFileInfo(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
        unzOpenCurrentFile(zip) != UNZ_OK) {
        return nullptr;
    }
    HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, info.uncompressed_size > 0 ? info.uncompressed_size : 1);
    void *data = block != nullptr ? ::GlobalLock(block) : nullptr;
    const int read = data != nullptr ? unzReadCurrentFile(zip, data, static_cast<unsigned>(info.uncompressed_size)) : -1;
    if (data != nullptr) {
        ::GlobalUnlock(block);
    }
    unzCloseCurrentFile(zip);
    if (read != static_cast<int>(info.uncompressed_size)) {
        if (block != nullptr) {
            ::GlobalFree(block);
        }
        return nullptr;
    }
    return block;
}

// The baseline of the skin load: every document of the skin out of the archive and into a
// DOMDocument30 of its own, then all released. Throws if one doesn't parse.
void LoadDocumentsBare(const std::wstring &package)
{
    unzFile zip = unzOpen(Narrow(package).c_str());
    if (zip == nullptr) {
        throw BenchError("minizip could not open " + Narrow(package));
    }
    std::vector<IXMLDOMDocumentPtr> documents;
    bool parsed = true;
    for (const wchar_t *name : kDocuments) {
        HGLOBAL block = ExtractEntry(zip, name);
        IStream *stream = nullptr;
        if (block == nullptr || FAILED(::CreateStreamOnHGlobal(block, TRUE, &stream))) {
            if (block != nullptr) {
                ::GlobalFree(block);
            }
            parsed = false;
            break;
        }
        IStreamPtr owned(stream, false);
        IXMLDOMDocumentPtr document;
        if (FAILED(::CoCreateInstance(kDomDocument30, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument),
                                      reinterpret_cast<void **>(&document)))) {
            parsed = false;
            break;
        }
        document->put_async(VARIANT_FALSE);
        VARIANT source;
        ::VariantInit(&source);
        V_VT(&source) = VT_UNKNOWN;
        V_UNKNOWN(&source) = owned.GetInterfacePtr();
        VARIANT_BOOL ok = VARIANT_FALSE;
        if (FAILED(document->load(source, &ok)) || ok != VARIANT_TRUE) {
            parsed = false;
            break;
        }
        documents.push_back(document);
    }
    unzClose(zip);
    if (!parsed) {
        throw BenchError("a document of " + Narrow(package) + " did not load into DOMDocument30");
    }
}

void CheckCount(MirlUI *ui, unsigned long type, unsigned int language, int expected, const char *what)
{
    const unsigned int count = ui->GetUiElementCount(type, language);
    if (count != static_cast<unsigned int>(expected)) {
        throw BenchError(std::string("the large skin has ") + std::to_string(count) + " " + what + ", not " +
                         std::to_string(expected));
    }
}

// A skin manager of the benchmark's own, beside the process's singleton, so that the large and
// the small skin answer lookups in turn.
class LookupUI : public MirlUI {
public:
    LookupUI() = default;
};

// Lookups kept as names in one block of text, the same way for both skins, so that the two
// differ only in the skin they ask.
struct Queries {
    std::vector<wchar_t> names;
    std::vector<std::pair<size_t, unsigned long>> lookups; // offset of the name, element type

    void Add(const wchar_t *prefix, int number, unsigned long type)
    {
        wchar_t name[16];
        swprintf(name, 16, L"%ls%05d", prefix, number);
        lookups.emplace_back(names.size(), type);
        names.insert(names.end(), name, name + wcslen(name) + 1);
    }
};

// Random lookups that all find something in language 2052: half are texts that 2052 has,
// half are names only 1033 has (texts, templates and images), found through the fallback.
Queries MakeQueries(const LookupSkin &skin, size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    Queries queries;
    for (size_t i = 0; i < count; ++i) {
        const unsigned r = static_cast<unsigned>(random());
        if (i % 2 == 0) {
            queries.Add(L"Txt", static_cast<int>(r % skin.chinese), UI_ELEMENT_TEXT);
            continue;
        }
        switch (r % 4) {
        case 0: queries.Add(L"Win", static_cast<int>((r / 4) % skin.templates), UI_ELEMENT_WINDOW); break;
        case 1: queries.Add(L"Img", static_cast<int>((r / 4) % skin.images), UI_ELEMENT_IMAGE); break;
        default:
            queries.Add(L"Txt", static_cast<int>(skin.chinese + (r / 4) % (skin.english - skin.chinese)),
                        UI_ELEMENT_TEXT);
            break;
        }
    }
    return queries;
}

// Nanoseconds per lookup over all queries. Throws if one finds nothing.
double TimeLookups(MirlUI &ui, const Queries &queries)
{
    size_t found = 0;
    const wchar_t *names = queries.names.data();
    const double start = Milliseconds();
    for (const auto &lookup : queries.lookups) {
        found += ui.GetUiElement(names + lookup.first, lookup.second) != nullptr ? 1 : 0;
    }
    const double elapsed = Milliseconds() - start;
    if (found != queries.lookups.size()) {
        throw BenchError("a lookup found nothing");
    }
    return elapsed * 1e6 / static_cast<double>(queries.lookups.size());
}

} // namespace

Figure MeasureSkinLoad(int repetitions)
{
    const std::wstring large = BenchSkinPath(kLarge.name);
    // Once each before measuring, and a check that the skin is what the figure says.
    MirlIntialize(large.c_str(), 2052);
    MirlUI *ui = MirlUI::Instance();
    CheckCount(ui, UI_ELEMENT_TEXT, 1033, kLarge.english, "texts in 1033");
    CheckCount(ui, UI_ELEMENT_TEXT, 2052, kLarge.chinese, "texts in 2052");
    CheckCount(ui, UI_ELEMENT_WINDOW, 1033, kLarge.templates, "templates");
    CheckCount(ui, UI_ELEMENT_IMAGE, 1033, kLarge.images, "images");
    MirlUnIntialize();
    LoadDocumentsBare(large);

    Samples samples;
    Repeat(
        repetitions, samples,
        [&] {
            const double start = Milliseconds();
            MirlIntialize(large.c_str(), 2052);
            MirlUnIntialize();
            return Milliseconds() - start;
        },
        [&] {
            const double start = Milliseconds();
            LoadDocumentsBare(large);
            return Milliseconds() - start;
        });
    Figure figure{"skin load", "ms"};
    figure.target = 1.15;
    Summarise(samples, figure);
    return figure;
}

Figure MeasureLookup(int repetitions)
{
    LookupUI large;
    LookupUI small;
    large.Load(BenchSkinPath(kLarge.name).c_str());
    small.Load(BenchSkinPath(kSmall.name).c_str());
    large.SetCurrentLanguage(2052);
    small.SetCurrentLanguage(2052);
    const size_t count = 200000;
    const Queries largeQueries = MakeQueries(kLarge, count, 1);
    const Queries smallQueries = MakeQueries(kSmall, count, 1);
    TimeLookups(large, largeQueries);
    TimeLookups(small, smallQueries);

    Samples samples;
    Repeat(
        repetitions, samples, [&] { return TimeLookups(large, largeQueries); },
        [&] { return TimeLookups(small, smallQueries); });
    Figure figure{"lookup", "ns/lookup"};
    figure.target = 1.25;
    Summarise(samples, figure);
    return figure;
}

} // namespace mirlbench
