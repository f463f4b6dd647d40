// Skin load and lookup: the library against the bare parser, and a large skin against a small.
#include "BenchFigures.h"

#include "Mirl.h"
#include "../skin/MirlSkinPackage.h"

#include <gdiplus.h>
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

// A stream that owns the block, or null (and the block freed).
IStreamPtr StreamOn(HGLOBAL block)
{
    IStream *stream = nullptr;
    if (block == nullptr || FAILED(::CreateStreamOnHGlobal(block, TRUE, &stream))) {
        if (block != nullptr) {
            ::GlobalFree(block);
        }
        return IStreamPtr();
    }
    return IStreamPtr(stream, false);
}

// A stream parsed into a DOMDocument30; null if it doesn't parse.
IXMLDOMDocumentPtr Parse(const IStreamPtr &stream)
{
    IXMLDOMDocumentPtr document;
    if (stream == nullptr || FAILED(::CoCreateInstance(kDomDocument30, nullptr, CLSCTX_INPROC_SERVER,
                                                       __uuidof(IXMLDOMDocument), reinterpret_cast<void **>(&document)))) {
        return IXMLDOMDocumentPtr();
    }
    document->put_async(VARIANT_FALSE);
    VARIANT source;
    ::VariantInit(&source);
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) = stream.GetInterfacePtr();
    VARIANT_BOOL ok = VARIANT_FALSE;
    if (FAILED(document->load(source, &ok)) || ok != VARIANT_TRUE) {
        return IXMLDOMDocumentPtr();
    }
    return document;
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
        documents.push_back(Parse(StreamOn(ExtractEntry(zip, name))));
        if (documents.back() == nullptr) {
            parsed = false;
            break;
        }
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

// The large and the small skin, each answering in 2052 first.
void LoadLookupSkins(LookupUI &large, LookupUI &small)
{
    large.Load(BenchSkinPath(kLarge.name).c_str());
    small.Load(BenchSkinPath(kSmall.name).c_str());
    large.SetCurrentLanguage(2052);
    small.SetCurrentLanguage(2052);
}

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

// Which lookups a set of queries holds.
enum class Mix { Half, Direct, Fallback };

