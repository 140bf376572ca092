# A box is one library of the architecture. Its headers are reached as "<box>/<header>", and only by
# targets that link the box: each box gets an include directory of its own that holds nothing but a
# link to its folder. An include that the architecture forbids therefore doesn't compile.

find_program(CCACHE ccache)
if(CCACHE)
  # Without these it keeps nothing that is compiled with a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

add_library(varzelin_warnings INTERFACE)
target_compile_options(varzelin_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# Clang's -Wconversion holds more than GCC's.
target_compile_options(varzelin_warnings INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
# GCC 12 sees overlapping copies in std::string's own operator+ when it optimizes (its bug 105651).
target_compile_options(varzelin_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# varzelin_box(<path below src> [FOLDERS <inner folders>...] [USES <box targets>...] [BUILT_ON <box targets>...]): a
# library from all sources in the folder and in those inner folders. The target's name is the path with '_' for '/'.
# USES are handed on to those that use the box; BUILT_ON are its own affair, and no header of it may include them.
function(varzelin_box path)
  cmake_parse_arguments(BOX "" "" "FOLDERS;USES;BUILT_ON" ${ARGN})
  string(REPLACE "/" "_" target ${path})
  set(folder ${PROJECT_SOURCE_DIR}/src/${path})
  set(folders ${folder})
  list(TRANSFORM BOX_FOLDERS PREPEND ${folder}/)
  list(APPEND folders ${BOX_FOLDERS})
  list(TRANSFORM folders APPEND /*.cpp OUTPUT_VARIABLE source_patterns)
  list(TRANSFORM folders APPEND /*.h OUTPUT_VARIABLE header_patterns)
  file(GLOB sources CONFIGURE_DEPENDS ${source_patterns})
  file(GLOB headers CONFIGURE_DEPENDS ${header_patterns})
  set(include_root ${PROJECT_BINARY_DIR}/include/${target})
  get_filename_component(link_parent ${include_root}/${path} DIRECTORY)
  file(MAKE_DIRECTORY ${link_parent})
  file(CREATE_LINK ${folder} ${include_root}/${path} SYMBOLIC)
  if(sources)
    add_library(${target} STATIC ${sources} ${headers})
    target_include_directories(${target} PUBLIC ${include_root})
    target_link_libraries(${target} PUBLIC ${BOX_USES} PRIVATE ${BOX_BUILT_ON} varzelin_warnings)
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${include_root})
    target_link_libraries(${target} INTERFACE ${BOX_USES})
  endif()
endfunction()
