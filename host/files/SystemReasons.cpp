#include "host/files/SystemReasons.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace brindle::host {

namespace fs = std::filesystem;

namespace {

std::string TextOf(std::error_code inError) {
    std::string text = inError.message();
    if (!text.empty()) {
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    }
    return text;
}

/// Empty if the system lets this process open the file.
std::string WhyNotOpened(std::string const& inPath, char const* inMode) {
    errno = 0;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(inPath.c_str(), inMode),
                                                               std::fclose);
    return file != nullptr ? "" : TextOf({errno, std::generic_category()});
}

} // namespace

std::string WhyUnreadable(std::string const& inPath) {
    std::error_code error;
    fs::file_status const status = fs::status(inPath, error);
    if (error) {
        return TextOf(error);
    }
    if (!fs::is_regular_file(status)) { // opening others could block
        return fs::is_directory(status) ? "is a directory" : "is no regular file";
    }
    std::string const reason = WhyNotOpened(inPath, "rb");
    return reason.empty() ? "is being written by another program" : reason;
}

std::string WhyUnwritable(std::string const& inPath) {
    std::error_code error;
    fs::file_status const status = fs::status(inPath, error);
    if (fs::is_regular_file(status)) {
        std::string const reason = WhyNotOpened(inPath, "r+b");
        return reason.empty() ? "cannot be replaced, it may be open for writing" : reason;
    }
    if (fs::exists(status)) {
        return fs::is_directory(status) ? "is a directory" : "is no regular file";
    }
    if (status.type() != fs::file_type::not_found) {
        return TextOf(error);
    }
    fs::path const parent = fs::path(inPath).parent_path();
    if (!parent.empty() && !fs::is_directory(parent, error)) {
        return error ? TextOf(error) : "not a directory";
    }
    return "its directory takes no new file";
}

} // namespace brindle::host
