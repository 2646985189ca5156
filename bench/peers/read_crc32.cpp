// What a person would write to sum one file: a loop of read and zlib's crc32.
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
    int const file = ::open(argc > 1 ? argv[1] : "", O_RDONLY);
    if (file < 0) {
        return 1;
    }
    std::vector<Bytef> block(128 * 1024);
    uLong crc = crc32(0, nullptr, 0);
    unsigned long long size = 0;
    for (ssize_t count; (count = ::read(file, block.data(), block.size())) > 0;) {
        crc = crc32(crc, block.data(), static_cast<uInt>(count));
        size += static_cast<unsigned long long>(count);
    }
    std::printf("%08lx  %llu  %s\n", crc, size, argv[1]);
    return 0;
}
