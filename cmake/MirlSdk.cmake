# The SDK: what an application builds against. Each architecture's build installs its binaries
# under <arch>/ and the shared parts (headers, CMake package, sample skin, example) beside them,
# so that installing both builds into one folder makes the whole SDK (scripts/make-sdk.sh).
include(CMakePackageConfigHelpers)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(MIRL_SDK_ARCH i686)
else()
    set(MIRL_SDK_ARCH x86_64)
endif()

install(TARGETS MIRL Ostra mirlview mirllint
    RUNTIME DESTINATION ${MIRL_SDK_ARCH}/bin
    ARCHIVE DESTINATION ${MIRL_SDK_ARCH}/lib)
install(FILES ${MIRL_RUNTIME_DLLS} DESTINATION ${MIRL_SDK_ARCH}/bin)

# The headers stand on their own: the ATL/WTL subset that the window classes derive from, and
# Ostra.h for the error type that the library's system calls raise.
install(DIRECTORY include/ DESTINATION include FILES_MATCHING PATTERN "*.h")
install(DIRECTORY platform/atl DESTINATION include FILES_MATCHING PATTERN "*.h")
install(FILES platform/ostra/Ostra.h DESTINATION include)

configure_file(cmake/MIRLConfig.cmake.in ${CMAKE_BINARY_DIR}/sdk/MIRLConfig.cmake @ONLY)
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/sdk/MIRLConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion ARCH_INDEPENDENT)
install(FILES ${CMAKE_BINARY_DIR}/sdk/MIRLConfig.cmake ${CMAKE_BINARY_DIR}/sdk/MIRLConfigVersion.cmake
    DESTINATION lib/cmake/MIRL)

install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/skins/sample.zip DESTINATION skins)
install(DIRECTORY examples/skins/sample DESTINATION skins)
install(DIRECTORY examples/sdk/ DESTINATION example)
install(FILES cmake/MirlSdkReadme.txt DESTINATION . RENAME README.txt)

# The version, for the scripts that name the SDK's folder and archive.
file(WRITE ${CMAKE_BINARY_DIR}/mirl-version.txt "${PROJECT_VERSION}\n")
