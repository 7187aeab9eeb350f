// The routing table row by row: each command of the menus and buttons, with and
// without the patient or appointment it needs, and exactly what the host hears
// or the user is told.

#include <QuorvaneScheduler/control_internals.h>
#include "control/control_fixture.h"

#include <QuorvaneScheduler/errors.h>

namespace quorvane {
namespace {

using test::ControlFixture;

enum class State { Patient, BlankPatient, NoPatient, Named, Unnamed, NoPatientId, ShortTag };

struct Routing : ControlFixture {
    Routing() {
        for (PopupMenu* menu :
             {&widgetsOf(*control).mnuRightClickScheduler, &widgetsOf(*control).mnuRightClickSchedulerApp})
            menu->onPopup = [this](PopupMenu& m, float, float) { opened = &m; };
        setColours();
        control->setResourceGroupViews("10~Main~2~2");
        control->setResourceGroupDefaults("10~Main~501~1");
        control->setResourceGroups("10~Main~Y~501~Dr. Ortiz~Providers~Dentists");
        control->AddAppointment("1", "Visit", at(9, 0), at(9, 30), "1204", "Scheduled", "", "5531");
        widgetsOf(*control).txtAppComments.text = "note";
        widgetsOf(*control).txtAppChiefComplaint.text = "pain";
    }

    // Puts the control in `state` and runs the command of the widget or menu item named.
    std::string run(const std::string& command, State state) {
        SchedulerWidgets& w = widgetsOf(*control);
        w.txtPatEID.text = state == State::NoPatient ? "" : state == State::BlankPatient ? "  " : "5531 ";
        w.txtPatChartNumber.text = state == State::NoPatient || state == State::BlankPatient ? "" : "C-7";
        const AppointmentRef app = set(0).FirstAppointment();
        EXPECT_TRUE(w.dvwResource[0]->userClickOn(app->Key(), true));
        const std::map<State, std::string> tags{
            {State::Unnamed, ""}, {State::NoPatientId, "1204~~ "}, {State::ShortTag, "1204~77"}};
        app->Tag = tags.count(state) ? tags.at(state) : "1204~~5531";
        log.clear();
        try {
            if (MenuItem* item = ControlInternals::findMenuItem(*control, command))
                item->onClick();
            else
                ControlInternals::findButton(*control, command)->onClick();
        } catch (const RuntimeError& e) {
            log.push_back("! " + std::string(errorKindName(e.kind())));
        }
        std::string out;
        for (const std::string& line : log)
            out += (out.empty() ? "" : " | ") + line;
        return out;
    }

