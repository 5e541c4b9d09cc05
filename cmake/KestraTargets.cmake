# SPDX-License-Identifier: MIT
# Declares every library, executable and test of the project, to keep their flags in one place.

add_library(kestra_flags INTERFACE)
target_compile_definitions(kestra_flags INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  KESTRA_VERSION="${PROJECT_VERSION}")
target_compile_options(kestra_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${KESTRA_WARNINGS_AS_ERRORS}>:-Werror>)
target_include_directories(kestra_flags INTERFACE ${PROJECT_SOURCE_DIR})

set(KESTRA_SANITIZERS "" CACHE STRING "Sanitizers for all code, as -fsanitize takes them: address,undefined or thread")
if(KESTRA_SANITIZERS)
  add_compile_options(-fsanitize=${KESTRA_SANITIZERS} -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KESTRA_SANITIZERS})
endif()

# Headers that nearly every file of a kind includes are compiled once and shared. Reading Qt's headers takes longer than
# compiling a file's own code. KESTRA_PRECOMPILE=OFF builds every file with only its own includes and thus finds missing
# ones; the preset tsan does so.
option(KESTRA_PRECOMPILE "Share precompiled Qt headers between the targets" ON)

# kestra_shared_headers(NAME LINK library... HEADERS header...): declares the target that holds a set of precompiled
# headers.
function(kestra_shared_headers name)
  cmake_parse_arguments(ARG "" "" "LINK;HEADERS" ${ARGN})
  if(NOT KESTRA_PRECOMPILE)
    return()
  endif()
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "// Holds the precompiled headers ${name}.\n")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE kestra_flags ${ARG_LINK})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

kestra_shared_headers(kestra_headers_bus LINK Qt6::DBus HEADERS <QtCore/QtCore> <QtDBus/QtDBus>)
kestra_shared_headers(kestra_headers_widgets LINK Qt6::DBus Qt6::Widgets
  HEADERS <QtCore/QtCore> <QtDBus/QtDBus> <QtWidgets/QtWidgets>)

# Sets `result` to whether `target` links `library`, directly or indirectly.
function(kestra_links target library result)
  get_target_property(linked ${target} LINK_LIBRARIES)
  get_target_property(passed_on ${target} INTERFACE_LINK_LIBRARIES)
  set(${result} OFF PARENT_SCOPE)
  foreach(each IN LISTS linked passed_on)
    if(each STREQUAL library)
      set(${result} ON PARENT_SCOPE)
      return()
    endif()
    if(each MATCHES "^kestra_" AND TARGET ${each})
      kestra_links(${each} ${library} found)
      if(found)
        set(${result} ON PARENT_SCOPE)
        return()
      endif()
    endif()
  endforeach()
endfunction()

# Gives `target` the shared headers `prefix`_widgets or `prefix`_bus, depending on what it links; none if it links
# neither.
function(kestra_use_shared_headers target prefix)
  foreach(kind "widgets;Qt6::Widgets" "bus;Qt6::DBus")
    list(GET kind 0 name)
    list(GET kind 1 library)
    kestra_links(${target} ${library} is_linked)
    if(is_linked AND TARGET ${prefix}_${name})
      # The compiler accepts precompiled headers only with the definitions with which they were made.
      target_link_libraries(${target} PRIVATE Qt6::DBus)
      target_precompile_headers(${target} REUSE_FROM ${prefix}_${name})
      return()
    endif()
  endforeach()
endfunction()

# kestra_library(NAME SOURCES file... LINK library...)
function(kestra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PUBLIC kestra_flags ${ARG_LINK})
  kestra_use_shared_headers(${name} kestra_headers)
endfunction()

# kestra_executable(NAME SOURCES file... LINK library...)
function(kestra_executable name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PRIVATE kestra_flags ${ARG_LINK})
endfunction()
