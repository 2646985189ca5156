#pragma once

#include <atomic>
#include <locale>

namespace brindle::utility {

/// A locale with the facets for the library's unit types, attached to the locale that it extends.
///
/// Making these facets takes longer than many formatted numbers, so every locale is extended once.
/// A table of known locales would keep the facets of clients alive, and run their destructors at
/// times that the client does not expect. So the extension belongs to the locale itself, and is
/// destroyed with it. libstdc++ keeps its own digests of facets in the same way: each locale has a
/// slot for each facet, in which a cache that was made once is found by all threads.
class LocaleExtension final : public std::locale::facet {
public:
    /// The new facet has one owner, which will be the locale that it is attached to.
    explicit LocaleExtension(std::locale const& inExtended)
        : std::locale::facet(1), mExtended(inExtended) {}

    ~LocaleExtension() override = default;

    std::locale const& Extended() const noexcept { return mExtended; }

private:
    std::locale mExtended;
};

} // namespace brindle::utility

#ifdef __GLIBCXX__

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

    /// Attaches `inExtension`, or deletes it if another thread was faster. Returns the locale of
    /// what is attached then. Threads find it without a lock, so it is complete before it is
    /// attached.
    static locale Attach(locale const& inLocale,
                         brindle::utility::LocaleExtension const* inExtension) noexcept {
        locale::facet const** const slot = inLocale._M_impl->_M_caches + Slot();
        locale::facet const* attached = nullptr;
        if (__atomic_compare_exchange_n(slot, &attached, inExtension, false, __ATOMIC_ACQ_REL,
                                        __ATOMIC_ACQUIRE)) {
            return inExtension->Extended();
        }
        delete inExtension;
        return static_cast<brindle::utility::LocaleExtension const&>(*attached).Extended();
    }

private:
    static size_t Slot() noexcept { return ctype<wchar_t>::id._M_id(); }
};

} // namespace std

namespace brindle::utility {
using LocaleExtensions = std::__use_cache<LocaleExtension>;
}

#else

namespace brindle::utility {

/// Other libraries have no such slots. There the extension of the classic locale, which nearly all
/// streams use, is kept, and every other locale is extended each time.
class LocaleExtensions {
public:
    /// Null if the locale has none yet.
    static LocaleExtension const* Find(std::locale const& inLocale) noexcept {
        return inLocale == std::locale::classic() ? S_classic.load(std::memory_order_acquire)
                                                  : nullptr;
    }

    /// Attaches `inExtension` if the locale can have one and another thread was not faster, and
    /// deletes it otherwise. Returns the extended locale.
    static std::locale Attach(std::locale const& inLocale, LocaleExtension const* inExtension) {
        std::locale const extended = inExtension->Extended();
        LocaleExtension const* attached = nullptr;
        if (inLocale != std::locale::classic() ||
            !S_classic.compare_exchange_strong(attached, inExtension, std::memory_order_acq_rel)) {
            delete inExtension;
        }
        return attached != nullptr ? attached->Extended() : extended;
    }

private:
    inline static std::atomic<LocaleExtension const*> S_classic{nullptr}; // never destroyed
};

} // namespace brindle::utility

#endif
