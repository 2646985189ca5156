#pragma once

#include "platform/Errors.h"
#include "platform/TextEncoding.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <unistd.h>

namespace brindle::utility {

/// Prints the number of an error in a failed expectation.
inline void PrintTo(SystemError inError, std::ostream* outStream) {
    *outStream << "error " << static_cast<std::uint32_t>(inError);
}

} // namespace brindle::utility

namespace brindle::tests {

/// A test with a fresh directory, which names what is in it by text of the system.
class InTemporaryDirectory : public testing::Test {
protected:
    std::string Native(std::string const& inName) const { return mTemporary.Native(inName); }

    /// The library's form of the same path; "/" stands between names.
    UTF16String At(std::string const& inName) const {
        return mTemporary.Path(platform::FromCodePage(inName));
    }

    void Fill(std::string const& inName, std::string const& inContent) const {
        std::ofstream(Native(inName), std::ios::binary) << inContent;
    }

    /// Of what is in the directory, or of an absolute path.
    std::string ContentOf(std::filesystem::path const& inName) const {
        std::ifstream file(mTemporary.Native() / inName, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::ptrdiff_t EntryCount(std::string const& inName = "") const {
        return std::distance(std::filesystem::directory_iterator(Native(inName)), {});
    }

    TemporaryDirectory mTemporary;
};

/// Root may do everything, so what permissions forbid is tried as somebody else.
class OrdinaryUser {
public:
    OrdinaryUser() : mWasRoot(::geteuid() == 0 && ::seteuid(65534) == 0) {}
    OrdinaryUser(OrdinaryUser const&) = delete;
    OrdinaryUser& operator=(OrdinaryUser const&) = delete;
    ~OrdinaryUser() {
        if (mWasRoot && ::seteuid(0) != 0) {
            std::abort();
        }
    }

private:
    bool const mWasRoot;
};

} // namespace brindle::tests
