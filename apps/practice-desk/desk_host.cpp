#include <QuorvaneScheduler/control_internals.h>
#include "desk_host.h"

#include <QuorvaneScheduler/errors.h>

#include <QDate>
#include <QLocale>
#include <QTime>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <set>

using namespace quorvane;

namespace practice {

namespace {

// The practice's six status colours, as the desk shows them.
struct StatusColour {
    const char *property, *status;
    std::int32_t colour;
};
const StatusColour kStatusColours[] = {
    {"ccScheduled", "Scheduled", 0xFFE0C0},     {"ccConfirmed", "Confirmed", 0xC0FFC0},
    {"ccCheckedIn", "Checked-In", 0x80E0FF},    {"ccCheckedOut", "Checked-Out", 0xF0C8D8},
    {"ccNoShow", "No-Show", 0x8080FF},          {"ccCancelled", "Cancelled", 0xA0A0A0},
};

Variant str(const QString& s) { return Variant(s.toStdString()); }
QString qs(const std::string& s) { return QString::fromStdString(s); }

// "Column 3" of the control, as text the members take.
Variant columnText(int column) { return Variant(std::to_string(column)); }

} // namespace

DeskHost::DeskHost(ctlScheduler& control, PracticeStore& store)
    : session_(control), store_(store), context_(std::make_unique<QObject>()) {
    control.setEventSink(this);
}

DeskHost::~DeskHost() { store_.listen({}); }

void DeskHost::say(const QString& message) {
    if (tell) tell(message);
}

void DeskHost::mention(const QString& what) {
    if (note) note(what);
}

void DeskHost::start(int widthPixels, int heightPixels) {
    for (const StatusColour& s : kStatusColours)
        session_.set(s.property, Variant(s.colour));
    session_.set("ImagingEnabled", Variant("Y"));
    // A booking starts from an empty pane: one visit's notes never carry into the next.
    session_.set("ClearCommentsEnabled", Variant("Y"));
    session_.set("TaskingEnabled", Variant("true"));
    session_.call("ResizeControl", {Variant(static_cast<std::int16_t>(heightPixels)),
                                    Variant(static_cast<std::int16_t>(widthPixels))});
    // A notice comes from the event loop: whatever goes wrong in answering it
    // is said, and the desk goes on.
    store_.listen([this](const QString& resource, OleDate day) {
        try {
            otherDeskChanged(resource, day);
        } catch (const std::exception& e) {
            std::fprintf(stderr, "practice-desk: another desk's change could not be shown: %s\n", e.what());
        }
        if (changedOutside) changedOutside();
    });
    const Catalogue c = store_.catalogue();
    // Views and defaults first: assigning the groups selects the default group
    // at once, and that reads both.
    starting_ = true;
    session_.set("ResourceGroupViews", str(c.views));
    session_.set("ResourceGroupDefaults", str(c.defaults));
    session_.set("ResourceGroups", str(c.groups));
    starting_ = false;
    if (!damaged_.isEmpty()) throw DamagedError(damaged_.toStdString());
    if (store_.shared() && !probe_) {
        probe_ = std::make_unique<QTimer>();
        QObject::connect(probe_.get(), &QTimer::timeout, probe_.get(), [this] { probe(); });
        probe_->start(kProbeMs);
    }
}

void DeskHost::probe() {
    if (mayProbe && !mayProbe()) return;
    try {
        if (offline_) {
            if (retry() && changedOutside) changedOutside();
            return;
        }
        store_.ping();
    } catch (const ConnectionLost&) {
        goOffline();
        if (changedOutside) changedOutside();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "practice-desk: %s\n", e.what());
    }
}

// The grid stays as it is; the user can change nothing until the server is back.
void DeskHost::goOffline() {
    if (offline_) return;
    offline_ = true;
    store_.disconnect();
    if (session_.control().UserControlEnabled()) session_.set("UserControlEnabled", Variant(false));
    if (offlineChanged) offlineChanged(true);
}

void DeskHost::lostConnection(const ConnectionLost& e) {
    goOffline();
    say(QString::fromStdString(e.what()));
}

qint64 DeskHost::currentAppointmentId() {
    bool ok = false;
    const qint64 id = qs(session_.text("AppAppointmentId")).toLongLong(&ok);
    return ok ? id : 0;
}

