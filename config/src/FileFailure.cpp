#include <brindle/config/FileFailure.h>

namespace brindle::config {

FileFailure::~FileFailure() = default;

char const* FileFailure::Key() const noexcept {
    return nullptr;
}

UTF16String FileFailure::Path() const {
    return mPath == nullptr ? UTF16String() : *mPath;
}

UTF16String FileFailure::NewName() const {
    return {};
}

void FileFailure::SetFailure(FileOperation inOperation, utility::SystemError inCause) noexcept {
    mOperation = inOperation;
    mCause = inCause;
}

void FileFailure::SetPath(UTF16String const& inPath) {
    mPath = std::make_shared<UTF16String const>(inPath);
}

} // namespace brindle::config
