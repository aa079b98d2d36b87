#pragma once

// Marks what the shared library exports; everything else stays hidden. KALVIO_BUILDING_LIBRARY is defined
// while the library itself is compiled, KALVIO_STATIC where its objects are linked into a program directly.
#if defined(_WIN32)
#if defined(KALVIO_BUILDING_LIBRARY)
#define KALVIO_API __declspec(dllexport)
#elif defined(KALVIO_STATIC)
#define KALVIO_API
#else
#define KALVIO_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KALVIO_API __attribute__((visibility("default")))
#else
#define KALVIO_API
#endif

// Lets the compiler check the arguments of a function that formats as printf does: the position of the format
// and that of the first argument, from 1.
#if defined(__GNUC__)
#define KALVIO_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define KALVIO_PRINTF(text, first)
#endif
