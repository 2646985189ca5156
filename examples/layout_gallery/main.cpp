// Draws the trees in a directory as one SVG page, a gallery of layouts, into a file or to standard
// output.
#include "Gallery.h"

#include <brindle/config/ErrorManager.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace {

/// Throws every error that the library reports.
class ThrowingErrorManager final : public brindle::config::ErrorManager {
    using Value = brindle::config::ReplacementValue;

    void ThrowErrorImpl(brindle::config::ErrorLevel, char const* inKey, std::uint32_t, std::int32_t,
                        bool, Value const&, Value const&, Value const&, Value const&) override {
        throw std::runtime_error(std::strchr(inKey, '=') + 1); // the default text of the key
    }
};

int Run(char const* inDirectory, char const* inFile) {
    auto const exhibits = layout_gallery::Exhibits(inDirectory);
    if (inFile == nullptr) {
        layout_gallery::WriteGallery(std::cout, exhibits);
        return std::cout.flush() ? 0 : 1;
    }
    std::ofstream file(inFile, std::ios::binary);
    layout_gallery::WriteGallery(file, exhibits);
    file.close();
    if (!file) {
        std::cerr << inFile << ": cannot be written\n";
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: example_layout_gallery DIRECTORY [FILE]\n";
        return 2;
    }
    ThrowingErrorManager errorManager;
    brindle::config::ErrorManager::Set(&errorManager);
    std::unique_ptr<brindle::xml::DocParserFactory> factory =
        std::make_unique<brindle::xml::ExpatParserFactory>();
    brindle::xml::SetParserFactory(factory);
    int status = 1;
    try {
        status = Run(argv[1], argc > 2 ? argv[2] : nullptr);
    } catch (std::exception const& error) {
        std::cerr << error.what() << '\n';
    }
    brindle::config::ErrorManager::Set(nullptr);
    return status;
}
