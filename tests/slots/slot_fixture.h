#pragma once
#include "control/control_fixture.h"

#include <functional>
#include <optional>

namespace quorvane::test {

struct SlotFixture : ControlFixture {
    PVDayView& view(int i) { return *control->widgets().dvwResource[static_cast<std::size_t>(i)]; }

    // The kind of run-time error the call fails with; none when it goes through.
    static std::optional<ErrorKind> failureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const RuntimeError& e) {
            return e.kind();
        }
        return std::nullopt;
    }
};

} // namespace quorvane::test
