// A small ZIP writer that can lie. Skin packages for the fuzzer are built here rather than
// with a ZIP library, so that each header field can say something other than the truth:
// sizes, checksums, methods, offsets, counts and names are each declared on request.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mirlfuzz {

typedef std::vector<unsigned char> Bytes;

struct ZipEntry {
    // Where declared values replace the true ones.
    enum Where { Local = 1, Central = 2, Both = 3 };

    std::string name;     // stored as given: empty, duplicated or ANSI bytes are all allowed
    Bytes data;           // the content before compression
    bool deflate = false; // deflated with zlib, else stored

    unsigned where = Both;
    std::optional<uint32_t> declaredUncompressed;
    std::optional<uint32_t> declaredCompressed;
    std::optional<uint32_t> declaredCrc;
    std::optional<uint16_t> declaredMethod;
    std::optional<uint16_t> declaredFlags;
    std::optional<uint32_t> declaredLocalOffset; // central directory only
    std::optional<uint16_t> declaredNameLength;  // central directory only
    std::string extra;                           // extra field, in both headers
};

struct ZipArchive {
    std::vector<ZipEntry> entries;
    std::string prefix;  // bytes before the first entry
    std::string comment; // archive comment
    std::optional<uint16_t> declaredEntryCount;
    std::optional<uint32_t> declaredDirectorySize;
    std::optional<uint32_t> declaredDirectoryOffset;
    std::optional<uint16_t> declaredCommentLength;
};

// Raw deflate of data (no zlib header), as ZIP method 8 stores it.
Bytes Deflate(const Bytes &data);
uint32_t Crc32(const Bytes &data);
// The whole archive: local headers with data, central directory, end record.
Bytes WriteZip(const ZipArchive &archive);

} // namespace mirlfuzz
