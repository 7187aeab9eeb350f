#include <QuorvaneScheduler/components/platform.h>

#include <ctime>

namespace quorvane {

OleDate Clock::today() const {
    if (fixed_) return today_;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return makeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

} // namespace quorvane