// Random lookups that all find something in language 2052: half are texts that 2052 has,
// half are names only 1033 has (texts, templates and images), found through the fallback.
// Direct and Fallback give only the one kind or the other.
Queries MakeQueries(const LookupSkin &skin, size_t count, unsigned seed, Mix mix = Mix::Half)
{
    std::mt19937 random(seed);
    Queries queries;
    for (size_t i = 0; i < count; ++i) {
        const unsigned r = static_cast<unsigned>(random());
        if (mix == Mix::Half ? i % 2 == 0 : mix == Mix::Direct) {
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
    LoadLookupSkins(large, small);
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

namespace {

// What reading a skin's documents through the DOM costs at the least: every node that the
// loader visits, its name, and every attribute's name and value, each read once.
struct DomReading {
    size_t nodes = 0;
    size_t attributes = 0;

    void Element(IXMLDOMNode *node, int depth)
    {
        ++nodes;
        BSTR name = nullptr;
        node->get_nodeName(&name);
        ::SysFreeString(name);
        IXMLDOMNamedNodeMapPtr map;
        if (node->get_attributes(&map) == S_OK && map != nullptr) {
            long length = 0;
            map->get_length(&length);
            for (long i = 0; i < length; ++i) {
                IXMLDOMNodePtr item;
                if (map->get_item(i, &item) != S_OK || item == nullptr) {
                    continue;
                }
                ++attributes;
                BSTR attributeName = nullptr;
                item->get_nodeName(&attributeName);
                ::SysFreeString(attributeName);
                _variant_t value;
                item->get_nodeValue(&value);
            }
        }
        if (depth == 0) {
            return;
        }
        IXMLDOMNodeListPtr children;
        if (node->get_childNodes(&children) == S_OK && children != nullptr) {
            IXMLDOMNodePtr child;
            while (children->nextNode(&child) == S_OK && child != nullptr) {
                Element(child, depth - 1);
                child = nullptr;
            }
        }
    }

    void Document(const IXMLDOMDocumentPtr &document)
    {
        IXMLDOMNodeListPtr roots;
        IXMLDOMNodePtr root;
        if (FAILED(document->selectNodes(_bstr_t(L"Skin"), &roots)) || roots == nullptr ||
            roots->nextNode(&root) != S_OK || root == nullptr) {
            return;
        }
        // Root, sections, language blocks, elements and templates to any depth.
        Element(root, 64);
    }
};

// A skin manager whose loading can be taken apart stage by stage.
class StageUI : public MirlUI {
public:
    MirlSkinPackage &Package() { return *m_Package; }
    void LoadDocuments()
    {
        ClearUiElements();
        LoadFile(L"Skin.xml");
    }
    void Clear() { ClearUiElements(); }
};

void PrintStage(const char *stage, const std::vector<double> &times, double whole)
{
    const double median = Median(times);
    std::printf("  %-44s %9.3f ms %6.1f %%\n", stage, median, whole > 0 ? median * 100.0 / whole : 0.0);
}

} // namespace

void PrintLookupStages(int repetitions);

void PrintSkinStages(int repetitions)
{
    const std::wstring large = BenchSkinPath(kLarge.name);
    std::vector<double> whole, gdiplus, open, read, parse, walk, load, clear, bareRead, bareParse;
    size_t nodes = 0;
    size_t attributes = 0;
    for (int i = 0; i < repetitions + 1; ++i) {
        // The first pass warms MSXML and the file cache and isn't counted.
        const bool counted = i > 0;
        double start = Milliseconds();
        MirlIntialize(large.c_str(), 2052);
        MirlUnIntialize();
        if (counted) {
            whole.push_back(Milliseconds() - start);
        }

        ULONG_PTR token = 0;
        Gdiplus::GdiplusStartupInput input;
        start = Milliseconds();
        if (Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok) {
            Gdiplus::GdiplusShutdown(token);
        }
        if (counted) {
            gdiplus.push_back(Milliseconds() - start);
        }

        StageUI *ui = static_cast<StageUI *>(MirlUI::Instance());
        start = Milliseconds();
        ui->Package().Open(large.c_str());
        const double opened = Milliseconds();
        std::vector<IStreamPtr> streams;
        for (const wchar_t *name : kDocuments) {
            streams.push_back(ui->Package().ExtractDocument(name));
        }
        const double extracted = Milliseconds();
        std::vector<IXMLDOMDocumentPtr> documents;
        for (const IStreamPtr &stream : streams) {
            documents.push_back(Parse(stream));
            if (documents.back() == nullptr) {
                MirlUI::Release();
                throw BenchError("a document of the large skin did not parse");
            }
        }
        const double parsed = Milliseconds();
        DomReading reading;
        for (const IXMLDOMDocumentPtr &document : documents) {
            reading.Document(document);
        }
        const double walked = Milliseconds();
        nodes = reading.nodes;
        attributes = reading.attributes;
        documents.clear();
        streams.clear();
        const double loadStart = Milliseconds();
        ui->LoadDocuments();
        const double loaded = Milliseconds();
        ui->Clear();
        const double cleared = Milliseconds();
        MirlUI::Release();
        if (counted) {
            open.push_back(opened - start);
            read.push_back(extracted - opened);
            parse.push_back(parsed - extracted);
            walk.push_back(walked - parsed);
            load.push_back(loaded - loadStart);
            clear.push_back(cleared - loaded);
        }

        unzFile zip = unzOpen(Narrow(large).c_str());
        start = Milliseconds();
        std::vector<IStreamPtr> bareStreams;
        for (const wchar_t *name : kDocuments) {
            bareStreams.push_back(StreamOn(ExtractEntry(zip, name)));
        }
        const double bareExtracted = Milliseconds();
        std::vector<IXMLDOMDocumentPtr> bareDocuments;
        for (const IStreamPtr &stream : bareStreams) {
            bareDocuments.push_back(Parse(stream));
        }
        const double bareParsed = Milliseconds();
        unzClose(zip);
        if (counted) {
            bareRead.push_back(bareExtracted - start);
            bareParse.push_back(bareParsed - bareExtracted);
        }
    }
    std::vector<double> build;
    for (size_t i = 0; i < load.size(); ++i) {
        build.push_back(load[i] - read[i] - parse[i] - walk[i]);
    }
    const double ours = Median(whole);
    std::printf("Skin load by stage, the large skin, medians of %d passes (%% of ours):\n", repetitions);
    PrintStage("MirlIntialize + MirlUnIntialize", whole, ours);
    PrintStage("GDI+ start and shut-down", gdiplus, ours);
    PrintStage("package open and directory", open, ours);
    PrintStage("documents out of the package", read, ours);
    PrintStage("MSXML parse of the documents", parse, ours);
    char reading[64];
    std::snprintf(reading, sizeof(reading), "DOM walk: %u nodes, %u attributes", static_cast<unsigned>(nodes),
                  static_cast<unsigned>(attributes));
    PrintStage(reading, walk, ours);
    PrintStage("loader (read + parse + walk + build)", load, ours);
    PrintStage("  of which building, beyond the DOM walk", build, ours);
    PrintStage("elements and documents freed", clear, ours);
    std::printf("Baseline, minizip + MSXML:\n");
    PrintStage("documents out of the package", bareRead, ours);
    PrintStage("MSXML parse of the documents", bareParse, ours);
    std::printf("\n");
    PrintLookupStages(repetitions);
}

void PrintLookupStages(int repetitions)
{
    LookupUI large;
    LookupUI small;
    LoadLookupSkins(large, small);
    const size_t count = 200000;
    std::printf("Lookup by kind, ns per lookup, medians of %d passes:\n", repetitions);
    std::printf("  %-44s %9s %9s %7s\n", "", "large", "small", "ratio");
    const struct {
        const char *name;
        Mix mix;
    } kinds[] = {{"mixed, as the figure", Mix::Half}, {"found in 2052", Mix::Direct},
                 {"found through the fallback to 1033", Mix::Fallback}};
    for (const auto &kind : kinds) {
        const Queries largeQueries = MakeQueries(kLarge, count, 1, kind.mix);
        const Queries smallQueries = MakeQueries(kSmall, count, 1, kind.mix);
        std::vector<double> largeTimes, smallTimes;
        for (int i = 0; i < repetitions + 1; ++i) {
            const double l = TimeLookups(large, largeQueries);
            const double m = TimeLookups(small, smallQueries);
            if (i > 0) {
                largeTimes.push_back(l);
                smallTimes.push_back(m);
            }
        }
        std::printf("  %-44s %9.2f %9.2f %7.2f\n", kind.name, Median(largeTimes), Median(smallTimes),
                    Median(largeTimes) / Median(smallTimes));
    }
    std::fflush(stdout);
}

} // namespace mirlbench
