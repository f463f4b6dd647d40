#include "MirlSkinCase.h"

#include "MirlFuzzRandom.h"
#include "MirlXmlMutator.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

namespace mirlfuzz {

namespace {

enum class ZipMutation {
    LieUncompressed,
    HugeDeclared,
    LieCompressed,
    LieCrc,
    LieMethod,
    LieFlags,
    LieLocalOffset,
    LieNameLength,
    DuplicateEntry,
    EmptyName,
    RenameEntry,
    DropEntry,
    ExtraField,
    LieEntryCount,
    LieDirectory,
    LieComment,
    Prefix,
    Count
};

enum class ByteMutation { Truncate, BitFlips, Overwrite, ZeroRange, Count };

const uint32_t kMiB = 1024 * 1024;

std::string Hex(uint32_t value)
{
    char text[16];
    snprintf(text, sizeof(text), "0x%X", value);
    return text;
}

// Skin.xml half of the time, since that is where loading starts; any entry otherwise.
size_t PickEntry(Random &random, const ZipArchive &archive)
{
    for (size_t i = 0; i < archive.entries.size(); ++i) {
        if (_stricmp(archive.entries[i].name.c_str(), "Skin.xml") == 0 && random.Chance(50)) {
            return i;
        }
    }
    return random.Below(archive.entries.size());
}

unsigned PickWhere(Random &random)
{
    static const unsigned where[] = {ZipEntry::Local, ZipEntry::Central, ZipEntry::Both, ZipEntry::Both};
    return random.Pick(where);
}

std::string ApplyZip(ZipArchive &archive, ZipMutation kind, uint64_t seed)
{
    Random random(seed);
    if (archive.entries.empty() && kind != ZipMutation::EmptyName && kind != ZipMutation::Prefix &&
        kind != ZipMutation::LieComment && kind != ZipMutation::LieEntryCount && kind != ZipMutation::LieDirectory) {
        return "no entry";
    }
    ZipEntry *entry = archive.entries.empty() ? nullptr : &archive.entries[PickEntry(random, archive)];
    const uint32_t size = entry != nullptr ? static_cast<uint32_t>(entry->data.size()) : 0;
    switch (kind) {
    case ZipMutation::LieUncompressed: {
        const uint32_t sizes[] = {0, 1, size - 1, size + 1, size * 2, size + 4096, size / 2};
        entry->declaredUncompressed = random.Pick(sizes);
        entry->where = PickWhere(random);
        return entry->name + " declares " + std::to_string(*entry->declaredUncompressed) + " bytes";
    }
    case ZipMutation::HugeDeclared: {
        const uint32_t sizes[] = {0xFFFFFFFFu, 0xFFFFFFFEu, 0x80000000u, 64 * kMiB + 1, 64 * kMiB, 64 * kMiB - 1, 16 * kMiB};
        entry->declaredUncompressed = random.Pick(sizes);
        entry->where = random.Chance(50) ? ZipEntry::Central : ZipEntry::Both;
        return entry->name + " declares " + Hex(*entry->declaredUncompressed) + " bytes";
    }
    case ZipMutation::LieCompressed: {
        const uint32_t sizes[] = {0, 1, 2, 0x7FFFFFFFu, 0xFFFFFFFFu, size + 1, size > 0 ? size - 1 : 0};
        entry->declaredCompressed = random.Pick(sizes);
        entry->where = PickWhere(random);
        return entry->name + " declares compressed " + Hex(*entry->declaredCompressed);
    }
    case ZipMutation::LieCrc:
        entry->declaredCrc = random.Next32();
        entry->where = PickWhere(random);
        return entry->name + " has a wrong checksum";
    case ZipMutation::LieMethod: {
        const uint16_t methods[] = {0, 8, 1, 9, 12, 14, 99, 0xFFFF};
        entry->declaredMethod = random.Pick(methods);
        entry->where = PickWhere(random);
        return entry->name + " declares method " + std::to_string(*entry->declaredMethod);
    }
    case ZipMutation::LieFlags: {
        const uint16_t flags[] = {1, 8, 0x40, 0x800, 0xFFFF, 9};
        entry->declaredFlags = random.Pick(flags);
        entry->where = PickWhere(random);
        return entry->name + " declares flags " + Hex(*entry->declaredFlags);
    }
    case ZipMutation::LieLocalOffset: {
        const uint32_t offsets[] = {0, 1, 30, 0x7FFFFFFFu, 0xFFFFFFFFu, random.Next32() % 4096};
        entry->declaredLocalOffset = random.Pick(offsets);
        return entry->name + " points at offset " + Hex(*entry->declaredLocalOffset);
    }
    case ZipMutation::LieNameLength: {
        const uint16_t length = static_cast<uint16_t>(entry->name.size());
        const uint16_t lengths[] = {0, static_cast<uint16_t>(length - 1), static_cast<uint16_t>(length + 1), 0xFFFF, 255, 256};
        entry->declaredNameLength = random.Pick(lengths);
        return entry->name + " declares a name of " + std::to_string(*entry->declaredNameLength);
    }
    case ZipMutation::DuplicateEntry: {
        ZipEntry copy = *entry;
        if (random.Chance(50)) {
            copy.data = archive.entries[random.Below(archive.entries.size())].data;
        }
        if (random.Chance(30)) {
            std::transform(copy.name.begin(), copy.name.end(), copy.name.begin(), ::toupper);
        }
        copy.deflate = random.Chance(50);
        size_t at = random.Below(archive.entries.size() + 1);
        std::string name = copy.name;
        archive.entries.insert(archive.entries.begin() + static_cast<ptrdiff_t>(at), copy);
        return "a second " + name;
    }
    case ZipMutation::EmptyName: {
        ZipEntry empty;
        if (entry != nullptr && random.Chance(50)) {
            entry->name.clear();
            return "an entry renamed to nothing";
        }
        if (entry != nullptr) {
            empty.data = entry->data;
        }
        empty.deflate = random.Chance(50);
        archive.entries.insert(archive.entries.begin() + static_cast<ptrdiff_t>(random.Below(archive.entries.size() + 1)), empty);
        return "an entry with no name";
    }
    case ZipMutation::RenameEntry: {
        std::string old = entry->name;
        switch (random.Below(8)) {
        case 0: std::transform(entry->name.begin(), entry->name.end(), entry->name.begin(), ::tolower); break;
        case 1: entry->name = "/" + entry->name; break;
        case 2: entry->name = "./" + entry->name; break;
        case 3: entry->name += std::string("\0x", 2); break;
        case 4: entry->name += " "; break;
        case 5: entry->name = std::string(static_cast<size_t>(random.Pick({255, 256, 300, 1000, 65535})), 'n'); break;
        case 6: entry->name = "\xE4\xB8\xAD\xE6\x96\x87.xml"; break;
        default: std::replace(entry->name.begin(), entry->name.end(), '/', '\\'); entry->name = "..\\" + entry->name; break;
        }
        return old + " renamed (" + std::to_string(entry->name.size()) + " bytes)";
    }
    case ZipMutation::DropEntry: {
        std::string name = entry->name;
        archive.entries.erase(archive.entries.begin() + (entry - archive.entries.data()));
        return name + " left out";
    }
    case ZipMutation::ExtraField: {
        std::string extra;
        if (random.Chance(50)) {
            // A ZIP64 record whose sizes and length lie.
            const char zip64[] = {1, 0, static_cast<char>(random.Pick({8, 16, 24, 28, 255})), 0};
            extra.assign(zip64, sizeof(zip64));
        }
        size_t length = static_cast<size_t>(random.Between(0, 40));
        for (size_t i = 0; i < length; ++i) {
            extra += static_cast<char>(random.Next32());
        }
        entry->extra = extra;
        return entry->name + " has " + std::to_string(extra.size()) + " bytes of extra field";
    }
    case ZipMutation::LieEntryCount: {
        const uint16_t n = static_cast<uint16_t>(archive.entries.size());
        const uint16_t counts[] = {0, 1, static_cast<uint16_t>(n - 1), static_cast<uint16_t>(n + 1), 0xFFFF};
        archive.declaredEntryCount = random.Pick(counts);
        return "declares " + std::to_string(*archive.declaredEntryCount) + " entries";
    }
    case ZipMutation::LieDirectory: {
        const uint32_t values[] = {0, 1, 0xFFFFFFFFu, 0x7FFFFFFFu, random.Next32() % 8192};
        if (random.Chance(50)) {
            archive.declaredDirectorySize = random.Pick(values);
            return "directory size " + Hex(*archive.declaredDirectorySize);
        }
        archive.declaredDirectoryOffset = random.Pick(values);
        return "directory offset " + Hex(*archive.declaredDirectoryOffset);
    }
    case ZipMutation::LieComment: {
        if (random.Chance(50)) {
            // A second end record inside the comment: the reader must pick one and survive.
            archive.comment = std::string("PK\x05\x06", 4) + std::string(18, random.Chance(50) ? '\0' : '\xFF');
        } else {
            archive.comment = std::string(static_cast<size_t>(random.Between(0, 100)), 'c');
        }
        const uint16_t lengths[] = {0, static_cast<uint16_t>(archive.comment.size() + 1), 0xFFFF, 1};
        if (random.Chance(60)) {
            archive.declaredCommentLength = random.Pick(lengths);
        }
        return "comment of " + std::to_string(archive.comment.size()) + " bytes";
    }
    case ZipMutation::Prefix: {
        size_t length = static_cast<size_t>(random.Pick({1, 30, 512, 5000}));
        archive.prefix.clear();
        for (size_t i = 0; i < length; ++i) {
            archive.prefix += random.Chance(5) ? 'P' : static_cast<char>(random.Next32());
        }
        return std::to_string(length) + " bytes before the first entry";
    }
    case ZipMutation::Count: break;
    }
    return "nothing";
}

std::string ApplyBytes(Bytes &zip, ByteMutation kind, uint64_t seed)
{
    Random random(seed);
    if (zip.empty()) {
        return "empty package";
    }
    switch (kind) {
    case ByteMutation::Truncate: {
        size_t at = random.Chance(30) ? zip.size() - std::min(zip.size(), static_cast<size_t>(random.Between(1, 30)))
                                      : random.Below(zip.size());
        zip.resize(at);
        return "truncated to " + std::to_string(at);
    }
    case ByteMutation::BitFlips: {
        int flips = random.Between(1, 32);
        for (int i = 0; i < flips; ++i) {
            zip[random.Below(zip.size())] ^= static_cast<unsigned char>(1u << random.Below(8));
        }
        return std::to_string(flips) + " bits flipped";
    }
    case ByteMutation::Overwrite: {
        size_t at = random.Below(zip.size());
        const unsigned char values[] = {0x00, 0xFF, 0x7F, 0x80};
        unsigned char value = random.Pick(values);
        size_t length = std::min(zip.size() - at, static_cast<size_t>(random.Pick({1, 2, 4})));
        std::fill(zip.begin() + static_cast<ptrdiff_t>(at), zip.begin() + static_cast<ptrdiff_t>(at + length), value);
        return std::to_string(length) + " bytes of " + Hex(value) + " at " + std::to_string(at);
    }
    case ByteMutation::ZeroRange: {
        size_t at = random.Below(zip.size());
        size_t length = std::min(zip.size() - at, static_cast<size_t>(random.Between(1, 256)));
        std::fill(zip.begin() + static_cast<ptrdiff_t>(at), zip.begin() + static_cast<ptrdiff_t>(at + length), 0);
        return std::to_string(length) + " bytes zeroed at " + std::to_string(at);
    }
    case ByteMutation::Count: break;
    }
    return "nothing";
}

// Mutations that keep a document well-formed come more often than those that break it: a
// document that doesn't parse only tests the parse failure, which a few cases cover.
int PickXmlMutation(Random &random)
{
    static const unsigned weights[static_cast<int>(XmlMutation::Count)] = {
        2, // DeleteElement
        3, // DuplicateElement
        1, // DeleteTag
        6, // ExtremeValue
        2, // RenameAttribute
        4, // AddAttribute
        2, // DeepNesting
        2, // IncludeCycle
        1, // ManyIncludes
        2, // RenameTag
        2, // InsertNode
        1, // SpliceBytes
        2, // MoveElement
        1, // Encoding
    };
    unsigned total = 0;
    for (unsigned weight : weights) {
        total += weight;
    }
    unsigned pick = static_cast<unsigned>(random.Below(total));
    for (int kind = 0; kind < static_cast<int>(XmlMutation::Count); ++kind) {
        if (pick < weights[kind]) {
            return kind;
        }
        pick -= weights[kind];
    }
    return 0;
}

unsigned PickLanguage(Random &random)
{
    unsigned roll = static_cast<unsigned>(random.Below(100));
    if (roll < 50) {
        return 1033;
    }
    if (roll < 70) {
        return 2052;
    }
    if (roll < 80) {
        return 1031;
    }
    if (roll < 85) {
        return 0;
    }
    if (roll < 90) {
        return 0xFFFFFFFFu;
    }
    return random.Next32() & 0xFFFF;
}

ZipArchive ArchiveOf(const std::vector<SkinFile> &files, int deflateMode, uint64_t seed)
{
    Random random(seed);
    ZipArchive archive;
    for (const SkinFile &file : files) {
        ZipEntry entry;
        entry.name = file.name;
        entry.data = file.data;
        entry.deflate = deflateMode == 1 || (deflateMode == 2 && random.Chance(50));
        archive.entries.push_back(entry);
    }
    return archive;
}

} // namespace

Bytes PlainPackage(const CorpusSkin &skin)
{
    return WriteZip(ArchiveOf(skin.files, 1, 0));
}

SkinCase MakeSkinCase(const std::vector<CorpusSkin> &corpus, uint64_t seed, uint64_t keep)
{
    SkinCase result;
    result.seed = seed;
    if (corpus.empty()) {
        return result;
    }
    // Every draw comes first, so that leaving a mutation out changes none of the others.
    Random random(seed);
    const CorpusSkin &skin = corpus[random.Below(corpus.size())];
    result.corpus = skin.label;
    result.language = PickLanguage(random);
    unsigned mode = static_cast<unsigned>(random.Below(100));
    bool xml = mode < 40 || mode >= 65;
    bool zip = mode >= 40;
    int xmlOps = xml ? 1 + (random.Chance(40) ? random.Between(1, 3) : 0) : 0;
    int zipOps = zip ? 1 + (random.Chance(30) ? random.Between(1, 2) : 0) : 0;
    int byteOps = zip && random.Chance(50) ? random.Between(1, 2) : 0;
    for (int i = 0; i < xmlOps; ++i) {
        result.ops.push_back({SkinCaseOp::Xml, PickXmlMutation(random), random.Fork()});
    }
    for (int i = 0; i < zipOps; ++i) {
        result.ops.push_back({SkinCaseOp::Zip, static_cast<int>(random.Below(static_cast<size_t>(ZipMutation::Count))), random.Fork()});
    }
    for (int i = 0; i < byteOps; ++i) {
        result.ops.push_back({SkinCaseOp::Byte, static_cast<int>(random.Below(static_cast<size_t>(ByteMutation::Count))), random.Fork()});
    }
    int deflateMode = static_cast<int>(random.Below(3)); // stored, deflated, mixed
    uint64_t archiveSeed = random.Fork();

    std::vector<SkinFile> files = skin.files;
    for (size_t i = 0; i < result.ops.size(); ++i) {
        const SkinCaseOp &op = result.ops[i];
        if (op.level == SkinCaseOp::Xml && (keep >> i & 1) != 0) {
            result.notes.push_back("xml " + MutateSkinXml(files, static_cast<XmlMutation>(op.kind), op.seed));
        }
    }
    ZipArchive archive = ArchiveOf(files, deflateMode, archiveSeed);
    for (size_t i = 0; i < result.ops.size(); ++i) {
        const SkinCaseOp &op = result.ops[i];
        if (op.level == SkinCaseOp::Zip && (keep >> i & 1) != 0) {
            result.notes.push_back("zip " + ApplyZip(archive, static_cast<ZipMutation>(op.kind), op.seed));
        }
    }
    result.zip = WriteZip(archive);
    for (size_t i = 0; i < result.ops.size(); ++i) {
        const SkinCaseOp &op = result.ops[i];
        if (op.level == SkinCaseOp::Byte && (keep >> i & 1) != 0) {
            result.notes.push_back("bytes " + ApplyBytes(result.zip, static_cast<ByteMutation>(op.kind), op.seed));
        }
    }
    return result;
}

} // namespace mirlfuzz
