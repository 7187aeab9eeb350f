// The week form: the control prepares it for one resource and week and asks the
// host to fill it with OnWeekLoad; the host passes the week's appointments and
// templates in one by one and shows the form. Whatever it held is gone at each
// load and each close, so every showing starts from the host's input.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

WeekViewForm& ctlScheduler::frmWeekView() {
    if (w_.frmWeekView) return *w_.frmWeekView;
    auto form = std::make_unique<WeekViewForm>(platform_);
    Container& c = platform_.container;
    form->name = "frmWeekView", form->container = &c, form->visible = false;
    form->caption = "Week View";
    form->Label1.name = "Label1", form->Label1.container = &c, form->Label1.caption = "Resource:";
    TextField& resource = form->txtResource;
    resource.name = "txtResource", resource.container = &c;
    resource.locked = true;
    resource.backColor = TextField::kButtonFace;
    form->cmdClose.name = "cmdClose", form->cmdClose.container = &c, form->cmdClose.caption = "Close";
    form->cmdClose.onClick = [this] { cmdClose_Click(); };
    w_.frmWeekView = std::move(form);
    return *w_.frmWeekView;
}

// No test comes first: a column without a resource passes empty texts, and the
// date is the column's own, wherever it falls in its week.
void ctlScheduler::mnoWeekView_Click() {
    const std::size_t index = columnIndex(FocusedColumnIndex());
    const std::string value = w_.cmbResourceValue[index].text();
    const std::string name = w_.cmbResource[index].text();
    const OleDate date = GetDayView(w_.txtResourceFocus.text)->CurrentDate();
    LoadWeekView(value, name, date);
}

void ctlScheduler::LoadWeekView(const std::string& strScheduledEID, const std::string& strScheduledName,
                                OleDate dtCurrentDate) {
    ClearWkvw();
    WeekViewForm& form = frmWeekView();
    form.visible = false;
    form.txtResource.text = strScheduledName;
    form.wvwWeekView.setWeekDate(dtCurrentDate);
    const std::string eid = strScheduledEID;
    host().OnWeekLoad(eid, dtCurrentDate);
}

// Modal: the window's hook runs the user's time with the form. However the
// window ends it, the form closes as its Close button closes it.
void ctlScheduler::ShowWkvw() {
    WeekViewForm& form = frmWeekView();
    form.visible = true;
    if (platform_.container.onShowModal) {
        const std::function<void(Form&)> show = platform_.container.onShowModal;
        show(form);
    }
    if (form.visible) cmdClose_Click();
}

void ctlScheduler::cmdClose_Click() {
    ClearWkvw();
    frmWeekView().visible = false;
}

void ctlScheduler::ClearWkvw() {
    IGWeekView& week = frmWeekView().wvwWeekView;
    for (int day = 0; day < IGWeekView::kDays; ++day)
        week.day(day)->appointmentSet().RemoveAll();
}

// Monday to Friday by name, one appointment at a time; the weekend stays. Each
// step moves on from the appointment just removed, which the set still knows
// the follower of.
void ctlScheduler::ClearWeekView() {
    IGWeekView& week = frmWeekView().wvwWeekView;
    for (int day = 1; day <= 5; ++day) {
        AppointmentSet& set = week.Days(Variant(weekdayName(day)))->appointmentSet();
        for (AppointmentRef app = set.FirstAppointment(); app; app = set.NextAppointment(app))
            set.Remove(app->Key());
    }
}

// strResourceNumber is taken and not used: the form shows one resource.
void ctlScheduler::AddWkvwAppointment(const std::string& /*strResourceNumber*/,
                                      const std::string& strDescription, OleDate dtStartDateTime,
                                      OleDate dtEndDateTime, const std::string& strAppID,
                                      const std::string& strStatus, std::int16_t intDayOfWeek) {
    const DayViewRef day =
        frmWeekView().wvwWeekView.Days(Variant(static_cast<std::int16_t>(intDayOfWeek - 1)));
    const AppointmentRef app = day->appointmentSet().Add(strDescription, dtStartDateTime, dtEndDateTime);
    app->Tag = strAppID; // the id alone: a week appointment names no patient
    SetStatus(app, strStatus);
}

// From a quarter past midnight: the first three five-minute cells stay bare.
void ctlScheduler::AddAllDayTemplateWeekview(std::string& strColor, std::int16_t intDay) {
    const std::int32_t colour = vbRGBVal(strColor);
    const DayViewRef day = frmWeekView().wvwWeekView.Days(Variant(intDay));
    day->setTimeSlotColor(parseDate("12:15:00 AM"), parseDate("11:59:00 PM"), colour);
}

// Painted as a column's template is, but on the day's own grid and kept nowhere.
void ctlScheduler::AddTemplateWeekview(const Variant& intDay, const OleDate& dtStartDateTime,
                                       OleDate& dtEndDateTime, const std::string& /*strDescription*/,
                                       std::string& strColor) {
    const TemplatePaint paint = prepareTemplatePaint(dtStartDateTime, dtEndDateTime, strColor);
    frmWeekView().wvwWeekView.Days(intDay)->setTimeSlotColor(paint.start, paint.end, paint.colour);
}

void ctlScheduler::RefreshTimeslotsWeekview(std::int16_t intDay) {
    frmWeekView().wvwWeekView.Days(Variant(intDay))->paintBareDay();
}

} // namespace quorvane
