// The test programs' shared precompiled header is made by compiling this file: see
// mirl_add_gtest in the top CMakeLists.txt.
