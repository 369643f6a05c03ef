# What both Windows toolchains share; each sets MARLUNE_MINGW (the compilers' prefix) first.
set(CMAKE_SYSTEM_NAME Windows)
# Debian's -posix compilers: the -win32 ones lack std::mutex, which googletest needs.
set(CMAKE_C_COMPILER ${MARLUNE_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${MARLUNE_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${MARLUNE_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${MARLUNE_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What nearly every file includes; compiled once.
set(MARLUNE_COMMON_HEADERS <algorithm> <array> <functional> <memory> <optional> <span> <string>
    <string_view> <vector>)

set(pugixml_DIR ${CMAKE_CURRENT_LIST_DIR}/pugixml)

# The compiler's runtime goes into every program and library: the control is installed by copying
# one file, and nothing but the system's own libraries may be missing on the machine.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static")
    set(CMAKE_${kind}_LINKER_FLAGS_RELEASE_INIT "-s")
endforeach()