// A change the store refused is taken back on the grid by loading from the
// store again; while the store is out of reach there is nothing to load from,
// so the grid stays as it is and the control stays disabled until retry().
bool DeskHost::stored(const std::function<void()>& change, const std::function<void()>& reload) {
    try {
        change();
        return true;
    } catch (const ConnectionLost& e) {
        lostConnection(e);
    } catch (const StoreError& e) {
        say(QString::fromStdString(e.what()));
    }
    // Offline, the columns load what the store last gave them. Inside an event
    // the control has not finished the user's gesture: the reload waits for it.
    if (reload) reloadLater(reload);
    return false;
}

void DeskHost::endBusy() {
    if (offline_) return;
    session_.call("FocusControl");
    auto pending = std::move(pending_);
    for (const auto& [resource, day] : pending)
        otherDeskChanged(resource, day);
}

bool DeskHost::retry() {
    if (!offline_) return true;
    if (!store_.reconnect()) return false;
    offline_ = false;
    reloadColumns();
    if (offline_) return false; // lost again while loading
    endBusy();
    if (offlineChanged) offlineChanged(false);
    return true;
}

int DeskHost::versionOf(qint64 id) {
    const auto known = versions_.find(id);
    if (known != versions_.end()) return known->second;
    return store_.appointment(id).version;
}

void DeskHost::otherDeskChanged(const QString& resource, OleDate day) {
    if (!session_.control().UserControlEnabled()) {
        pending_.emplace_back(resource, day);
        return;
    }
    const int shown = qs(widgetsOf(session_.control()).sbSchedule.tag).toInt();
    for (int column = 1; column <= std::min(shown, kColumns); ++column) {
        const std::string n = std::to_string(column);
        if (qs(session_.text("Resource" + n + "Value")) != resource) continue;
        if (session_.control().GetDayView(n)->CurrentDate() != datePart(day)) continue;
        reloadColumn(column);
    }
}

void DeskHost::reloadColumn(int column) {
    const std::string n = std::to_string(column);
    const DayViewRef view = session_.control().GetDayView(n);
    const OleDate top = view->TopIndex();
    const AppointmentRef selected = view->appointmentSet().GetSelectedAppointment();
    const std::string selectedTag = selected ? selected->Tag : std::string();
    session_.call("RefreshSchedule", {Variant(static_cast<std::int16_t>(column))});
    session_.set("Resource" + n + "TopIndex", Variant(top));
    if (selectedTag.empty()) return;
    for (const AppointmentRef& a : view->appointmentSet().items())
        if (a->Tag == selectedTag) a->setSelected(true);
}

void DeskHost::reloadColumns() {
    const int shown = qs(widgetsOf(session_.control()).sbSchedule.tag).toInt();
    for (int column = 1; column <= std::min(shown, kColumns); ++column)
        if (!session_.text("Resource" + std::to_string(column) + "Value").empty()) reloadColumn(column);
}

QString DeskHost::dayKey(const QString& resource, OleDate day) {
    return storedDate(datePart(day)).left(10) + "|" + resource;
}

void DeskHost::confirmed(qint64 id, const StoredAppointment* now) {
    for (auto& [key, day] : loaded_)
        std::erase_if(day.appointments, [id](const StoredAppointment& a) { return a.id == id; });
    if (!now) {
        versions_.erase(id);
        return;
    }
    remember(*now);
    const auto day = loaded_.find(dayKey(now->resource, now->start));
    if (day == loaded_.end()) return;
    auto& list = day->second.appointments;
    list.insert(std::upper_bound(list.begin(), list.end(), *now,
                                 [](const StoredAppointment& a, const StoredAppointment& b) {
                                     return a.start < b.start;
                                 }),
                *now);
}

// One resource's day as the store holds it; false, with the failure dealt
// with, when the store cannot give it.
bool DeskHost::read(const QString& resource, OleDate day, ColumnDay& out) {
    try {
        out.templates = store_.templates(resource, day);
        out.appointments = store_.appointments(resource, day);
        out.types = store_.appointmentTypes(resource);
        return true;
    } catch (const ConnectionLost&) {
        goOffline();
    } catch (const DamagedError& e) {
        if (starting_)
            damaged_ = QString::fromStdString(e.what());
        else
            say(QString::fromStdString(e.what()));
    } catch (const StoreError& e) {
        say(QString::fromStdString(e.what()));
    }
    return false;
}

