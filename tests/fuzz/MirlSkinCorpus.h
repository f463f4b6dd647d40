// The skins that fuzz cases start from: every file of each corpus folder, by its name in the
// package ("Buttons/Ok.png"), read once at start.
#pragma once

#include "MirlZipWriter.h"

#include <string>
#include <vector>

namespace mirlfuzz {

struct SkinFile {
    std::string name; // package name, with '/' between folders
    Bytes data;
};

struct CorpusSkin {
    std::string label; // the folder's name
    std::vector<SkinFile> files;
};

// Each sub-folder of folder is one skin, in name order; files in name order.
std::vector<CorpusSkin> LoadCorpus(const std::wstring &folder);

// The folder of the running program, and the corpus the build copies beside it.
std::wstring ProgramFolder();
std::wstring DefaultCorpusFolder();

bool ReadWholeFile(const std::wstring &path, Bytes &data);
bool WriteWholeFile(const std::wstring &path, const Bytes &data);

std::wstring Widen(const std::string &text);
std::string Narrow(const std::wstring &text);

} // namespace mirlfuzz
