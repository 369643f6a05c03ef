# The installed library, and what it stands on.
include(CMakeFindDependencyMacro)
find_dependency(pugixml)
find_dependency(PkgConfig)
pkg_check_modules(LIBUSB REQUIRED IMPORTED_TARGET libusb-1.0)
include(${CMAKE_CURRENT_LIST_DIR}/marlune-targets.cmake)
