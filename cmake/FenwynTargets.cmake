# Settings and helper functions that every target of the tree uses.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_SHARED_LIBRARY_PREFIX "")

# Windows 7 is the oldest supported system; newer functions are bound at run time.
add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT
                        _WIN32_WINNT=0x0601 WINVER=0x0601 __USE_MINGW_ANSI_STDIO=0)

# Log lines show sources as .\common\X.cpp, wherever the tree was checked out. The last matching map wins.
add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=./ -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/src/=./)

# A damaged stack frame ends the program instead of running on. The toolchain has no control-flow guard.
add_compile_options(-fstack-protector-strong)

# -static: no compiler runtime library to ship; --kill-at: plain export names on 32 bit; without the time of linking, two
# builds of one commit are the same bytes. With sections at whole pages of the file, every system maps them, and processes
# share them; some would read them into memory otherwise.
add_link_options(-static -fstack-protector-strong -Wl,--kill-at -Wl,--tsaware -Wl,--no-insert-timestamp
                 -Wl,--file-alignment,4096)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_link_options(-s)
endif()

# The canary of the stack protector. Every target gets it; the linker takes it for files that have protected functions.
add_library(fenwyn_stack_guard STATIC "${CMAKE_CURRENT_LIST_DIR}/StackGuard.cpp")
target_link_libraries(fenwyn_stack_guard PUBLIC advapi32)
link_libraries(fenwyn_stack_guard)

# The default, -O3, takes longer to compile and makes nothing noticeably faster.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# fenwyn_warnings(<target>...): our own code compiles without a single warning.
function(fenwyn_warnings)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE
      $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wnull-dereference -Werror
        -Wno-error=null-dereference -Wno-cast-function-type>
      $<$<COMPILE_LANGUAGE:C>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror>)
  endforeach()
endfunction()

# The headers that nearly every source includes take longer to read than the sources, so they are precompiled. Every
# source still includes what it uses; tests/long/test_builds.py builds without precompiled headers.
option(FENWYN_PRECOMPILE "Compile the headers of the system and the standard library beforehand" ON)
if(FENWYN_PRECOMPILE)
  add_library(fenwyn_headers STATIC EXCLUDE_FROM_ALL "${CMAKE_CURRENT_LIST_DIR}/headers.cpp")
  target_precompile_headers(fenwyn_headers PRIVATE
    <windows.h> <objidl.h> <gdiplus.h> <algorithm> <array> <atomic> <functional> <memory> <optional> <string>
    <string_view> <utility> <vector>)
  fenwyn_warnings(fenwyn_headers)
endif()
fenwyn_warnings(fenwyn_stack_guard)

# fenwyn_code(<target>...): the settings of every target with our own sources.
function(fenwyn_code)
  fenwyn_warnings(${ARGN})
  if(FENWYN_PRECOMPILE)
    foreach(target IN LISTS ARGN)
      target_precompile_headers(${target} REUSE_FROM fenwyn_headers)
      # The compiler forgets which precompiled headers belong to the system, and warns about copies of short texts in
      # them.
      target_compile_options(${target} PRIVATE
        -Wno-array-bounds -Wno-stringop-overread -Wno-stringop-overflow)
    endforeach()
  endif()
endfunction()

# fenwyn_table(<variable> <file.json.in> <table>): the JSON text that the compiler's preprocessor makes of a table of
# rows. Thus sources, which include the table, and the build share it.
function(fenwyn_table variable file table)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}" "${table}")
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -E -P -x c++ "${CMAKE_CURRENT_SOURCE_DIR}/${file}"
                  OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# fenwyn_captions_of(<target>): links the captions of the functions, in every language, into a program that writes function
# lists.
set(FENWYN_CAPTION_RESOURCES "${CMAKE_SOURCE_DIR}/companions/captions/Captions.rc")
function(fenwyn_captions_of target)
  target_sources(${target} PRIVATE "${FENWYN_CAPTION_RESOURCES}")
  file(GLOB inputs CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/companions/captions/CaptionIds.h"
       "${CMAKE_SOURCE_DIR}/src/res/Languages.rc" "${CMAKE_SOURCE_DIR}/src/res/strings/*")
  set_source_files_properties("${FENWYN_CAPTION_RESOURCES}" PROPERTIES OBJECT_DEPENDS "${inputs}"
                              INCLUDE_DIRECTORIES "${CMAKE_SOURCE_DIR}/companions/captions;${CMAKE_SOURCE_DIR}/src/res")
endfunction()

# `stage` builds everything that ships, without tests.
add_custom_target(stage)

