#pragma once
// The practice desk's side of the control: it answers every event as a
// practice's software does, from its store. A change the user made on the grid
// is stored in one transaction before the control is told it succeeded; when
// the store refuses it, the user is told why and the affected columns are
// loaded again from the store, so the grid never shows what was not stored.
//
// What needs a window (a message, the patient search, the printout, a photo) is
// asked of the desk's window through the hooks below; without them the desk
// runs headless.

#include "control_session.h"
#include "practice_store.h"

#include <QString>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <vector>

class QObject;
class QTimer;

namespace practice {

class DeskHost final : public quorvane::ctlSchedulerEvents {
public:
    DeskHost(quorvane::ctlScheduler& control, PracticeStore& store);
    ~DeskHost() override;
    DeskHost(const DeskHost&) = delete;
    DeskHost& operator=(const DeskHost&) = delete;

    // Brings the control up from the store: colours, size, catalogue. A store
    // found damaged while the first columns load is a DamagedError here, so a
    // desk never opens on what would read as a free day.
    void start(int widthPixels, int heightPixels);

    ControlSession& session() { return session_; }

    // The window's part. Each may stay empty.
    std::function<void(const QString& message)> tell;
    std::function<QString()> choosePatient; // a patient id, or empty
    std::function<void(const QString& resource, const QString& info)> printDay;
    std::function<void(const QString& imageId)> showPhoto; // empty: take it away
    std::function<void(const QString& what)> note;         // commands the desk only mentions
    std::function<void()> changedOutside; // the desk changed the control outside any event
    std::function<void(bool offline)> offlineChanged; // the server went away, or came back
    std::function<void(const QString& patient)> showHistory; // the patient's visits and their trail
    // The key to the colours: each status and each kind of template block, by
    // name and colour (a status's as the control holds it, a block's as text).
    struct LegendRow {
        QString name;
        std::int32_t statusColour = -1;
        QString blockColour;
    };
    std::function<void(const std::vector<LegendRow>& rows)> showLegend;
    std::function<bool()> mayProbe; // false while a dialog of the window is open
    // A column's day read from the store and now shown by the control (how
    // soon a desk shows another desk's change is measured here).
    std::function<void(const QString& resource, quorvane::OleDate day, const std::vector<StoredAppointment>&)>
        columnShown;

    // The events, in the order of the interface.
    using Str = const std::string&;
    void ValidatePatient(Str patient) override;
    void UpdateAppStatus(Str resource, quorvane::Variant& status) override;
    void SaveAdditionalAppInfo(Str resource) override;
    void PrintDay(Str resource, Str info) override;
    void PrintResourceSuperbills(Str resource, Str date) override;
    void AddApptWithPatient(Str column, Str resource) override;
    void PatientSearch() override;
    void AppointmentSearch(Str column) override;
    void AddEditRecurrence(Str tag, Str column) override;
    void OnWeekLoad(Str resource, quorvane::OleDate date) override;
    void OpenPatient(Str patient) override;
    void OpenPatientHistory(Str patient) override;
    void AppointmentSelected(Str column) override;
    void ResourceBeforeRemove(Str resource, Str column) override;
    void ResourceAfterResize(Str resource, Str column) override;
    void ResourceAfterDrag(Str resource, Str column) override;
    void ResourceOnClick(std::int16_t column, Str resource, const quorvane::Variant& date) override;
    void NextAvailable(Str resource, Str column) override;
    void RefreshAllSchedules() override;
    void RefreshAllDisplayAll() override;
    void RefProviderSearch() override;
    void PrintSuperbill(Str app, Str patient) override;
    void PrintDaysFacesheets(Str resource, Str date) override;
    void PrintFaceSheet(Str app, Str patient) override;
    void DisplayPhoto(Str, Str, Str imageId, Str) override;
    void HidePhoto() override;
    void DisplayQuickScan(Str patient, std::int16_t scan) override;
    void QuickComments(Str text, Str type) override;
    void DisplayTasking() override;
    void DisplayRecallSetup(Str patient) override;
    void DisplayRecallList() override;
    void DisplayLegend() override;
    void PrintTxPlan(Str app, Str patient, Str date) override;
    void OpenQuickPay(Str app, Str patient) override;
    void OpenAuthorization(Str app, Str patient) override;
    void OpenOfficeCommunication(Str patient) override;

    // Fills the patient panel with a patient of the store and applies its rules.
    void loadPatient(const QString& id);
    // Loads every column on screen again from the store.
    void reloadColumns();
    // Another desk changed a resource's day: the columns that show it load it
    // again, keeping the top of their grid and the appointment selected there.
    void otherDeskChanged(const QString& resource, quorvane::OleDate day);
    // While the server is out of reach the desk is offline: the control is
    // disabled and the grid stays as the store last gave it. This tries to reach
    // the server, and once it is back reloads the columns on screen, keeping
    // their top and selection, and lets the user on.
    bool retry();
    bool offline() const { return offline_; }
    // The notes of an appointment on the grid, for its tool tip.
    QString notesOf(const quorvane::Appointment& app) const;
    // What the desk's timer does every two seconds on a server's database: an
    // online desk asks the server a light question, so even an idle desk learns
    // within seconds that it went away; an offline one retries.
    void probe();
    static constexpr int kProbeMs = 2000;

private:
    // What one column of one resource's day was last loaded with, kept as this
    // desk's own changes are stored: while the store cannot be read a column
    // loads this again rather than showing an empty day.
    struct ColumnDay {
        std::vector<Template> templates;
        std::vector<StoredAppointment> appointments;
        QString types;
    };
    void goOffline();
    bool read(const QString& resource, quorvane::OleDate day, ColumnDay& out);
    void forgetDaysNotShown();
    void inBusyPhase(const std::function<void()>& answer);
    // Runs a reload once the event loop is back, when the gesture that asked
    // for it has finished.
    void reloadLater(std::function<void()> reload);
    bool currentIsStored();
    void lostConnection(const ConnectionLost& e);
    // Loads one column again from the store, keeping the top of its grid and the
    // appointment selected there.
    void reloadColumn(int column);
    // The store's word on appointment `id` after this desk changed it: its new
    // values, or none when it was removed.
    void confirmed(qint64 id, const StoredAppointment* now);
    static QString dayKey(const QString& resource, quorvane::OleDate day);
    // The appointment the pane describes, by the id of its tag.
    qint64 currentAppointmentId();
    // Runs a change of the store; on refusal the user is told and `reload` runs.
    bool stored(const std::function<void()>& change, const std::function<void()>& reload);
    void storeTimes(const std::string& resource);
    void say(const QString& message);
    void mention(const QString& what);
    // Ends the busy phase, unless the database is out of reach.
    void endBusy();
    int versionOf(qint64 id);
    void remember(const StoredAppointment& a) { versions_[a.id] = a.version; }
    quorvane::OleDate GetDayViewDate(const std::string& column);

    ControlSession session_;
    PracticeStore& store_;
    // The version of each appointment as this desk last loaded or stored it.
    std::map<qint64, int> versions_;
    bool offline_ = false;
    bool starting_ = false;
    QString damaged_; // found while starting
    // Whether the desk has given each column its slot length; after that the
    // user's choice stands through every reload.
    std::array<bool, quorvane::kColumns + 1> sized_{};
    std::map<QString, ColumnDay> loaded_;
    std::unique_ptr<QTimer> probe_;
    std::unique_ptr<QObject> context_; // what a queued reload runs on
    // Changes of other desks that came while the control was busy.
    std::vector<std::pair<QString, quorvane::OleDate>> pending_;
};

} // namespace practice
