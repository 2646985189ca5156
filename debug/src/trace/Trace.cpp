#include <brindle/debug/Trace.h>

#include "platform/Process.h"

#include <brindle/console/ConsoleLogFile.h>
#include <brindle/utility/Unicode.h>

#include <atomic>
#include <string>

namespace brindle::debug {

namespace {

/// Writes to the console's log.
class DefaultTraceHandler : public TraceHandler {
public:
    void Trace(UTF8String const& inText) override {
        console::ConsoleLogFile::GetInstance()->WriteToLog(inText, true);
    }
};

TraceHandler& DefaultHandler() {
    static TraceHandler& handler = *new DefaultTraceHandler;
    return handler;
}

std::atomic<TraceHandler*> S_handlerP{nullptr};

/// Counts how many calls of `Trace` of this thread are in progress.
class Depth {
public:
    Depth() noexcept { ++S_depth; }
    Depth(Depth const&) = delete;
    Depth& operator=(Depth const&) = delete;
    ~Depth() { --S_depth; }

    static bool IsReached() noexcept { return S_depth >= kMost; }

private:
    static constexpr int kMost = 8;

    inline static thread_local int S_depth = 0;
};

/// "<piece> "
void AppendPiece(UTF8String& ioText, UTF8String const& inPiece) {
    ((ioText += '<') += inPiece) += "> "_utf8;
}

UTF8String Decimal(std::int64_t inNumber) {
    auto const digits = std::to_string(inNumber);
    return {digits.begin(), digits.end()};
}

} // namespace

TraceHandler::~TraceHandler() = default;

void Trace(char const* inText) {
    if (Depth::IsReached()) {
        return;
    }
    Depth const depth;
    UTF8String const text(utility::AsciiToUTF8Impl(inText != nullptr ? inText : ""));
    GetMasterTraceHandler()->Trace(text);
}

void TraceMessage(UTF8String const& inCategory, std::int32_t inVolume, char const* inText) {
    UTF8String line;
    AppendPiece(line, Decimal(platform::ThreadId()));
    AppendPiece(line, inCategory.c_str());
    AppendPiece(line, Decimal(inVolume));
    line += utility::AsciiToUTF8Impl(inText != nullptr ? inText : "");
    line += "\r\n"_utf8;
    Trace(reinterpret_cast<char const*>(line.c_str()));
}

void TraceMessage(UTF8String const& inCategory, std::int32_t inVolume, UTF8String const& inText) {
    TraceMessage(inCategory, inVolume, reinterpret_cast<char const*>(inText.c_str()));
}

void InstallMasterTraceHandler(TraceHandler* inHandler) noexcept {
    S_handlerP.store(inHandler, std::memory_order_release);
}

TraceHandler* GetMasterTraceHandler() noexcept {
    auto* handler = S_handlerP.load(std::memory_order_acquire);
    if (handler == nullptr) {
        auto* const fallback = &DefaultHandler();
        // Unless somebody has installed one in the meantime.
        if (S_handlerP.compare_exchange_strong(handler, fallback, std::memory_order_acq_rel)) {
            handler = fallback;
        }
    }
    return handler;
}

void RemoveMasterTraceHandler() noexcept {
    InstallMasterTraceHandler(nullptr);
}

} // namespace brindle::debug
