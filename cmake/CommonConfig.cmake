# Language level, warnings and the sanitizer switch, carried by one interface target that every
# target of the project links.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

option(JUKARRA_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(JUKARRA_SANITIZE_THREAD "Build with ThreadSanitizer (not with JUKARRA_SANITIZE)" OFF)
# Off by default so that a newer compiler's new warnings don't stop a distribution's build; CI
# turns it on for every build it makes.
option(JUKARRA_WERROR "Treat compiler warnings as errors" OFF)
if(JUKARRA_SANITIZE AND JUKARRA_SANITIZE_THREAD)
    message(FATAL_ERROR "JUKARRA_SANITIZE and JUKARRA_SANITIZE_THREAD exclude each other: "
        "ThreadSanitizer cannot run beside AddressSanitizer")
endif()

add_library(jukarra_options INTERFACE)
target_compile_options(jukarra_options INTERFACE
    -Wall -Wextra -Wshadow -Wold-style-cast -Wmissing-declarations -Wformat=2
    -Wnon-virtual-dtor)
if(JUKARRA_WERROR)
    target_compile_options(jukarra_options INTERFACE -Werror)
endif()
target_compile_definitions(jukarra_options INTERFACE QT_NO_KEYWORDS _FILE_OFFSET_BITS=64)
if(JUKARRA_SANITIZE)
    target_compile_options(jukarra_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(jukarra_options INTERFACE -fsanitize=address,undefined)
endif()
if(JUKARRA_SANITIZE_THREAD)
    target_compile_options(jukarra_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(jukarra_options INTERFACE -fsanitize=thread)
endif()

