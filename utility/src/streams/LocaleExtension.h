#pragma once

#include <locale>

namespace brindle::utility {

/// A locale with the facets for the library's unit types, attached to the locale that it extends.
///
/// Making these facets takes longer than many formatted numbers, so every locale is extended once.
/// A table of known locales would keep the facets of clients alive, and run their destructors at
/// times that the client does not expect. So the extension belongs to the locale itself, and is
/// destroyed with it. The standard library keeps its own digests of facets in the same way: each
/// locale has a slot for each facet, in which a cache that was made once is found by all threads.
class LocaleExtension final : public std::locale::facet {
public:
    /// The new facet has one owner, which will be the locale that it is attached to.
    explicit LocaleExtension(std::locale const& inExtended) : facet(1), mExtended(inExtended) {}

    std::locale const& Extended() const noexcept { return mExtended; }

private:
    std::locale mExtended;
};

} // namespace brindle::utility

namespace std {

/// Gives access to the caches of a locale. The slot is that of a facet for which the standard
/// library has no cache. A locale drops its caches when a facet is added, so a copy with other
/// facets does not inherit the extension.
template <>
struct __use_cache<brindle::utility::LocaleExtension> {
    /// Null if the locale has none yet.
    static brindle::utility::LocaleExtension const* Find(locale const& inLocale) noexcept {
        locale::facet const* const found =
            __atomic_load_n(inLocale._M_impl->_M_caches + Slot(), __ATOMIC_ACQUIRE);
        return static_cast<brindle::utility::LocaleExtension const*>(found);
    }

    /// Attaches `inExtension`, or deletes it if another thread was faster. Returns what is attached
    /// then. Threads find it without a lock, so it is complete before it is attached.
    static brindle::utility::LocaleExtension const&
    Attach(locale const& inLocale, brindle::utility::LocaleExtension const* inExtension) noexcept {
        locale::facet const** const slot = inLocale._M_impl->_M_caches + Slot();
        locale::facet const* attached = nullptr;
        if (__atomic_compare_exchange_n(slot, &attached, inExtension, false, __ATOMIC_ACQ_REL,
                                        __ATOMIC_ACQUIRE)) {
            return *inExtension;
        }
        delete inExtension;
        return static_cast<brindle::utility::LocaleExtension const&>(*attached);
    }

private:
    static size_t Slot() noexcept { return ctype<wchar_t>::id._M_id(); }
};

} // namespace std