// What the store gave for days no column shows any more is of no use offline.
void DeskHost::forgetDaysNotShown() {
    std::set<QString> shown;
    for (int column = 1; column <= kColumns; ++column) {
        const std::string n = std::to_string(column);
        shown.insert(dayKey(qs(session_.text("Resource" + n + "Value")),
                            session_.control().GetDayView(n)->CurrentDate()));
    }
    std::erase_if(loaded_, [&](const auto& entry) { return !shown.contains(entry.first); });
}

// A column emptied for a resource and a date: its slot length (the first time
// only; after that the user's choice stands), its grid, its blocks, its
// appointments and its types, then the top of the day. What the store cannot
// give is taken from what it last gave, so a failed read never empties a column.
void DeskHost::ResourceOnClick(std::int16_t column, Str resource, const Variant& date) {
    const Variant number = columnText(column);
    if (column >= 1 && column <= kColumns && !std::exchange(sized_[static_cast<std::size_t>(column)], true)) {
        const std::string increment = "DayIncrement" + std::to_string(column);
        if (session_.text(increment) != "15") session_.set(increment, Variant("15"));
    }
    const OleDate day = date.toDate();
    const QString key = dayKey(qs(resource), day);
    ColumnDay loaded;
    const bool fresh = read(qs(resource), day, loaded);
    if (fresh) {
        forgetDaysNotShown();
        loaded_[key] = loaded;
    } else if (const auto kept = loaded_.find(key); kept != loaded_.end()) {
        loaded = kept->second;
    }
    session_.call("RefreshTimeslots", {number});
    for (const Template& t : loaded.templates)
        session_.call("AddResourceTemplate", {Variant(t.start), Variant(t.end), str(t.description),
                                              str(t.colour), number, Variant("Y")});
    for (const StoredAppointment& a : loaded.appointments) {
        remember(a);
        session_.call("AddAppointment", {number, str(a.description), Variant(a.start), Variant(a.end),
                                         Variant(std::to_string(a.id)), str(a.status), str(a.recurrenceId),
                                         str(a.patientId)});
    }
    session_.call("SetAppointmentType", {str(loaded.types), number});
    session_.call("DisplayTopIndex", {Variant(addMinutes(datePart(day), 8 * 60)), number});
    if (fresh && columnShown) columnShown(qs(resource), day, loaded.appointments);
}

// Runs the desk's answer to an event of the busy phase. However the answer
// ends, the phase ends with it (unless the server is away, when the control
// stays disabled until it is back), and a failure is told, never thrown back
// into the control.
void DeskHost::inBusyPhase(const std::function<void()>& answer) {
    struct End {
        DeskHost* host;
        ~End() {
            try {
                host->endBusy();
            } catch (...) {
            }
        }
    } end{this};
    try {
        answer();
    } catch (const ConnectionLost& e) {
        lostConnection(e);
    } catch (const std::exception& e) {
        say(QString::fromStdString(e.what()));
    }
}

void DeskHost::reloadLater(std::function<void()> reload) {
    QMetaObject::invokeMethod(context_.get(), [this, reload = std::move(reload)] {
        try {
            reload();
        } catch (const std::exception& e) {
            say(QString::fromStdString(e.what()));
        }
        if (changedOutside) changedOutside();
    }, Qt::QueuedConnection);
}

// A booking stands on the grid with an empty tag: store it, name it, paint it.
void DeskHost::AddApptWithPatient(Str column, Str resource) {
    inBusyPhase([&] {
        StoredAppointment a;
        a.resource = qs(resource);
        a.start = parseDate(session_.text("AppStartDateTime"));
        a.end = parseDate(session_.text("AppEndDateTime"));
        a.description = qs(session_.text("AppDescription"));
        a.patientId = qs(session_.text("AppPatEID"));
        a.status = "Scheduled";
        a.typeId = qs(session_.text("AppointmentTypeID"));
        a.comments = qs(session_.text("AppComments"));
        a.chiefComplaint = qs(session_.text("AppChiefComplaint"));
        a.priorAuth = qs(session_.text("AppPriorAuthNum"));
        a.refProvider = qs(session_.text("AppRefProvider"));
        a.refProviderId = qs(session_.text("AppRefProviderEID"));
        const std::string key = session_.text("AppKey");
        const auto number = static_cast<std::int16_t>(std::stoi(column));
        qint64 id = 0;
        if (!stored(
                [&] {
                    id = store_.addAppointment(a);
                    confirmed(id, &store_.written());
                },
                [this, number] { session_.call("RefreshSchedule", {Variant(number)}); }))
            return;
        session_.call("SetAppId", {Variant(column), Variant(std::to_string(id)), Variant(key), str(a.patientId)});
        const AppointmentRef booked =
            session_.control().GetDayView(column)->appointmentSet().Item(static_cast<std::int32_t>(std::stol(key)));
        if (booked) session_.call("SetStatus", {Variant(ObjectRef(booked)), Variant("Scheduled")});
    });
}

