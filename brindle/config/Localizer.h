#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <boost/core/noncopyable.hpp>

#include <atomic>

namespace brindle::config {

/// What the host derives from to translate the library's texts.
///
/// A text is named by one literal, "$$$/path=default text": `$$$/`, a path without "=", the first
/// "=", and the English text, in which `^1` or `@0` stand for values. A localiser that looks the
/// whole literal up, and falls back on the text behind the "=", is complete.
///
/// The host installs one object with `Set` at start-up, before other threads use the library, and
/// owns it. Without one the library's texts are English.
///
/// Beside the standard library: as the facet `std::messages`, for one language of the whole process
/// and with the default text in the key.
class BRN_API Localizer : private boost::noncopyable {
public:
    virtual ~Localizer();

    /// The text for the whole literal, "=" and default text included. Its placeholders must still
    /// be in the result.
    virtual UTF16String LocalizeString(char const* inLiteral) = 0;

    /// Installs a localiser without taking ownership; null uninstalls.
    static void Set(Localizer* inLocalizer) noexcept;
    /// The same; returns the former one, or null. ScopedManagers.h does it for a scope.
    static Localizer* Exchange(Localizer* inLocalizer) noexcept;
    /// The installed localiser. Throws `std::logic_error` if there is none.
    static Localizer* Get();
    /// Whether one is installed.
    static bool Initialized() noexcept;

protected:
    Localizer();

private:
    static std::atomic<Localizer*> S_localizerP;
};

} // namespace brindle::config
