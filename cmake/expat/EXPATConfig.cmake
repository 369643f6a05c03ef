# find_package(EXPAT) of the Windows toolchains. Debian packages the library for Linux only; here it
# is built for the target from the source of the same Debian package.
include_guard(GLOBAL)
enable_language(C)
set(source ${CMAKE_SOURCE_DIR}/build/expat)  # shared by both bitnesses
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../fetch-source.sh expat xmlparse.c ${source}
                COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${CMAKE_BINARY_DIR}/expat/expat_config.h
     "#define BYTEORDER 1234\n#define XML_NS 1\n#define XML_DTD 1\n#define XML_GE 1\n"
     "#define XML_CONTEXT_BYTES 1024\n")
add_library(expat STATIC ${source}/xmlparse.c ${source}/xmlrole.c ${source}/xmltok.c)
target_include_directories(expat SYSTEM PUBLIC ${source} PRIVATE ${CMAKE_BINARY_DIR}/expat)
target_compile_definitions(expat PUBLIC XML_STATIC)
add_library(EXPAT::EXPAT ALIAS expat)
