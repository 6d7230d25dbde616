// The tests run in the user's locale, as the window does: what the system writes and reads must not follow
// it.
#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace {

const bool kLocaleIsSet = [] {
    // A suite that is started for one of our own locales must not pass because there was none.
    if (std::setlocale(LC_ALL, "") == nullptr && std::getenv("LOCPATH") != nullptr) {
        std::fputs("The locale of the environment is not there.\n", stderr);
        std::exit(1);
    }
    return true;
}();

} // namespace
