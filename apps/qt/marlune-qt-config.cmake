# The component qt of the package marlune, which includes this file.
find_dependency(Qt6 COMPONENTS Widgets)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/marlune-qt-targets.cmake)
