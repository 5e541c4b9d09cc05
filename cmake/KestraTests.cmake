# SPDX-License-Identifier: MIT
# Declares tests. The tests of a folder are one program, because linking and preparing a program takes longer than most
# tests. ctest lists and runs each by name in a separate process.

# Test code is compiled without optimization: QTest's macros expand to so much code that optimizing costs more than it
# saves. The code under test is optimized as usual.
add_library(kestra_test_flags INTERFACE)
target_link_libraries(kestra_test_flags INTERFACE kestra_flags Qt6::Test)
# Qt's definitions of a test's folders would prevent sharing precompiled headers; no test reads them.
target_compile_options(kestra_test_flags INTERFACE -O0 -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)

kestra_shared_headers(kestra_test_headers_bus LINK kestra_test_flags Qt6::DBus
  HEADERS <QtCore/QtCore> <QtDBus/QtDBus> <QtTest/QtTest>)
kestra_shared_headers(kestra_test_headers_widgets LINK kestra_test_flags Qt6::DBus Qt6::Widgets
  HEADERS <QtCore/QtCore> <QtDBus/QtDBus> <QtWidgets/QtWidgets> <QtTest/QtTest>)

# Runs the following command on a private session bus, which starts none of this machine's services.
set(KESTRA_TEST_BUS dbus-run-session --config-file=${PROJECT_SOURCE_DIR}/tests/session.conf --)

# kestra_add_test(NAME [BUS] [LABELS label...] [TIMEOUT seconds] COMMAND word...): adds one test to ctest, with the
# common environment. Widgets are drawn offscreen. A configurator that a test starts ends no daemon
# (KESTRA_SPARE_DAEMONS), because other daemons than the test's may run.
function(kestra_add_test name)
  cmake_parse_arguments(ARG "BUS" "TIMEOUT" "LABELS;COMMAND" ${ARGN})
  if(ARG_BUS)
    list(PREPEND ARG_COMMAND ${KESTRA_TEST_BUS})
  endif()
  add_test(NAME ${name} COMMAND ${ARG_COMMAND})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${ARG_TIMEOUT}
    LABELS "${ARG_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;KESTRA_SPARE_DAEMONS=1;KESTRA_BIN_DIR=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endfunction()

function(kestra_test_executable name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK;NEEDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin)
  target_link_libraries(${name} PRIVATE kestra_test_flags ${ARG_LINK})
  kestra_use_shared_headers(${name} kestra_test_headers)
  if(ARG_NEEDS)
    add_dependencies(${name} ${ARG_NEEDS})
  endif()
endfunction()

# kestra_tests(NAME TESTS test... [BUS_TESTS test...] [SOURCES file...] LINK library... [NEEDS target...]
#              [LABELS label...] [TIMEOUT seconds])
# Declares the program NAME with the tests test.cpp, which may be in a subfolder, and the SOURCES that they share. Each
# of the BUS_TESTS has a private session bus. NEEDS lists the targets that must be built before the tests run. Each test
# is also a target.
function(kestra_tests name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "TESTS;BUS_TESTS;SOURCES;LINK;NEEDS;LABELS" ${ARGN})
  foreach(path IN LISTS ARG_TESTS ARG_BUS_TESTS)
    get_filename_component(test ${path} NAME)
    set_property(SOURCE ${path}.cpp APPEND PROPERTY COMPILE_DEFINITIONS KESTRA_TEST_FUNCTION=${test})
    list(APPEND files ${path}.cpp)
    string(APPEND KESTRA_TEST_MAINS "int ${test}(int argc, char *argv[]);\n")
    string(APPEND KESTRA_TEST_ROWS "    {\"${test}\", ${test}},\n")
  endforeach()
  configure_file(${PROJECT_SOURCE_DIR}/tests/support/testprogram.cpp.in ${name}.cpp @ONLY)
  kestra_test_executable(${name} SOURCES ${files} ${ARG_SOURCES} ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp
                         LINK ${ARG_LINK} NEEDS ${ARG_NEEDS})
  foreach(path IN LISTS ARG_TESTS ARG_BUS_TESTS)
    get_filename_component(test ${path} NAME)
    set(bus)
    if(path IN_LIST ARG_BUS_TESTS)
      set(bus BUS)
    endif()
    kestra_add_test(${test} ${bus} LABELS ${ARG_LABELS} TIMEOUT ${ARG_TIMEOUT} COMMAND $<TARGET_FILE:${name}> ${test})
    add_custom_target(${test} DEPENDS ${name})
  endforeach()
endfunction()

# kestra_test(NAME [SOURCES file...] LINK library... [NEEDS target...] [BUS] [LABELS label...] [TIMEOUT seconds])
# Declares the test NAME.cpp as a separate program. This is for tests that restart themselves or replace functions of the
# C library, and for single tests that run under ThreadSanitizer (label link): the preset tsan builds only the programs
# of those, and a small one builds faster.
function(kestra_test name)
  cmake_parse_arguments(ARG "BUS" "TIMEOUT" "SOURCES;LINK;NEEDS;LABELS" ${ARGN})
  kestra_test_executable(${name} SOURCES ${name}.cpp ${ARG_SOURCES} LINK ${ARG_LINK} NEEDS ${ARG_NEEDS})
  set(bus)
  if(ARG_BUS)
    set(bus BUS)
  endif()
  kestra_add_test(${name} ${bus} LABELS ${ARG_LABELS} TIMEOUT ${ARG_TIMEOUT} COMMAND $<TARGET_FILE:${name}>)
endfunction()
