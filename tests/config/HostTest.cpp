#include "config/src/Module.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace brindle::config {

namespace {

TEST(ClientIdentity, KeepsItsDefaultsUntilSet) {
    struct Value {
        void (*set)(UTF16String const&);
        UTF16String const& (*get)() noexcept;
        UTF16String fallback;
    };
    Value const values[] = {
        {SetClientName, GetClientName, u"No Client Name"_utf16},
        {SetClientVersion, GetClientVersion, u"No Client Version"_utf16},
        {SetClientInternalVersion, GetClientInternalVersion, u"No Client Internal Version"_utf16},
        {SetClientBuildNumber, GetClientBuildNumber, u"No Client Internal Version"_utf16},
        {SetCompanyName, GetCompanyName, u"No Company Name"_utf16},
    };
    for (Value const& value : values) {
        EXPECT_EQ(value.fallback, value.get());
    }
    std::uint16_t digit = u'0';
    for (Value const& value : values) {
        UTF16String const& reference = value.get();
        value.set(UTF16String(1, ++digit));
        EXPECT_EQ(UTF16String(1, digit), reference);
    }
    for (Value const& value : values) {
        EXPECT_EQ(1u, value.get().size()) << "no two share a text";
        value.set(u""_utf16);
        EXPECT_EQ(u""_utf16, value.get());
        value.set(value.fallback);
    }
    EXPECT_EQ(u"2.0.0.161039"_utf16, GetVersionString());
}

TEST(Localizer, IsAskedForOnlyWhileInstalled) {
    class Echo : public Localizer {
        UTF16String LocalizeString(char const*) override { return {}; }
    } echo;

    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(Localizer::Initialized());
        try {
            Localizer::Get();
            FAIL() << "nothing thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ("brindle::config::Localizer not initialized. "
                         "Check brindle/config/Localizer.",
                         error.what());
        }
        Localizer::Set(&echo);
        EXPECT_TRUE(Localizer::Initialized());
        EXPECT_EQ(&echo, Localizer::Get());
        Localizer::Set(nullptr);
    }
}

TEST(Module, HasAHandleOnceLoaded) {
    EXPECT_NE(nullptr, ModuleHandle());
}

} // namespace

} // namespace brindle::config
