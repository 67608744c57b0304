/// @file
/// What a program must be compiled with to use Plovix. Objects of the standard library, exceptions and
/// run-time types are shared between the libraries and their hosts; with other settings a host would link and
/// then fail in unexpected places. Every header that applications include includes this one, at least
/// indirectly.
#pragma once

#if __cplusplus < 202002L
#error "Plovix needs C++20: compile with -std=c++20, or a newer standard"
#endif
#if (defined(__clang__) && __clang_major__ < 16) || (!defined(__clang__) && __GNUC__ < 12)
#error "Plovix needs g++ 12 or newer, or clang 16 or newer"
#endif
#ifndef __cpp_rtti
#error "Plovix needs run-time type information: compile without -fno-rtti"
#endif
#ifndef __cpp_exceptions
#error "Plovix needs exceptions: compile without -fno-exceptions"
#endif
#ifdef _GLIBCXX_DEBUG
#error "_GLIBCXX_DEBUG changes the containers that Plovix's libraries share: take _GLIBCXX_ASSERTIONS instead"
#endif
