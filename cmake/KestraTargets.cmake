# SPDX-License-Identifier: MIT
# How every library, executable and test of the project is declared, so that flags live in one place.

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

# kestra_library(NAME SOURCES file... LINK library...)
function(kestra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PUBLIC kestra_flags ${ARG_LINK})
endfunction()

# kestra_executable(NAME SOURCES file... LINK library...)
function(kestra_executable name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PRIVATE kestra_flags ${ARG_LINK})
endfunction()

# Runs what follows on a session bus of its own, which starts none of this machine's services.
set(KESTRA_TEST_BUS dbus-run-session --config-file=${PROJECT_SOURCE_DIR}/tests/session.conf --)

# kestra_test(NAME SOURCES file... LINK library... [BUS] [LABELS label...] [TIMEOUT seconds])
# BUS: the test runs on a private session bus of its own. Widgets are drawn offscreen. A configurator that a test starts
# ends no daemon (KESTRA_SPARE_DAEMONS): there may be others than the test's.
function(kestra_test name)
  cmake_parse_arguments(ARG "BUS" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin)
  target_link_libraries(${name} PRIVATE kestra_flags Qt6::Test ${ARG_LINK})
  if(ARG_BUS)
    add_test(NAME ${name} COMMAND ${KESTRA_TEST_BUS} $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${ARG_TIMEOUT}
    LABELS "${ARG_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;KESTRA_SPARE_DAEMONS=1;KESTRA_BIN_DIR=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endfunction()
