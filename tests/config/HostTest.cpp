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
        UTF16String const& (*get)();
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
        EXPECT_EQ(value.get(), value.fallback);
    }
    for (Value const& value : values) {
        UTF16String const& reference = value.get();
        value.set(u"set"_utf16);
        EXPECT_EQ(reference, u"set"_utf16);
        value.set(u""_utf16);
        EXPECT_EQ(reference, u""_utf16) << "the default does not come back";
        value.set(value.fallback);
    }
    EXPECT_EQ(GetVersionString(), u"2.0.0.161039"_utf16);
}

TEST(Localizer, IsAskedForOnlyWhileInstalled) {
    class Echo : public Localizer {
        UTF16String LocalizeString(char const*) override { return {}; }
    } echo;
    Localizer::Set(&echo);
    EXPECT_TRUE(Localizer::Initialized());
    EXPECT_EQ(Localizer::Get(), &echo);
    Localizer::Set(nullptr);
    EXPECT_FALSE(Localizer::Initialized());
    try {
        Localizer::Get();
        FAIL() << "nothing thrown";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "brindle::config::Localizer not initialized. "
                                   "Check brindle/config/Localizer.");
    }
}

TEST(Module, HasAHandleOnceLoaded) {
    EXPECT_NE(ModuleHandle(), nullptr);
}

} // namespace

} // namespace brindle::config
