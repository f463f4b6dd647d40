// MirlSkinPackage: the open skin archive, handing out entries as memory blocks and streams.
#pragma once

#include "MirlExport.h"
#include "MirlCom.h"

#include <string>

class MIRL_API MirlSkinPackage {
public:
    // An entry whose directory record declares more than this is refused as absent:
    // a skin's documents and pictures are far smaller, and a forged size must not
    // make the library commit gigabytes.
    enum : unsigned long { MaxEntrySize = 64UL * 1024 * 1024 };

    MirlSkinPackage();
    virtual ~MirlSkinPackage();

    // Opens an archive, closing the former one first. Throws MirlException with code 1
    // and the path as text when it can't be opened; the package is then closed.
    void Open(const wchar_t *path);
    bool IsOpen() const;

    // An entry as a fresh stream positioned at its start that owns its memory; null if absent.
    IStreamPtr ExtractFile(const wchar_t *fileName);
    IStreamPtr ExtractFile(const char *fileName);
    // An entry as a movable global memory block that the caller frees; null if absent.
    void *ExtractFileToHGLOBAL(const wchar_t *fileName);
    void *ExtractFileToHGLOBAL(const char *fileName);
    // An entry as a stream for a parser: its block without the zeros after the last byte that
    // isn't one, kept at an even length for UTF-16. A directory record may declare far more
    // than the entry holds, and a parser must not read megabytes of padding. Null if absent.
    IStreamPtr ExtractDocument(const wchar_t *fileName);

    // A wide name in the system's ANSI code page. Raises a Win32 error if it can't be converted.
    static std::string ToAnsi(const wchar_t *text);

private:
    MirlSkinPackage(const MirlSkinPackage &) = delete;
    MirlSkinPackage &operator=(const MirlSkinPackage &) = delete;

    // Positions minizip's current entry on the entry of that name, as unzLocateFile would.
    bool Locate(const char *fileName);
    void Close();

    void *m_ZipHandle;
    // The archive's names, read at the first lookup (see MirlSkinPackage.cpp).
    struct Directory;
    Directory *m_Directory;
};
