#include <brindle/utility/Locale.h>

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
    static std::locale const native = UserLocale();
    return native;
}

std::locale const& Default() {
    static std::locale const classic = std::locale::classic();
    return classic;
}

} // namespace brindle::Locale
