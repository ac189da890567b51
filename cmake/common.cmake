# What the native build and the Windows server's have in common: the language, the options of every
# target, the version as it is shown, the portable core and the recordings. Included after project().
get_filename_component(KAL_ROOT ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# What is written while building is included by the path that its source has.
set(KAL_GENERATED ${CMAKE_BINARY_DIR}/generated)

# The version is shown with two digits in the middle and four at the end.
string(REGEX MATCH "..$" KAL_MINOR "0${PROJECT_VERSION_MINOR}")
string(REGEX MATCH "....$" KAL_PATCH "000${PROJECT_VERSION_PATCH}")
set(KAL_VERSION_TEXT ${PROJECT_VERSION_MAJOR}.${KAL_MINOR}.${KAL_PATCH})
configure_file(${CMAKE_CURRENT_LIST_DIR}/Version.h.in ${KAL_GENERATED}/cmake/Version.h @ONLY)

set(KAL_SANITIZE "" CACHE STRING "Sanitizers to build with, for instance address,undefined or thread")

add_library(kal_options INTERFACE)
target_include_directories(kal_options INTERFACE ${KAL_ROOT})
target_include_directories(kal_options SYSTEM INTERFACE ${KAL_GENERATED})
target_compile_options(kal_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Wcast-align -Wnull-dereference -Wdouble-promotion -Wformat=2
  -Wimplicit-fallthrough -Werror
  # gcc 12 sees overlapping copies in std::string concatenations that are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(KAL_SANITIZE)
  target_compile_options(kal_options INTERFACE
    -fsanitize=${KAL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kal_options INTERFACE -fsanitize=${KAL_SANITIZE})
endif()

# The portable core: the C++ standard library and nothing else.
set(KAL_CORE_FOLDERS platform siblings frame checks save modify checker)
list(TRANSFORM KAL_CORE_FOLDERS REPLACE "(.+)" "${KAL_ROOT}/\\1/*.cpp" OUTPUT_VARIABLE KAL_CORE_GLOBS)
file(GLOB KAL_CORE_SOURCES CONFIGURE_DEPENDS ${KAL_CORE_GLOBS})
add_library(kal_core STATIC ${KAL_CORE_SOURCES})
target_link_libraries(kal_core PUBLIC $<BUILD_INTERFACE:kal_options>)

# Conversations with siblings, written down and played back; for any host.
file(GLOB KAL_RECORDS_SOURCES CONFIGURE_DEPENDS ${KAL_ROOT}/records/*.cpp)
add_library(kal_records STATIC ${KAL_RECORDS_SOURCES})
target_link_libraries(kal_records PUBLIC kal_core)