# fenwyn_version(<target>): version information, which the properties of the file show; a target whose resources have
# their own, with translations, keeps it.
function(fenwyn_version target)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.rc$")
  foreach(source IN LISTS sources)
    get_filename_component(source "${source}" ABSOLUTE)
    if(NOT EXISTS "${source}")
      continue()  # generated: pictures only
    endif()
    file(STRINGS "${source}" own REGEX "VERSIONINFO|VersionInfo\\.rc")
    if(own)
      return()
    endif()
  endforeach()
  set(TARGET_FILE_TYPE VFT_DLL)
  set(TARGET_FILE ${target}.dll)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(TARGET_FILE_TYPE VFT_APP)
    set(TARGET_FILE ${target}.exe)
  endif()
  configure_file("${CMAKE_SOURCE_DIR}/cmake/Version.rc.in" "${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc" @ONLY)
  target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc")
  set_property(SOURCE "${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc" APPEND PROPERTY
               INCLUDE_DIRECTORIES "${CMAKE_SOURCE_DIR}/src/res")
endfunction()

# fenwyn_base_address(<target>): a library's preferred address follows from its name. The linker would take it from the
# path of the file, so that builds in two folders differed.
function(fenwyn_base_address target)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    return()
  endif()
  string(MD5 digest "${target}")
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    string(SUBSTRING "${digest}" 0 4 place)
    target_link_options(${target} PRIVATE "-Wl,--image-base,0x3${place}0000")
  else()
    string(SUBSTRING "${digest}" 0 3 place)
    target_link_options(${target} PRIVATE "-Wl,--image-base,0x6${place}0000")
  endif()
endfunction()

# fenwyn_emergency_memory(<target>): a library with C++ code gives back all its memory when it is unloaded.
function(fenwyn_emergency_memory target)
  get_target_property(type ${target} TYPE)
  get_target_property(language ${target} LINKER_LANGUAGE)
  if(NOT type STREQUAL "EXECUTABLE" AND NOT language STREQUAL "C")
    target_sources(${target} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/EmergencyMemory.cpp")
  endif()
endfunction()

# fenwyn_ship(<target> [subfolder]): the target's file goes into the stage folder.
function(fenwyn_ship target)
  add_dependencies(stage ${target})
  fenwyn_emergency_memory(${target})
  fenwyn_version(${target})
  fenwyn_base_address(${target})
  set(folder "${FENWYN_STAGE_DIR}")
  if(ARGC GREATER 1)
    set(folder "${folder}/${ARGV1}")
  endif()
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${folder}"
    LIBRARY_OUTPUT_DIRECTORY "${folder}"
    ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/implib")
endfunction()

# fenwyn_unit_test(<name> SOURCES ... [LIBS ...] [RESOURCES file.rc [RESOURCE_FOLDERS ...]]): one GoogleTest program, run through the emulator.
# The program is written to build/<preset>/unit/; `ctest` and ./test run them one at a time.
function(fenwyn_unit_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;RESOURCES;RESOURCE_FOLDERS" ${ARGN})
  if(ARG_RESOURCES)
    # Through this folder the list of languages finds the texts of the program that includes it.
    get_filename_component(file "${ARG_RESOURCES}" ABSOLUTE)
    get_filename_component(folder "${file}" DIRECTORY)
    set_property(SOURCE "${ARG_RESOURCES}" APPEND PROPERTY
                 INCLUDE_DIRECTORIES ${ARG_RESOURCE_FOLDERS} "${folder}" "${CMAKE_SOURCE_DIR}/src/res")
    # A changed text is compiled into the tests too.
    set(globs "${folder}/*" "${folder}/strings/*" "${CMAKE_SOURCE_DIR}/src/res/strings/*")
    foreach(other IN LISTS ARG_RESOURCE_FOLDERS)
      list(APPEND globs "${other}/strings/*")
    endforeach()
    file(GLOB texts CONFIGURE_DEPENDS ${globs})
    list(FILTER texts INCLUDE REGEX "\\.(rc|h|ico|manifest)$")
    set_property(SOURCE "${ARG_RESOURCES}" APPEND PROPERTY OBJECT_DEPENDS ${texts})
  endif()
  add_executable(${name} ${ARG_SOURCES} ${ARG_RESOURCES})
  fenwyn_warnings(${name})
  # Tests are compiled once and run once, so compiling dominates. The headers that all of them include are precompiled.
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} REUSE_FROM fenwyn_test_main)
  # Several at a time, which halves the time once more: private names differ within a folder of tests. The compiler
  # takes the test classes of such a group for public ones with private parts.
  set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 5)
  target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
  foreach(source IN LISTS ARG_SOURCES)
    get_filename_component(source "${source}" ABSOLUTE)
    if(NOT source MATCHES "^${CMAKE_SOURCE_DIR}/tests/")  # what ships stays by itself
      set_property(SOURCE "${source}" PROPERTY SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} gmock gtest fenwyn_test_main)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/unit" "${CMAKE_SOURCE_DIR}/tests")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/unit")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES RUN_SERIAL TRUE TIMEOUT 300)
endfunction()
