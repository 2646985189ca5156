#pragma once

#include <brindle/Export.h>
#include <brindle/config/ErrorManager.h>

namespace brindle::config {

/// Stands in front of a manager that knows nothing of `ErrorCollector`: an error goes to the newest
/// collector of its thread, or to the manager behind if there is none.
///
///     WindowErrorManager window;
///     CollectingErrorManager errors(window);
///     ErrorManager::Set(&errors);
///
/// The manager behind hears of an error that a reporter records only when it is replayed.
class BRN_API CollectingErrorManager : public ErrorManager {
public:
    /// `ioNext` outlives this object.
    explicit CollectingErrorManager(ErrorManager& ioNext);
    ~CollectingErrorManager() override;

    // All that follows goes on to the manager behind.
    bool PurgeMemory(unsigned int inAmount) override;
    void IncrementLazilyDisplayErrors() override;
    void DecrementLazilyDisplayErrors() override;
    [[nodiscard]] std::int32_t ExecuteFunctionWithTopLevelExceptionHandler(
        boost::function<std::int32_t()> inFunction) override;
    void ThrowErrorImpl(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth) override;

private:
    ErrorManager& mNext;
};

} // namespace brindle::config
