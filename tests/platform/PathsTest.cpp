#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "platform/Volumes.h"

#include "tests/support/InTemporaryDirectory.h"

#include <thread>

namespace brindle::platform {

namespace {

using Paths = tests::InTemporaryDirectory;

TEST_F(Paths, LibraryTextNamesThePlacesOfTheSystem) {
    std::pair<UTF16String, char const*> const cases[] = {
        {u"C:usr"_utf16, "/usr"},
        {u"\\\\server\\share\\x"_utf16, "/net/server/share/x"},
        {u"\\\\?\\UNC\\server\\share"_utf16, "/net/server/share"},
        {u"\\\\"_utf16, "//"},
        {u".\\C:x"_utf16, "./C:x"},
        {u"\xF05C"_utf16, "\\"},
        {UTF16String{0xDC2F}, "\xED\xB0\xAF"}, // an escape stands for no separator
    };
    for (auto const& [text, expected] : cases) {
        auto const native = NativePath(text);
        EXPECT_EQ(native.error, kError_None) << expected;
        EXPECT_EQ(native.value, expected);
    }
    EXPECT_EQ(NativePath(u"Q:\\x"_utf16).error, kError_PathNotFound);
    EXPECT_EQ(NativePath(u"a\0b"_utf16).error, kError_InvalidName);
    EXPECT_EQ(PathFromNative("c:x"), u".\\c:x"_utf16);
}

TEST_F(Paths, TextIsUtf8AndWhatIsNotIsEscaped) {
    std::pair<std::string, UTF16String> const cases[] = {
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E9\u20AC\U0001F600"_utf16},
        {"\xC0\xAF", {0xDCC0, 0xDCAF}},
        {"\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
        {"cut \xE2\x82", {'c', 'u', 't', ' ', 0xDCE2, 0xDC82}},
    };
    for (auto const& [bytes, text] : cases) {
        EXPECT_EQ(FromCodePage(bytes), text);
        EXPECT_EQ(ToCodePage(text), bytes);
    }
    EXPECT_EQ(ToCodePage({0xDC00, 0xD800}), "\xED\xB0\x80\xED\xA0\x80");
}

TEST_F(Paths, MappedDrivesNameTheirDirectories) {
    Fill("file", "x");
    EXPECT_EQ(MapVolume('1', mTemporary.Path()), kError_InvalidParameter);
    EXPECT_EQ(MapVolume('Q', At("file")), kError_NotADirectory);

    ASSERT_EQ(MapVolume('q', At("")), kError_None);
    EXPECT_EQ(NativePath(u"\\\\?\\q:"_utf16).value, mTemporary.Native());

    std::thread mapping([this] {
        for (int i = 0; i < 2000; ++i) {
            EXPECT_EQ(MapVolume('Q', i % 2 == 0 ? UTF16String() : mTemporary.Path()), kError_None);
        }
    });
    for (int i = 0; i < 2000; ++i) {
        auto const native = NativePath(u"Q:\\x"_utf16);
        EXPECT_EQ(native.value, native ? Native("x") : "");
    }
    mapping.join();
    EXPECT_EQ(MapVolume('Q', {}), kError_None);
    EXPECT_EQ(NativePath(u"Q:\\x"_utf16).error, kError_PathNotFound);
}

} // namespace

} // namespace brindle::platform
