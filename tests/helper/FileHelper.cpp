// A second process for the tests of shared files: it does to a file what its commands say, one a line on
// standard input, and says "done" or "failed" on standard output after each.
//
//   file_helper PATH     PATH is the file that all commands are about
//
//   open         opens it for appending, sharing everything, as JDE programs do
//   exclusive    opens it so that nobody else may (off Windows, where nothing forbids reading, it locks all
//                of it)
//   append TEXT  appends TEXT and a line feed
//   write BYTES  appends bytes, of two hexadecimal digits each
//   empty        sets its size to 0 while it stays open
//   close        closes it
//   rename       gives the file at PATH the name PATH.1
//   remove       removes the file at PATH

#include <cstddef>
#include <cstdio>
#include <iostream>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
int Open(const char* path, bool exclusive) {
    int file = -1;
    _sopen_s(&file, path, _O_RDWR | _O_APPEND | _O_CREAT | _O_BINARY, exclusive ? _SH_DENYRW : _SH_DENYNO,
             _S_IREAD | _S_IWRITE);
    return file;
}
bool Write(int file, const std::string& text) {
    return _write(file, text.data(), static_cast<unsigned>(text.size())) == static_cast<int>(text.size());
}
bool Empty(int file) { return _chsize_s(file, 0) == 0; }
bool Close(int file) { return _close(file) == 0; }
#else
int Open(const char* path, bool exclusive) {
    const int file = open(path, O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (exclusive && file >= 0) {
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        if (flock(file, LOCK_EX | LOCK_NB) != 0 || fcntl(file, F_SETLK, &whole) != 0) {
            return -1;
        }
    }
    return file;
}
bool Write(int file, const std::string& text) {
    return write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}
bool Empty(int file) { return ftruncate(file, 0) == 0; }
bool Close(int file) { return close(file) == 0; }
#endif

std::string BytesOf(const std::string& digits) {
    std::string bytes;
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
        bytes.push_back(static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        return 2;
    }
    const std::string path = argv[1];
    int file = -1;
    for (std::string line; std::getline(std::cin, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        bool done = false;
        if (line == "open" || line == "exclusive") {
            file = Open(path.c_str(), line == "exclusive");
            done = file >= 0;
        } else if (line.rfind("append ", 0) == 0) {
            done = Write(file, line.substr(7) + "\n");
        } else if (line.rfind("write ", 0) == 0) {
            done = Write(file, BytesOf(line.substr(6)));
        } else if (line == "empty") {
            done = Empty(file);
        } else if (line == "close") {
            done = Close(file);
        } else if (line == "rename") {
            done = std::rename(path.c_str(), (path + ".1").c_str()) == 0;
        } else if (line == "remove") {
            done = std::remove(path.c_str()) == 0;
        }
        std::cout << (done ? "done" : "failed") << std::endl;
    }
    return 0;
}
