# In a unity build (CMAKE_UNITY_BUILD) the files of one folder are compiled as one, which takes a
# third of the time. A name that is local to a file is therefore unique in its folder.
function(marlune_unity target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source ${sources})
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE group)
        cmake_path(GET group PARENT_PATH group)
        cmake_path(RELATIVE_PATH group BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
        string(MAKE_C_IDENTIFIER ${group} group)
        set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${group})
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()
