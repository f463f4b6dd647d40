#include "MirlZipWriter.h"

#include <zlib.h>

namespace mirlfuzz {

namespace {

const uint16_t kMethodStored = 0;
const uint16_t kMethodDeflated = 8;
const uint16_t kVersion = 20;
// 2001-01-01 00:00: any fixed date keeps archives byte for byte reproducible.
const uint16_t kDosTime = 0;
const uint16_t kDosDate = (21 << 9) | (1 << 5) | 1;

void Put16(Bytes &out, uint16_t value)
{
    out.push_back(static_cast<unsigned char>(value & 0xFF));
    out.push_back(static_cast<unsigned char>(value >> 8));
}

void Put32(Bytes &out, uint32_t value)
{
    Put16(out, static_cast<uint16_t>(value & 0xFFFF));
    Put16(out, static_cast<uint16_t>(value >> 16));
}

void PutText(Bytes &out, const std::string &text)
{
    out.insert(out.end(), text.begin(), text.end());
}

// What one header says about an entry: the truth, with the declared lies of that header.
struct Declared {
    uint16_t flags;
    uint16_t method;
    uint32_t crc;
    uint32_t compressed;
    uint32_t uncompressed;
};

Declared DeclaredIn(const ZipEntry &entry, unsigned header, uint16_t method, uint32_t crc, uint32_t compressed)
{
    Declared d = {0, method, crc, compressed, static_cast<uint32_t>(entry.data.size())};
    if ((entry.where & header) == 0) {
        return d;
    }
    d.flags = entry.declaredFlags.value_or(d.flags);
    d.method = entry.declaredMethod.value_or(d.method);
    d.crc = entry.declaredCrc.value_or(d.crc);
    d.compressed = entry.declaredCompressed.value_or(d.compressed);
    d.uncompressed = entry.declaredUncompressed.value_or(d.uncompressed);
    return d;
}

} // namespace

Bytes Deflate(const Bytes &data)
{
    z_stream stream = {};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        return Bytes();
    }
    Bytes out(deflateBound(&stream, static_cast<uLong>(data.size())) + 16);
    stream.next_in = const_cast<Bytef *>(data.empty() ? nullptr : data.data());
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

uint32_t Crc32(const Bytes &data)
{
    return static_cast<uint32_t>(crc32(0L, data.empty() ? nullptr : data.data(), static_cast<uInt>(data.size())));
}

Bytes WriteZip(const ZipArchive &archive)
{
    Bytes out;
    PutText(out, archive.prefix);
    Bytes directory;
    for (const ZipEntry &entry : archive.entries) {
        const Bytes body = entry.deflate ? Deflate(entry.data) : entry.data;
        const uint16_t method = entry.deflate ? kMethodDeflated : kMethodStored;
        const uint32_t crc = Crc32(entry.data);
        const uint32_t offset = static_cast<uint32_t>(out.size());

        const Declared local = DeclaredIn(entry, ZipEntry::Local, method, crc, static_cast<uint32_t>(body.size()));
        Put32(out, 0x04034b50);
        Put16(out, kVersion);
        Put16(out, local.flags);
        Put16(out, local.method);
        Put16(out, kDosTime);
        Put16(out, kDosDate);
        Put32(out, local.crc);
        Put32(out, local.compressed);
        Put32(out, local.uncompressed);
        Put16(out, static_cast<uint16_t>(entry.name.size()));
        Put16(out, static_cast<uint16_t>(entry.extra.size()));
        PutText(out, entry.name);
        PutText(out, entry.extra);
        out.insert(out.end(), body.begin(), body.end());

        const Declared central = DeclaredIn(entry, ZipEntry::Central, method, crc, static_cast<uint32_t>(body.size()));
        Put32(directory, 0x02014b50);
        Put16(directory, kVersion);
        Put16(directory, kVersion);
        Put16(directory, central.flags);
        Put16(directory, central.method);
        Put16(directory, kDosTime);
        Put16(directory, kDosDate);
        Put32(directory, central.crc);
        Put32(directory, central.compressed);
        Put32(directory, central.uncompressed);
        Put16(directory, entry.declaredNameLength.value_or(static_cast<uint16_t>(entry.name.size())));
        Put16(directory, static_cast<uint16_t>(entry.extra.size()));
        Put16(directory, 0); // comment
        Put16(directory, 0); // disk
        Put16(directory, 0); // internal attributes
        Put32(directory, 0); // external attributes
        Put32(directory, entry.declaredLocalOffset.value_or(offset));
        PutText(directory, entry.name);
        PutText(directory, entry.extra);
    }
    const uint32_t directoryOffset = static_cast<uint32_t>(out.size());
    out.insert(out.end(), directory.begin(), directory.end());

    const uint16_t count = archive.declaredEntryCount.value_or(static_cast<uint16_t>(archive.entries.size()));
    Put32(out, 0x06054b50);
    Put16(out, 0);
    Put16(out, 0);
    Put16(out, count);
    Put16(out, count);
    Put32(out, archive.declaredDirectorySize.value_or(static_cast<uint32_t>(directory.size())));
    Put32(out, archive.declaredDirectoryOffset.value_or(directoryOffset));
    Put16(out, archive.declaredCommentLength.value_or(static_cast<uint16_t>(archive.comment.size())));
    PutText(out, archive.comment);
    return out;
}

} // namespace mirlfuzz
