#pragma once
#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/members.h>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quorvane::test {

// Message boxes logged as "msgbox TEXT", a question with " [YesNo]", and
// answered as the default answers them: OK, or No.
struct LoggedBoxes final : MessageBoxService {
    std::vector<std::string>& log;
    explicit LoggedBoxes(std::vector<std::string>& to) : log(to) {}
    MsgBoxResult show(std::string_view text, MsgBoxButtons buttons, std::string_view title) override {
        const bool ok = buttons == MsgBoxButtons::OK;
        log.push_back("msgbox " + std::string(text) + (ok ? "" : " [YesNo]") + std::string(title));
        return ok ? MsgBoxResult::OK : MsgBoxResult::No;
    }
};

// A control on a platform whose today is fixed, with every change report,
// every event and every message box recorded in order.
struct ControlFixture : ::testing::Test {
    ControlFixture() {
        platform.clock.setToday(makeDate(2008, 1, 15));
        platform.messageBoxes = &boxes;
        platform.container.onPropertyChanged = [this](std::string_view n) {
            log.push_back("changed " + std::string(n));
        };
        control = std::make_unique<ctlScheduler>(platform);
        control->setEventSink(&sink);
    }

    void setColours() {
        control->ccCancelled = 1, control->ccConfirmed = 2, control->ccCheckedIn = 3;
        control->ccScheduled = 4, control->ccCheckedOut = 5, control->ccNoShow = 6;
    }
    OleDate at(int h, int m) const { return makeDateTime(2008, 1, 15, h, m, 0); }
    PVDayView& view(int i) { return *widgetsOf(*control).dvwResource[static_cast<std::size_t>(i)]; }
    AppointmentSet& set(int index) { return view(index).appointmentSet(); }
    // A member called by name, as a host calls it.
    Variant invoke(const std::string& name, MemberKind kind, std::vector<Variant> args) {
        return invokeMember(*control, *findMember(name, kind), args);
    }
    // The kind of run-time error the call fails with; none when it goes through.
    static std::optional<ErrorKind> failureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const RuntimeError& e) {
            return e.kind();
        }
        return std::nullopt;
    }

    Platform platform;
    std::vector<std::string> log;
    LoggedBoxes boxes{log};
    std::function<void(std::string_view, std::vector<Variant>&)> onEvent;
    EventsByName sink{[this](std::string_view n, std::vector<Variant>& args) {
        std::string line = "event " + std::string(n) + "(";
        for (std::size_t i = 0; i < args.size(); ++i)
            line += (i ? ", " : "") + args[i].toString();
        log.push_back(line + ")");
        if (onEvent) onEvent(n, args);
    }};
    std::unique_ptr<ctlScheduler> control;
};

} // namespace quorvane::test
