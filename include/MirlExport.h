// Export and import of the library's classes and functions.
// Building MIRL.dll defines MIRL_EXPORTS; applications leave it undefined and import.
#pragma once

#if defined(MIRL_EXPORTS)
#define MIRL_API __declspec(dllexport)
#else
#define MIRL_API __declspec(dllimport)
#endif
