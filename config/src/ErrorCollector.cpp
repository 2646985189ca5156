#include <brindle/config/ErrorCollector.h>

#include <brindle/config/Text.h>

#include <utility>

namespace brindle::config {

thread_local ErrorCollector* ErrorCollector::S_newestP = nullptr;

UTF16String CollectedError::Sentence() const {
    return Text(key.c_str(), {values[0], values[1], values[2], values[3]});
}

void CollectedError::Raise() const {
    ThrowError(level, key.c_str(), module, code, isDeferrable, values[0], values[1], values[2],
               values[3]);
}

ErrorCollector::ErrorCollector() noexcept : mOuter(std::exchange(S_newestP, this)) {}

ErrorCollector::~ErrorCollector() {
    // Not necessarily the newest one: a `std::optional` may be emptied in any order.
    for (ErrorCollector** link = &S_newestP; *link != nullptr; link = &(*link)->mOuter) {
        if (*link == this) {
            *link = mOuter;
            break;
        }
    }
}

std::vector<CollectedError> ErrorCollector::TakeErrors() noexcept {
    return std::exchange(mErrors, {});
}

bool ErrorCollector::Collect(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                             std::int32_t inCode, bool inDeferrable,
                             ReplacementValue const& inFirst, ReplacementValue const& inSecond,
                             ReplacementValue const& inThird, ReplacementValue const& inFourth) {
    if (S_newestP == nullptr) {
        return false;
    }
    S_newestP->mErrors.push_back(
        {inLevel, inKey, inModule, inCode, inDeferrable, {inFirst, inSecond, inThird, inFourth}});
    return true;
}

} // namespace brindle::config