void DeskHost::UpdateAppStatus(Str, Variant& status) {
    inBusyPhase([&] {
        const qint64 id = currentAppointmentId();
        const QString wanted = qs(status.toString());
        if (stored(
                [&] {
                    store_.setStatus(id, versionOf(id), wanted);
                    confirmed(id, &store_.written());
                },
                [this] { reloadColumns(); }))
            session_.call("UpdateCurrentAppStatus", {str(wanted)});
    });
}

// A drag or a resize: the pane holds the appointment's new times. A refused
// change is put back by loading the columns from the store again, once the
// control has finished the gesture.
void DeskHost::storeTimes(const std::string& resource) {
    inBusyPhase([&] {
        const qint64 id = currentAppointmentId();
        const OleDate start = parseDate(session_.text("AppStartDateTime"));
        const OleDate end = parseDate(session_.text("AppEndDateTime"));
        stored(
            [&] {
                store_.moveAppointment(id, versionOf(id), qs(resource), start, end);
                confirmed(id, &store_.written());
            },
            [this] { reloadColumns(); });
    });
}

void DeskHost::ResourceAfterDrag(Str resource, Str) { storeTimes(resource); }
void DeskHost::ResourceAfterResize(Str resource, Str) { storeTimes(resource); }

// Asked before the appointment leaves the grid; a refusal reloads the column,
// which puts it back from the store.
void DeskHost::ResourceBeforeRemove(Str, Str column) {
    inBusyPhase([&] {
        const qint64 id = currentAppointmentId();
        const auto number = static_cast<std::int16_t>(std::stoi(column));
        stored(
            [&] {
                store_.removeAppointment(id, versionOf(id));
                confirmed(id, nullptr);
            },
            [this, number] { session_.call("RefreshSchedule", {Variant(number)}); });
    });
}

// The appointment the pane was just set to, when the store knows it. One the
// control holds with no tag (typed on a slot by a host that allows it) was
// never stored: the pane's id still names the appointment before it.
bool DeskHost::currentIsStored() {
    const std::string focus = widgetsOf(session_.control()).txtResourceFocus.text;
    bool keyed = false;
    const std::int32_t key = qs(session_.text("AppKey")).toInt(&keyed);
    if (!keyed || focus.empty()) return false;
    const AppointmentRef current = session_.control().GetDayView(focus)->appointmentSet().Item(key);
    return current && !current->Tag.empty();
}

void DeskHost::SaveAdditionalAppInfo(Str) {
    inBusyPhase([&] {
        if (!currentIsStored()) {
            say("This appointment is not stored, so its notes cannot be saved. Book the patient from the "
                "slot's menu.");
            return;
        }
        StoredAppointment a;
        a.id = currentAppointmentId();
        a.comments = qs(session_.text("AppComments"));
        a.chiefComplaint = qs(session_.text("AppChiefComplaint"));
        a.priorAuth = qs(session_.text("AppPriorAuthNum"));
        a.refProvider = qs(session_.text("AppRefProvider"));
        a.refProviderId = qs(session_.text("AppRefProviderEID"));
        if (stored(
                [&] {
                    a.version = versionOf(a.id);
                    store_.saveDetails(a);
                    confirmed(a.id, &store_.written());
                },
                [this] { reloadColumns(); })) {
            const StoredAppointment& saved = store_.written();
            const DateParts p = splitDate(saved.start);
            mention("Saved the notes of " + saved.description + ", " +
                    QLocale(QLocale::English).toString(QTime(p.hour, p.minute), "h:mm AP"));
        }
    });
}

// The pane and the panel for the appointment the user loaded.
void DeskHost::AppointmentSelected(Str) {
    inBusyPhase([&] {
        if (!currentIsStored()) {
            say("This appointment is not stored, so there is nothing to load for it.");
            return;
        }
        const StoredAppointment a = store_.appointment(currentAppointmentId());
        session_.set("AppPatEID", str(a.patientId));
        session_.set("AppComments", str(a.comments));
        session_.set("AppChiefComplaint", str(a.chiefComplaint));
        session_.set("AppPriorAuthNum", str(a.priorAuth));
        session_.set("AppRefProvider", str(a.refProvider));
        session_.set("AppRefProviderEID", str(a.refProviderId));
        loadPatient(a.patientId);
    });
}

