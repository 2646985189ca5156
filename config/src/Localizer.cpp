#include <brindle/config/Localizer.h>

#include <stdexcept>

namespace brindle::config {

std::atomic<Localizer*> Localizer::S_localizerP{nullptr};

Localizer::Localizer() = default;
Localizer::~Localizer() = default;

void Localizer::Set(Localizer* inLocalizer) noexcept {
    S_localizerP.store(inLocalizer, std::memory_order_release);
}

Localizer* Localizer::Exchange(Localizer* inLocalizer) noexcept {
    return S_localizerP.exchange(inLocalizer, std::memory_order_acq_rel);
}

Localizer* Localizer::Get() {
    Localizer* const localizer = S_localizerP.load(std::memory_order_acquire);
    if (localizer == nullptr) {
        throw std::logic_error(
            "brindle::config::Localizer not initialized. Check brindle/config/Localizer.");
    }
    return localizer;
}

bool Localizer::Initialized() noexcept {
    return S_localizerP.load(std::memory_order_acquire) != nullptr;
}

} // namespace brindle::config
