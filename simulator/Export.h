// Export.h - marks the entry points of the stand-in libraries.
#pragma once

#ifdef _WIN32
#define SIMULATOR_EXPORT extern "C" __declspec(dllexport)
#else
#define SIMULATOR_EXPORT extern "C" __attribute__((visibility("default")))
#endif
