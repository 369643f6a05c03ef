# find_package(nlohmann_json) of the Windows toolchains: the headers of Debian's package know no
# platform, but the folder that they stand in holds those of Linux as well.
include_guard(GLOBAL)
set(headers ${CMAKE_BINARY_DIR}/nlohmann_json)
file(MAKE_DIRECTORY ${headers})
file(CREATE_LINK /usr/include/nlohmann ${headers}/nlohmann SYMBOLIC)
add_library(nlohmann_json INTERFACE)
target_include_directories(nlohmann_json SYSTEM INTERFACE ${headers})
add_library(nlohmann_json::nlohmann_json ALIAS nlohmann_json)
