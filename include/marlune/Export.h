// Marks what the shared library offers; everything else of it stays hidden. Nothing for a host to
// use.
#pragma once

#if defined(_WIN32)
#define MARLUNE_EXPORT  // the control is offered by COM there, not by a C++ library
#else
#define MARLUNE_EXPORT __attribute__((visibility("default")))
#endif
