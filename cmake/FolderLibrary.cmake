# One library per folder of src/, and the lines between folders drawn by the build.
#
#   jukarra_add_folder_library(<folder> [OBJECT]
#       SOURCES <files of the folder, headers included>
#       [USES <libraries whose headers this folder's headers or sources include>]
#       [PRIVATE_USES <libraries only the sources use, e.g. TagLib>])
#
# makes the library jukarra_<folder> ("browse/ui" gives jukarra_browse_ui). src/ is on no include
# path: each library exposes the headers it lists, and only them, under
# <build>/include/jukarra_<folder>/<folder>/, as links to the files in src/. So
# #include "catalogue/SongCache.h" resolves only in a target that links jukarra_catalogue, and a
# folder that includes one it does not use fails to build. A header left out of SOURCES cannot be
# included from outside its own folder either.
#
# OBJECT makes an object library, for sources that must all reach the program (the command-line
# tool's commands register themselves from static objects, which an archive would drop).

function(jukarra_add_folder_library folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "OBJECT" "" "SOURCES;USES;PRIVATE_USES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "jukarra_add_folder_library(${folder}): unknown ${arg_UNPARSED_ARGUMENTS}")
    endif()
    string(REPLACE "/" "_" name "jukarra_${folder}")
    set(source_dir "${PROJECT_SOURCE_DIR}/src/${folder}")
    set(include_dir "${PROJECT_BINARY_DIR}/include/${name}")

    # Made afresh at each configure, so a header taken off the list is no longer reachable.
    file(REMOVE_RECURSE "${include_dir}")
    file(MAKE_DIRECTORY "${include_dir}/${folder}")
    set(paths "")
    foreach(source IN LISTS arg_SOURCES)
        if(NOT EXISTS "${source_dir}/${source}")
            message(FATAL_ERROR "jukarra_add_folder_library(${folder}): no file src/${folder}/${source}")
        endif()
        list(APPEND paths "${source_dir}/${source}")
        if(source MATCHES "\\.h$")
            file(CREATE_LINK "${source_dir}/${source}" "${include_dir}/${folder}/${source}" SYMBOLIC)
        endif()
    endforeach()

    if(arg_OBJECT)
        add_library(${name} OBJECT ${paths})
    else()
        add_library(${name} STATIC ${paths})
    endif()
    target_include_directories(${name} PUBLIC "${include_dir}")
    target_link_libraries(${name} PUBLIC ${arg_USES} jukarra_options PRIVATE ${arg_PRIVATE_USES})
endfunction()
