#include <brindle/utility/Locale.h>

#include <brindle/utility/StringStreams.h>

#include "utility/src/base/NeverDestroyed.h"

#include <algorithm>
#include <exception>

namespace brindle::Locale {

namespace {

std::locale UserLocale() {
    try {
        return std::locale("");
    } catch (std::exception const&) {
        return std::locale::classic();
    }
}

} // namespace

std::locale const& Native() {
    static utility::NeverDestroyed<std::locale> native(UserLocale());
    return native.Get();
}

std::locale const& Default() {
    return std::locale::classic();
}

double GetValueFromDisplayString(UTF16String const& inText) {
    if (inText.empty()) {
        return 0.0;
    }
    iUTF16StringStream native(inText);
    native.imbue(Native());
    // The first reading counts as far as it went: digits in groups of the wrong size, for one, fail
    // but leave their value.
    double first = 0.0;
    native >> first;
    iUTF16StringStream plain(inText);
    double second = 0.0;
    if (!(plain >> second)) {
        second = 0.0;
    }
    if (first > 0.0 && second > 0.0) {
        return std::max(first, second);
    }
    return first < 0.0 && second < 0.0 ? std::min(first, second) : second;
}

} // namespace brindle::Locale