    PopupMenu* opened = nullptr;
};

TEST_F(Routing, PanelButtons) {
    // clang-format off
    const struct { const char* command; State state; const char* heard; } rows[] = {
        {"cmdOpenPatient", State::Patient, "event OpenPatient(5531 )"},
        {"cmdOpenPatient", State::BlankPatient, "msgbox No Patient is selected"},
        {"cmdValidatePatient", State::Patient, "event ValidatePatient(5531 )"},
        {"cmdValidatePatient", State::NoPatient, "msgbox No Patient is selected"},
        {"cmdCommentQuickComment", State::Patient, "event QuickComments(note, Comment)"},
        {"cmdCommentQuickComment", State::BlankPatient, "msgbox Please select a patient"},
        {"cmdChiefComplainQuickComment", State::Patient, "event QuickComments(pain, Chief)"},
        {"cmdChiefComplainQuickComment", State::NoPatient, "msgbox Please select a patient"},
        {"cmdPrintSuperbill", State::Patient, "event PrintSuperbill(0, 5531 )"},
        {"cmdPrintSuperbill", State::NoPatient, "event PrintSuperbill(0, )"},
        {"cmdQuickScan", State::Patient, "event DisplayQuickScan(5531 , 1)"},
        {"cmdQuickScanI1", State::BlankPatient, "event DisplayQuickScan(  , 2)"},
        {"cmdQuickScanI2", State::NoPatient, "msgbox Please select a patient."},
        {"cmdLegend", State::NoPatient, "event DisplayLegend()"},
        {"cmdTasking", State::NoPatient, "event DisplayTasking()"},
        {"cmdRefProvider", State::NoPatient, "event RefProviderSearch()"},
        {"cmdSaveAdditionalAppInfo", State::Patient, "msgbox No appointment has been selected"},
        {"cmdPatientSearch", State::Patient, "event PatientSearch()"},
    };
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(run(row.command, row.state), row.heard) << row.command << " in state " << int(row.state);
    EXPECT_EQ(widgetsOf(*control).txtPatEID.text, "") << "the search clears the panel first";
    EXPECT_EQ(widgetsOf(*control).txtAppComments.text, "");
}

TEST_F(Routing, MenuCommandsOfAFreeSlot) {
    const std::pair<const char*, const char*> rows[] = {
        {"mnoFindNextAvailable", "event NextAvailable(501, 1)"},
        {"mnoSearchAppointments", "event AppointmentSearch(1)"},
        {"mnoRecallList", "event DisplayRecallList()"},
        {"mnoPrintDaysFacesheets", "event PrintDaysFacesheets(501, 1/15/2008)"},
        {"mnoPrintDaySuperbills", "event PrintResourceSuperbills(501, 1/15/2008)"},
        {"mnoDisplayAll", "event RefreshAllDisplayAll()"},
        {"mnoRefreshAllSchedules", "event RefreshAllSchedules()"},
        {"mnuRecallList", "event DisplayRecallList()"},
        {"mnoFindNextAvailableApp", "event NextAvailable(501, 1)"},
        {"mnoSearchAppointmentsApp", "event AppointmentSearch(1)"},
        {"mnoRefreshAllSchedulesApp", "event RefreshAllSchedules()"},
        {"mnoPrint", "event PrintDay(501, 20080115~5~08~17)"},
    };
    for (const auto& [command, heard] : rows)
        EXPECT_EQ(run(command, State::NoPatient), heard) << command;
    // The second column shows no resource: the commands still go, with an empty
    // one, but for the printout.
    EXPECT_TRUE(widgetsOf(*control).dvwResource[1]->userClickAt(at(9, 0), true));
    log.clear();
    widgetsOf(*control).mnoPrintDaysFacesheets.onClick();
    widgetsOf(*control).mnoPrint.onClick();
    EXPECT_EQ(log, (std::vector<std::string>{"event PrintDaysFacesheets(, 1/15/2008)",
                                             "msgbox You must select a resource"}));
}

// Each appointment command with a named appointment, one never named, one whose
// patient field is blank, and a tag short of the patient field.
TEST_F(Routing, AppointmentCommandsTestTheTag) {
    const std::pair<const char*, const char*> rows[] = {
        {"mnoAddToRecallList", "event DisplayRecallSetup(5531)"},
        {"mnoValidatePatientApp", "event ValidatePatient(5531)"},
        {"mnoOfficeCommunication", "event OpenOfficeCommunication(5531)"},
        {"mnoOpenPatientSetup", "event OpenPatient(5531)"},
        {"mnoOpenPatientHistory", "event OpenPatientHistory(5531)"},
        {"mnoOpenQuickPay", "event OpenQuickPay(1204, 5531)"},
        {"mnoAuthorization", "event OpenAuthorization(1204, 5531)"},
        {"mnoPrintSuperbillApp", "event PrintSuperbill(1204, 5531)"},
        {"mnoPrintFaceSheet", "event PrintFaceSheet(1204, 5531)"},
        {"mnoPrintTreatmentPlan", "event PrintTxPlan(1204, 5531, 1/15/2008)"},
    };
    for (const auto& [command, heard] : rows) {
        SCOPED_TRACE(command);
        EXPECT_EQ(run(command, State::Named), heard);
        EXPECT_EQ(run(command, State::Unnamed), "msgbox Error: Appointment information is blank");
        EXPECT_EQ(run(command, State::NoPatientId), "msgbox Error: Patient ID is blank");
        EXPECT_EQ(run(command, State::ShortTag), "! SubscriptOutOfRange");
    }
    EXPECT_EQ(run("mnoAddEditRecurrenceApp", State::Named), "event AddEditRecurrence(1204~~5531, 1)");
    EXPECT_EQ(run("mnoAddEditRecurrenceApp", State::Unnamed), "event AddEditRecurrence(, 1)");
}

// Every item of both menus shows and is enabled whatever the state; only the
// type entries depend on the column.
TEST_F(Routing, MenusShowAllTheirItemsInEveryState) {
    for (const State state : {State::Patient, State::NoPatient, State::Unnamed}) {
        for (const bool onAppointment : {false, true}) {
            run("cmdLegend", state);
            opened = nullptr;
            PVDayView& view = *widgetsOf(*control).dvwResource[0];
            if (onAppointment)
                view.userClickOn(set(0).FirstAppointment()->Key(), true);
            else
                EXPECT_TRUE(view.userClickAt(at(9, 40), true));
            if (state == State::Unnamed && onAppointment) {
                EXPECT_EQ(opened, nullptr) << "a tag without a second field opens no menu";
                continue;
            }
            ASSERT_NE(opened, nullptr);
            EXPECT_EQ(opened->name, onAppointment ? "mnuRightClickSchedulerApp" : "mnuRightClickScheduler");
            for (const MenuItem* item : opened->items)
                EXPECT_TRUE(item->visible && item->enabled) << item->name;
        }
    }
}

} // namespace
} // namespace quorvane
