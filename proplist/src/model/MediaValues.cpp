#include <brindle/proplist/MediaValues.h>

#include <brindle/utility/Digits.h>
#include <brindle/utility/TextConversions.h>

#include <cstddef>
#include <string>

namespace brindle::proplist {

namespace {

bool IsGuid(UTF8String const& inText) noexcept {
    for (std::size_t i = 0; i < inText.size(); ++i) {
        bool const isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (isHyphen ? inText[i] != '-' : utility::HexDigitValue(inText[i]) > 15) {
            return false;
        }
    }
    return inText.size() == 36;
}

} // namespace

UTF8String PropertyValue<utility::Guid>::ToStored(utility::Guid const& inGuid) {
    return utility::Utf8(inGuid.AsString());
}

bool PropertyValue<utility::Guid>::FromStored(UTF8String const& inStored, utility::Guid& outGuid) {
    if (!IsGuid(inStored)) {
        return false;
    }
    outGuid = utility::Guid(utility::ToStd(inStored));
    return true;
}

} // namespace brindle::proplist
