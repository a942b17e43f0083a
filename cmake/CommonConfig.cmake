# Language level, warnings and the sanitizer switch, carried by one interface target that every
# target of the project links.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

option(JUKARRA_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

add_library(jukarra_options INTERFACE)
target_compile_options(jukarra_options INTERFACE
    -Wall -Wextra -Werror -Wshadow -Wold-style-cast -Wmissing-declarations -Wformat=2
    -Wnon-virtual-dtor)
target_compile_definitions(jukarra_options INTERFACE QT_NO_KEYWORDS _FILE_OFFSET_BITS=64)
if(JUKARRA_SANITIZE)
    target_compile_options(jukarra_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(jukarra_options INTERFACE -fsanitize=address,undefined)
endif()

