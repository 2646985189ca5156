#pragma once

#include <brindle/filesupport/FileKind.h>

#include <stdexcept>

// How work on one file fails; `what()` is the reason, for a diagnostic that names the file.
namespace brindle::host {

/// A file cannot be read.
class unreadable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is no such file.
class missing_error : public unreadable_error {
public:
    missing_error() : unreadable_error("no such file or directory") {}
};

/// The path leads to something other than a regular file.
class irregular_error : public unreadable_error {
public:
    explicit irregular_error(filesupport::FileKind inKind);

    filesupport::FileKind Kind() const noexcept { return mKind; }

private:
    filesupport::FileKind mKind;
};

/// The file changed while it was read.
class unsteady_error : public unreadable_error {
public:
    using unreadable_error::unreadable_error;
};

/// A file cannot be written.
class unwritable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace brindle::host
