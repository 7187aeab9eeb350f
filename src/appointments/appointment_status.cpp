// Appointments as the host loads and names them, and their status, which is
// nothing but their colour read back through the host's six colours.

#include <QuorvaneScheduler/control_internals.h>

#include <array>
#include <utility>
#include <vector>

namespace quorvane {

std::string trimBlanks(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    const auto last = text.find_last_not_of(' ');
    return text.substr(first, last - first + 1);
}

bool isPresent(const std::string& text) { return text.find_first_not_of(' ') != std::string::npos; }

std::string makeTag(const std::string& appId, const std::string& recurrenceId, const std::string& patientId) {
    return appId + "~" + recurrenceId + "~" + patientId;
}

std::vector<std::string> splitFields(const std::string& text, char separator) {
    std::vector<std::string> fields;
    if (text.empty()) return fields;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = text.find(separator, begin);
        fields.push_back(text.substr(begin, end == std::string::npos ? std::string::npos : end - begin));
        if (end == std::string::npos) return fields;
        begin = end + 1;
    }
}

std::string fieldAt(const std::vector<std::string>& fields, std::size_t index) {
    if (index >= fields.size())
        throw SubscriptOutOfRange(fields.empty() ? std::string("an empty text has no fields")
                                                 : "no field " + std::to_string(index) + " in " +
                                                       std::to_string(fields.size()) + " fields");
    return fields[index];
}

// Split on every "~", with no limit and no escape: a "~" inside an identifier
// shifts the later fields, and nothing here guards against it.
std::string tagField(const std::string& tag, std::size_t index) {
    return fieldAt(splitFields(tag, '~'), index);
}

void ctlScheduler::AddAppointment(const std::string& strResourceNumber, const std::string& strDescription,
                                  OleDate dtStartDateTime, OleDate dtEndDateTime, const std::string& strAppID,
                                  const std::string& strStatus, const std::string& strAppRecurrenceId,
                                  const std::string& strPatientEID) {
    const DayViewRef view = GetDayView(strResourceNumber);
    const AppointmentRef app = view->appointmentSet().Add(strDescription, dtStartDateTime, dtEndDateTime);
    app->Tag = makeTag(strAppID, strAppRecurrenceId, strPatientEID);
    // The tag keeps the recurrence id as given; only the test for the suffix trims.
    if (isPresent(strAppRecurrenceId)) app->Text += " (R)";
    SetStatus(app, strStatus);
}

void ctlScheduler::SetAppId(const std::string& strResourceNumber, const std::string& strAppID,
                            std::int32_t lngAppKey, const std::string& strPatEID) {
    const DayViewRef view = GetDayView(strResourceNumber);
    AppointmentSet& set = view->appointmentSet();
    AppointmentRef app = set.FirstAppointment();
    // Replaced whether or not a key matches: the pane's save reads it next.
    state_.strCurrentAppId = strAppID;
    // Every match is named, not only the first; the recurrence id is dropped.
    const std::int32_t count = set.Count();
    for (std::int32_t i = 0; i < count && app; ++i) {
        if (app->Key() == lngAppKey) app->Tag = strAppID + "~~" + strPatEID;
        app = set.NextAppointment(app);
    }
}

namespace {
// The order in which a status name or a colour is tested. With two statuses
// given one colour, the earlier one is what reads back.
template <class Control> auto statusColours(Control& c) {
    return std::array<std::pair<const char*, decltype(&c.ccCancelled)>, 6>{{
        {"Cancelled", &c.ccCancelled},
        {"Confirmed", &c.ccConfirmed},
        {"Checked-In", &c.ccCheckedIn},
        {"Scheduled", &c.ccScheduled},
        {"Checked-Out", &c.ccCheckedOut},
        {"No-Show", &c.ccNoShow},
    }};
}
} // namespace

void ctlScheduler::SetStatus(const AppointmentRef& app, const std::string& strStatus) {
    const std::string status = trimBlanks(strStatus);
    for (const auto& [statusName, colour] : statusColours(*this)) {
        if (status == statusName) {
            if (!app) throw ObjectRequired("no appointment to paint");
            app->BackColor = *colour;
            return;
        }
    }
    // Any other name leaves the colour as it was, without a word.
}

std::string ctlScheduler::GetStatus(const AppointmentRef& app) const {
    if (!app) throw ObjectRequired("no appointment to read");
    for (const auto& [statusName, colour] : statusColours(*this))
        if (app->BackColor == *colour) return statusName;
    return "";
}

} // namespace quorvane
