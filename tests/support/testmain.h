// SPDX-License-Identifier: MIT
// Every test includes this header. With it, its main() can be one of several in the program of its folder
// (cmake/KestraTests.cmake). The header changes nothing in a test that is a separate program.
#pragma once

#ifdef KESTRA_TEST_FUNCTION
#define main KESTRA_TEST_FUNCTION
#endif
