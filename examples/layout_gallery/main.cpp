// Draws a gallery of layouts as an SVG page: into the file that it is given, or to standard output.
#include "Gallery.h"

#include <fstream>
#include <iostream>

int main(int argc, char** argv) {
    if (argc < 2) {
        layout_gallery::WriteGallery(std::cout, layout_gallery::Exhibits());
        return std::cout.flush() ? 0 : 1;
    }
    std::ofstream file(argv[1], std::ios::binary);
    layout_gallery::WriteGallery(file, layout_gallery::Exhibits());
    file.close();
    if (!file) {
        std::cerr << argv[1] << ": cannot be written\n";
        return 1;
    }
    return 0;
}
