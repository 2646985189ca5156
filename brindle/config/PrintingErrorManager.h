#pragma once

#include <brindle/Export.h>
#include <brindle/config/ErrorManager.h>

#include <cstdint>
#include <exception>
#include <iosfwd>
#include <memory>
#include <string>

namespace brindle::config {

/// The error manager of a program without windows: prints each error as a line
/// "program: sentence", in the language of the host's localiser.
///
///     config::PrintingErrorManager errors("offload");
///     config::ErrorManager::Set(&errors);
///     ...
///     config::ErrorManager::Set(nullptr);
///     return errors.Count() == 0 ? 0 : 1;
///
/// Fatal errors are printed like others, and the function that raised one goes on; a program that
/// wants to end derives a class and throws. Errors that an `ErrorCollector` of their thread takes
/// are neither printed nor counted, and those that a reporter records only when they are replayed.
/// Control characters become U+FFFD, so that the name of a file cannot command a terminal. Several
/// threads may report at the same time: lines are never mixed.
class BRN_API PrintingErrorManager : public ErrorManager {
public:
    /// Prints to standard error. Without a name there is no "program: ".
    explicit PrintingErrorManager(std::string const& inProgram);
    /// Prints to a stream, which outlives this object and is flushed behind each line.
    PrintingErrorManager(std::string const& inProgram, std::ostream& ioStream);
    ~PrintingErrorManager() override;

    /// Prints what `DescribeInUTF8` says about an exception that has been caught, and counts it.
    void PrintException(std::exception const& inException);

    /// How many lines have been printed.
    std::uint64_t Count() const noexcept;

    /// Throws what the localiser, the stream and the allocator throw.
    void ThrowErrorImpl(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth) override;

private:
    struct Output;

    std::unique_ptr<Output> mOutput;
};

} // namespace brindle::config
