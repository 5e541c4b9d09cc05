// SPDX-License-Identifier: MIT
// Every test includes this header, so that its main() can be one of several in the program of its folder
// (cmake/KestraTests.cmake). In a test that is a program of its own it changes nothing.
#pragma once

#ifdef KESTRA_TEST_FUNCTION
#define main KESTRA_TEST_FUNCTION
#endif
