// A skin folder read as its package would be: every file below the folder becomes an entry of
// a stored ZIP, named by its path relative to the folder with '/' between folders, and the
// library opens that archive exactly as it opens a package an author ships.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace mirltool {

// True when path names a folder (a skin in the making) rather than a package file.
bool IsFolder(const std::wstring &path);

// The files below folder, as entry names relative to it ('/' separated), sorted by name.
std::vector<std::wstring> ListFolder(const std::wstring &folder);

// One stored ZIP of the folder in the temporary folder, removed again when this object goes.
class FolderPackage {
public:
    FolderPackage() = default;
    ~FolderPackage();
    FolderPackage(const FolderPackage &) = delete;
    FolderPackage &operator=(const FolderPackage &) = delete;

    // Writes the archive; false with a reason when a file can't be read or the archive written.
    bool Pack(const std::wstring &folder, std::wstring &error);
    // The archive to hand to MirlIntialize.
    const std::wstring &path() const { return m_Path; }

private:
    std::wstring m_Path;
};

// What changes when the skin changes on disk: the name, size and time of writing of the package,
// or of every file of a folder.
std::wstring SkinSignature(const std::wstring &path);

// CRC-32 of ZIP entries (the IEEE polynomial, as zlib computes it).
unsigned long Crc32(const unsigned char *data, size_t size);

} // namespace mirltool
