#include <brindle/config/Describe.h>

#include <brindle/config/Localizer.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace brindle::config {

namespace {

using utility::SystemError;

class French : public Localizer {
public:
    French() { Set(this); }
    ~French() override { Set(nullptr); }
    UTF16String LocalizeString(char const* inLiteral) override {
        return std::string(inLiteral).find("Rename") != std::string::npos
                   ? u"@1 au lieu de @0\u00A0?"_utf16
                   : u"Le disque est plein."_utf16;
    }
};

TEST(Describe, SpeaksTheHostsLanguageOrEnglish) {
    filesupport::rename_file const plain(filesupport::FileFromNative("/a"), u"b"_utf16);
    auto const error = Because(plain, FileOperation::kRename, SystemError::kDiskFull);
    EXPECT_EQ(DescribeInUTF8(error), "Could not rename the file '/a' to 'b'. The disk is full.");
    French const french;
    EXPECT_EQ(DescribeInUTF8(error), "b au lieu de /a\u00A0? Le disque est plein.");
}

TEST(Describe, SaysOnceWhatWasToBeDoneAndWhy) {
    auto const file = filesupport::FileFromNative("/f");
    auto const says = [](std::exception const& inError, char const* inText) {
        EXPECT_EQ(DescribeInUTF8(inError), inText);
    };
    says(filesupport::file_exception(file), "Error with file: '/f'.");
    says(Because(filesupport::file_exception(file), FileOperation::kOpen, SystemError::kLinkCircle),
         "Could not open '/f'. Symbolic links lead around in a circle.");
    says(Because(filesupport::create_accessdenied_exception(file), FileOperation::kCreate,
                 SystemError::kAccessDenied),
         "Could not create the file '/f'. Access was denied.");
    says(Because(filesupport::create_accessdenied_exception(file), FileOperation::kCreate,
                 SystemError::kFileExists),
         "Could not create the file '/f'. Access was denied. It exists already.");
    filesupport::io_error failure;
    failure.SetPath(file.FullPath());
    says(Because(failure, FileOperation::kWrite, static_cast<SystemError>(12345)),
         "Could not write '/f'. The system gave no reason.");
}

TEST(Describe, TakesEveryException) {
    EXPECT_EQ(DescribeInUTF8(std::bad_alloc()), "There is not enough memory.");
    EXPECT_EQ(DescribeInUTF8(std::runtime_error("$$$/viewer/NoCodec=There is no decoder.")),
              "There is no decoder.");
    EXPECT_EQ(DescribeInUTF8(std::runtime_error("$$$/ no key")), "$$$/ no key");
    EXPECT_EQ(DescribeInUTF8(filesupport::eof_error()), "There is less data than expected.");
    EXPECT_EQ(DescribeInUTF8(filesupport::file_not_found_exception(
                  filesupport::FileFromNative("/\x1B[7m\xFF\xC2\x9B\u20AC"))),
              "The file '/\uFFFD[7m\uFFFD\uFFFD\u20AC' could not be found.");
}

} // namespace

} // namespace brindle::config
