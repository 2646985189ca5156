#include <brindle/config/PrintingErrorManager.h>

#include "config/src/LocalizedText.h"
#include "utility/src/base/Mutex.h"

#include <brindle/config/Describe.h>
#include <brindle/config/ErrorCollector.h>
#include <brindle/config/Text.h>
#include <brindle/utility/TextConversions.h>

#include <atomic>
#include <cstdio>
#include <ostream>

namespace brindle::config {

struct PrintingErrorManager::Output {
    Output(std::string const& inProgram, std::ostream* ioStream)
        : prefix(inProgram.empty() ? "" : inProgram + ": "), stream(ioStream) {}

    void Print(std::string const& inSentence) {
        std::string const line = prefix + inSentence + '\n';
        utility::MutexLock const lock(mutex);
        ++count;
        if (stream == nullptr) {
            std::fwrite(line.data(), 1, line.size(), stderr);
        } else {
            *stream << line << std::flush;
        }
    }

    std::string const prefix;
    utility::Mutex mutex;
    std::ostream* const stream BRN_PT_GUARDED_BY(mutex); ///< null for standard error
    std::atomic<std::uint64_t> count{0};
};

PrintingErrorManager::PrintingErrorManager(std::string const& inProgram)
    : mOutput(std::make_unique<Output>(inProgram, nullptr)) {}

PrintingErrorManager::PrintingErrorManager(std::string const& inProgram, std::ostream& ioStream)
    : mOutput(std::make_unique<Output>(inProgram, &ioStream)) {}

PrintingErrorManager::~PrintingErrorManager() = default;

void PrintingErrorManager::PrintException(std::exception const& inException) {
    mOutput->Print(DescribeInUTF8(inException));
}

std::uint64_t PrintingErrorManager::Count() const noexcept {
    return mOutput->count.load();
}

void PrintingErrorManager::ThrowErrorImpl(ErrorLevel inLevel, char const* inKey,
                                          std::uint32_t inModule, std::int32_t inCode,
                                          bool inDeferrable, ReplacementValue const& inFirst,
                                          ReplacementValue const& inSecond,
                                          ReplacementValue const& inThird,
                                          ReplacementValue const& inFourth) {
    if (!WillBeReplayed(inDeferrable) &&
        !ErrorCollector::Collect(inLevel, inKey, inModule, inCode, inDeferrable, inFirst, inSecond,
                                 inThird, inFourth)) {
        auto const sentence = Text(inKey, {inFirst, inSecond, inThird, inFourth});
        mOutput->Print(utility::ToStd(Printable(sentence)));
    }
}

} // namespace brindle::config
