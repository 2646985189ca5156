#include <brindle/time/FrameRateNames.h>

namespace brindle::time {

std::vector<NamedFrameRate> NamedFrameRates() {
    return {{"10", kFrameRate_Video10},         {"12", kFrameRate_Video12},
            {"12.5", kFrameRate_Video12_5},     {"15", kFrameRate_Video15},
            {"23.976", kFrameRate_23976},       {"24", kFrameRate_Film24},
            {"25", kFrameRate_VideoPAL},        {"29.97", kFrameRate_VideoNTSC},
            {"30", kFrameRate_Video30},         {"50", kFrameRate_VideoPAL_HD},
            {"59.94", kFrameRate_VideoNTSC_HD}, {"60", kFrameRate_Video60},
            {"100", kFrameRate_Video100}};
}

} // namespace brindle::time