// What the appointment's tool tip adds: its notes, as the store last gave them.
QString DeskHost::notesOf(const Appointment& app) const {
    if (app.Tag.empty()) return {};
    const qint64 id = qs(tagField(app.Tag, 0)).toLongLong();
    for (const auto& [key, day] : loaded_)
        for (const StoredAppointment& a : day.appointments) {
            if (a.id != id) continue;
            QStringList notes;
            // The kind of visit, by the caption the column's menu gives it.
            for (const QString& entry : day.types.split('~', Qt::SkipEmptyParts)) {
                const QStringList f = entry.split('|');
                if (f.size() == 5 && !a.typeId.isEmpty() && f[4] == a.typeId) notes << "Type: " + f[0];
            }
            if (!a.chiefComplaint.isEmpty()) notes << "Chief complaint: " + a.chiefComplaint;
            if (!a.comments.isEmpty()) notes << "Comments: " + a.comments;
            return notes.join('\n');
        }
    return {};
}

void DeskHost::loadPatient(const QString& id) {
    const Patient p = store_.patient(id);
    const std::pair<const char*, const QString*> fields[] = {
        {"PatEID", &p.id},
        {"PatName", &p.name},
        {"PatChartNumber", &p.chartNumber},
        {"PatDOB", &p.dob},
        {"PatSex", &p.sex},
        {"PatPCP", &p.pcp},
        {"PatHomePhone", &p.homePhone},
        {"PatHomePhoneExt", &p.homePhoneExt},
        {"PatWorkPhone", &p.workPhone},
        {"PatWorkPhoneExt", &p.workPhoneExt},
        {"PatOtherPhone", &p.otherPhone},
        {"PatOtherPhoneExt", &p.otherPhoneExt},
        {"PatPriIns", &p.primaryIns},
        {"PatPrimaryActive", &p.primaryActive},
        {"PatPrimaryCoPay", &p.primaryCoPay},
        {"PatSecIns", &p.secondaryIns},
        {"PatSecondaryActive", &p.secondaryActive},
        {"PatSecondaryCoPay", &p.secondaryCoPay},
        {"PatBalance30", &p.balance30},
        {"PatBalance60", &p.balance60},
        {"PatBalance90", &p.balance90},
        {"PatBalance180", &p.balance180},
        {"PatDOD", &p.dod},
        {"PhotoImageId", &p.photoImageId},
    };
    for (const auto& [property, value] : fields)
        session_.set(property, str(*value));
    session_.call("PatientLoaded");
}

void DeskHost::PatientSearch() {
    const QString id = choosePatient ? choosePatient() : QString();
    if (id.isEmpty()) return;
    try {
        loadPatient(id);
    } catch (const StoreError& e) {
        say(QString::fromStdString(e.what()));
    }
}

// The week of the resource: appointments count their days from 1, templates from 0.
void DeskHost::OnWeekLoad(Str resource, OleDate date) {
    const QDate d = QDate(splitDate(date).year, splitDate(date).month, splitDate(date).day);
    const OleDate monday = addDays(datePart(date), 1 - d.dayOfWeek());
    try {
        for (const StoredAppointment& a :
             store_.appointmentsBetween(qs(resource), monday, addDays(monday, 6))) {
            const auto day = static_cast<std::int16_t>(datePart(a.start).value - monday.value + 1);
            session_.call("AddWkvwAppointment",
                          {Variant("1"), str(a.description), Variant(a.start), Variant(a.end),
                           Variant(std::to_string(a.id)), str(a.status), Variant(day)});
        }
        for (std::int16_t day = 0; day < 7; ++day)
            for (const Template& t : store_.templates(qs(resource), addDays(monday, day)))
                session_.call("AddTemplateWeekview", {Variant(day), Variant(t.start), Variant(t.end),
                                                      str(t.description), str(t.colour)});
    } catch (const StoreError& e) {
        say(QString::fromStdString(e.what()));
    }
    session_.call("ShowWkvw");
}

