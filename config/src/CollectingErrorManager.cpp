#include <brindle/config/CollectingErrorManager.h>

#include <brindle/config/ErrorCollector.h>

#include <utility>

namespace brindle::config {

CollectingErrorManager::CollectingErrorManager(ErrorManager& ioNext) : mNext(ioNext) {}
CollectingErrorManager::~CollectingErrorManager() = default;

bool CollectingErrorManager::PurgeMemory(unsigned int inAmount) {
    return mNext.PurgeMemory(inAmount);
}

void CollectingErrorManager::IncrementLazilyDisplayErrors() {
    mNext.IncrementLazilyDisplayErrors();
}

void CollectingErrorManager::DecrementLazilyDisplayErrors() {
    mNext.DecrementLazilyDisplayErrors();
}

std::int32_t CollectingErrorManager::ExecuteFunctionWithTopLevelExceptionHandler(
    boost::function<std::int32_t()> inFunction) {
    return mNext.ExecuteFunctionWithTopLevelExceptionHandler(std::move(inFunction));
}

void CollectingErrorManager::ThrowErrorImpl(ErrorLevel inLevel, char const* inKey,
                                            std::uint32_t inModule, std::int32_t inCode,
                                            bool inDeferrable, ReplacementValue const& inFirst,
                                            ReplacementValue const& inSecond,
                                            ReplacementValue const& inThird,
                                            ReplacementValue const& inFourth) {
    if (!WillBeReplayed(inDeferrable) &&
        !ErrorCollector::Collect(inLevel, inKey, inModule, inCode, inDeferrable, inFirst, inSecond,
                                 inThird, inFourth)) {
        mNext.ThrowErrorImpl(inLevel, inKey, inModule, inCode, inDeferrable, inFirst, inSecond,
                             inThird, inFourth);
    }
}

} // namespace brindle::config
