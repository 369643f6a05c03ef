# find_package(pugixml) of the Windows toolchains. Debian packages the library for Linux only; here
# it is built for the target from the source of the same Debian package.
include_guard(GLOBAL)
set(source ${CMAKE_SOURCE_DIR}/build/pugixml)  # shared by both bitnesses
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../fetch-source.sh pugixml pugixml.cpp ${source}
                COMMAND_ERROR_IS_FATAL ANY)
add_library(pugixml STATIC ${source}/pugixml.cpp)
target_include_directories(pugixml SYSTEM PUBLIC ${source})
add_library(pugixml::pugixml ALIAS pugixml)
