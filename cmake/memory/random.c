/* For the libraries under MemorySanitizer alone: it does not know that the C library's arc4random_buf sets what it is given, but
   it does know so of getrandom. */
#include <stdlib.h>
#include <sys/random.h>

void arc4random_buf(void* bytes, size_t size) {
    unsigned char* at = bytes;
    while (size > 0) {
        const size_t some = size < 256 ? size : 256; /* which are given whole */
        if (getrandom(at, some, 0) != (ssize_t)some) {
            abort();
        }
        at += some;
        size -= some;
    }
}