// The first half hour of a working day, from the column's date on, that no
// appointment of the resource takes; the column then shows it.
void DeskHost::NextAvailable(Str resource, Str column) {
    OleDate day = GetDayViewDate(column);
    for (int tries = 0; tries < 60; ++tries, day = addDays(day, 1)) {
        const std::vector<StoredAppointment> taken = store_.appointments(qs(resource), day);
        for (int minute = 8 * 60; minute + 30 <= 17 * 60; minute += 15) {
            const OleDate start = addMinutes(day, minute), end = addMinutes(start, 30);
            bool free = true;
            for (const StoredAppointment& a : taken)
                if (a.start < end && start < a.end && a.status != "Cancelled") free = false;
            if (!free) continue;
            session_.call("SetResourceAndDate",
                          {Variant(resource), Variant(static_cast<std::int16_t>(std::stoi(column))),
                           Variant(mmddyyyyText(day))});
            session_.call("DisplayTopIndex", {Variant(start), Variant(column)});
            return;
        }
    }
    say("There is no free half hour in the next two months.");
}

OleDate DeskHost::GetDayViewDate(const std::string& column) {
    return session_.control().GetDayView(column)->CurrentDate();
}

void DeskHost::RefreshAllSchedules() { reloadColumns(); }
void DeskHost::RefreshAllDisplayAll() { reloadColumns(); }

void DeskHost::PrintDay(Str resource, Str info) {
    if (printDay) printDay(qs(resource), qs(info));
}

void DeskHost::DisplayPhoto(Str, Str, Str imageId, Str) {
    if (showPhoto) showPhoto(qs(imageId));
}

void DeskHost::HidePhoto() {
    if (showPhoto) showPhoto(QString());
}

// Commands whose screens belong to other parts of a practice's software.
void DeskHost::ValidatePatient(Str p) { mention("Validate patient " + qs(p)); }
void DeskHost::PrintResourceSuperbills(Str r, Str d) {
    mention("Print the superbills of " + qs(r) + " for " + qs(d));
}
void DeskHost::AppointmentSearch(Str c) { mention("Search the appointments of column " + qs(c)); }
void DeskHost::AddEditRecurrence(Str tag, Str) { mention("Edit the recurrence of " + qs(tag)); }
void DeskHost::OpenPatient(Str p) { mention("Open patient " + qs(p)); }
void DeskHost::OpenPatientHistory(Str p) {
    if (showHistory)
        showHistory(qs(p));
    else
        mention("Open the history of patient " + qs(p));
}
void DeskHost::RefProviderSearch() { mention("Search a referring provider"); }
void DeskHost::PrintSuperbill(Str a, Str p) { mention("Print superbill " + qs(a) + " of patient " + qs(p)); }
void DeskHost::PrintDaysFacesheets(Str r, Str d) {
    mention("Print the face sheets of " + qs(r) + " for " + qs(d));
}
void DeskHost::PrintFaceSheet(Str a, Str p) { mention("Print face sheet " + qs(a) + " of patient " + qs(p)); }
void DeskHost::DisplayQuickScan(Str p, std::int16_t n) {
    mention("Scan " + QString::number(n) + " for patient " + qs(p));
}
void DeskHost::QuickComments(Str, Str type) { mention("Quick comments for the " + qs(type)); }
void DeskHost::DisplayTasking() { mention("Open the office tasks"); }
void DeskHost::DisplayRecallSetup(Str p) { mention("Add patient " + qs(p) + " to the recall list"); }
void DeskHost::DisplayRecallList() { mention("Open the recall list"); }
void DeskHost::DisplayLegend() {
    std::vector<LegendRow> rows;
    for (const StatusColour& s : kStatusColours)
        rows.push_back({s.status, s.colour, {}});
    try {
        for (const auto& [name, colour] : store_.templateKinds())
            rows.push_back({name, -1, colour});
    } catch (const ConnectionLost& e) {
        lostConnection(e);
    } catch (const StoreError& e) {
        say(QString::fromStdString(e.what()));
    }
    if (showLegend) showLegend(rows);
}
void DeskHost::PrintTxPlan(Str a, Str p, Str) {
    mention("Print the treatment plan " + qs(a) + " of patient " + qs(p));
}
void DeskHost::OpenQuickPay(Str a, Str p) { mention("Quick pay for " + qs(a) + " of patient " + qs(p)); }
void DeskHost::OpenAuthorization(Str a, Str p) {
    mention("Authorization of " + qs(a) + " for patient " + qs(p));
}
void DeskHost::OpenOfficeCommunication(Str p) { mention("Office communication about patient " + qs(p)); }

} // namespace practice
