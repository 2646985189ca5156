#include "config/src/Module.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace brindle::config {

namespace {

TEST(ClientIdentity, KeepsItsDefaultsUntilSet) {
    struct {
        void (*set)(UTF16String const&);
        UTF16String const& (*get)();
        UTF16String fallback;
    } const values[] = {
        {SetClientName, GetClientName, u"No Client Name"_utf16},
        {SetClientVersion, GetClientVersion, u"No Client Version"_utf16},
        {SetClientInternalVersion, GetClientInternalVersion, u"No Client Internal Version"_utf16},
        {SetClientBuildNumber, GetClientBuildNumber, u"No Client Internal Version"_utf16},
        {SetCompanyName, GetCompanyName, u"No Company Name"_utf16},
    };
    for (auto const& [set, get, fallback] : values) {
        UTF16String const& reference = get();
        EXPECT_EQ(reference, fallback) << "nor does another value change it";
        for (auto const& text : {u"set"_utf16, u""_utf16}) {
            set(text);
            EXPECT_EQ(reference, text);
        }
    }
    EXPECT_EQ(GetVersionString(), u"2.0.0.161039"_utf16);
}

TEST(Localizer, IsAskedForOnlyWhileInstalled) {
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
