// What a person would write to sum files: for each, a loop of read and zlib's crc32.
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
    std::vector<Bytef> block(128 * 1024);
    for (int i = 1; i < argc; ++i) {
        int const file = ::open(argv[i], O_RDONLY);
        if (file < 0) {
            return 1;
        }
        uLong crc = crc32(0, nullptr, 0);
        unsigned long long size = 0;
        for (ssize_t count; (count = ::read(file, block.data(), block.size())) > 0;) {
            crc = crc32(crc, block.data(), static_cast<uInt>(count));
            size += static_cast<unsigned long long>(count);
        }
        ::close(file);
        std::printf("%08lx  %llu  %s\n", crc, size, argv[i]);
    }
    return 0;
}
