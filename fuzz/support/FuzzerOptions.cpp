// How the fuzz targets run where nothing else is asked for: for many inputs a second.
#include <vector>

// Of the blocks that were given back few are kept, and of where they came from little is remembered: an input
// that breaks something tells more when it is run alone with other options.
extern "C" const char* __asan_default_options() { return "malloc_context_size=2:quarantine_size_mb=32"; }

// The default way to choose inputs keeps account of how rare each branch is, which takes longer than running
// them.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static char evenly[] = "-entropic=0";
    static std::vector<char*> arguments(*argv, *argv + *argc);
    arguments.insert(arguments.begin() + 1, evenly);
    arguments.push_back(nullptr);
    *argc += 1;
    *argv = arguments.data();
    return 0;
}
