// The console's inspection paths: what `get` reads besides the control's members.

#include <QuorvaneScheduler/script/script_reader.h>
#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/script/console.h>

#include <array>
#include <functional>

namespace quorvane::host {

namespace {

std::string scriptName(const Segment& s) { return s.name + (s.hasArgs ? "(...)" : ""); }

[[noreturn]] void nothing(const Chain& path) {
    std::string text;
    for (const Segment& s : path)
        text += (text.empty() ? "" : ".") + scriptName(s);
    throw ScriptError("'" + text + "' names nothing");
}

void noArgs(const Segment& s) {
    if (s.hasArgs) throw ScriptError("'" + s.name + "' takes no index");
}

Variant single(float f) { return Variant(f); }

// The properties every widget has.
bool common(const WidgetBase& w, const std::string& prop, Variant& out) {
    if (prop == "Visible")
        out = Variant(w.visible);
    else if (prop == "Enabled")
        out = Variant(w.enabled);
    else if (prop == "Left")
        out = single(w.left);
    else if (prop == "Top")
        out = single(w.top);
    else if (prop == "Width")
        out = single(w.width);
    else if (prop == "Height")
        out = single(w.height);
    else if (prop == "ToolTipText")
        out = Variant(w.toolTipText);
    else
        return false;
    return true;
}

} // namespace

void Console::inspect(const Chain& path) {
    const Segment& head = path.front();
    if (head.name == "dvwResource" && head.hasArgs) {
        const DayViewRef view = dayView(head);
        if (path.size() == 2 && path[1].name == "AppointmentSet" && !path[1].hasArgs) {
            printAppointmentSet(*view);
            return;
        }
        emit("= " + printValue(dayViewMember(*view, path)));
        return;
    }
    if (inspectWeekView(path)) return;
    if (head.name == "app" && head.hasArgs) {
        const AppointmentRef app = appointment(head);
        if (path.size() != 2) nothing(path);
        emit("= " + printValue(appointmentField(*app, path[1])));
        return;
    }
    if (head.name == "state") {
        if (path.size() != 2) nothing(path);
        emit("= " + printValue(stateField(path[1])));
        return;
    }
    if (head.name == "UserControl" && !head.hasArgs && path.size() == 2) {
        noArgs(path[1]);
        if (path[1].name == "Enabled") {
            emit("= " + printValue(Variant(control_->UserControlEnabled())));
            return;
        }
        if (path[1].name == "ActiveControl") {
            emit("= " + printValue(Variant(platform_.container.activeControl())));
            return;
        }
        nothing(path);
    }
    emit("= " + printValue(widgetProperty(path)));
}

void Console::printAppointmentSet(const PVDayView& view) {
    const auto items = view.appointmentSet().items(); // a copy: printing runs no code, but stay safe
    if (items.empty()) emit("= (none)");
    for (const AppointmentRef& app : items)
        emit("= " + printValue(Variant(ObjectRef(app))) + ": Text=" + quote(app->Text) + " Start=" +
             printValue(Variant(app->StartDateTime)) + " End=" + printValue(Variant(app->EndDateTime)) +
             " Tag=" + quote(app->Tag) + " BackColor=" + std::to_string(app->BackColor) +
             " Selected=" + (app->Selected() ? "True" : "False"));
}

bool Console::inspectWeekView(const Chain& path) {
    const Segment& head = path.front();
    if (head.hasArgs) return false;
    if (head.name == "wvwWeekView") {
        if (path.size() == 2 && path[1].name == "WeekDate" && !path[1].hasArgs) {
            emit("= " + printValue(Variant(control_->frmWeekView().wvwWeekView.WeekDate())));
            return true;
        }
        if (path.size() < 3 || path[1].name != "Days") nothing(path);
        const DayViewRef day = weekDay(path[1]);
        const Chain member(path.begin() + 1, path.end());
        if (member.size() == 2 && member[1].name == "AppointmentSet" && !member[1].hasArgs)
            printAppointmentSet(*day);
        else if (member.size() == 2 && member[1].name == "Date" && !member[1].hasArgs)
            emit("= " + printValue(Variant(day->CurrentDate())));
        else
            emit("= " + printValue(dayViewMember(*day, member)));
        return true;
    }
    if (path.size() != 2) return false;
    const Segment& prop = path[1];
    if (head.name == "frmWeekView") {
        noArgs(prop);
        const WeekViewForm& form = control_->frmWeekView();
        if (prop.name == "Caption")
            emit("= " + printValue(Variant(form.caption)));
        else if (prop.name == "Visible")
            emit("= " + printValue(Variant(form.visible)));
        else
            nothing(path);
        return true;
    }
    if (head.name != "txtResource" && head.name != "cmdClose" && head.name != "Label1") return false;
    noArgs(prop);
    WeekViewForm& form = control_->frmWeekView();
    Variant out;
    const WidgetBase& widget = head.name == "txtResource" ? static_cast<WidgetBase&>(form.txtResource)
                               : head.name == "cmdClose"  ? static_cast<WidgetBase&>(form.cmdClose)
                                                          : static_cast<WidgetBase&>(form.Label1);
    if (prop.name == "Text" && head.name == "txtResource")
        out = Variant(form.txtResource.text);
    else if (prop.name == "BackColor" && head.name == "txtResource")
        out = Variant(form.txtResource.backColor);
    else if (prop.name == "Caption" && head.name == "cmdClose")
        out = Variant(form.cmdClose.caption);
    else if (prop.name == "Caption" && head.name == "Label1")
        out = Variant(form.Label1.caption);
    else if (!common(widget, prop.name, out))
        nothing(path);
    emit("= " + printValue(out));
    return true;
}

Variant Console::dayViewMember(PVDayView& view, const Chain& path) {
    if (path.size() == 3 && path[1].name == "AppointmentSet" && path[2].name == "Count" && !path[1].hasArgs &&
        !path[2].hasArgs)
        return Variant(view.appointmentSet().Count());
    if (path.size() != 2) nothing(path);
    const Segment& m = path[1];
    const std::string& n = m.name;
    if (n == "TimeSlotSelected" || n == "TimeSlotColor") {
        if (m.args.size() != 1) throw ScriptError(n + " takes one time");
        const OleDate t = evaluate(m.args[0]).toDate();
        return n == "TimeSlotSelected" ? Variant(view.TimeSlotSelected(t)) : Variant(view.TimeSlotColor(t));
    }
    noArgs(m);
    if (n == "CurrentDate") return Variant(view.CurrentDate());
    if (n == "Increments") return Variant(view.Increments());
    if (n == "BusinessHoursBegin") return Variant(view.BusinessHoursBegin());
    if (n == "BusinessHoursEnd") return Variant(view.BusinessHoursEnd());
    if (n == "TopIndex") return Variant(view.TopIndex());
    if (n == "ViewMode") return Variant(view.ViewMode);
    if (n == "Tag") return Variant(view.Tag);
    if (n == "Visible") return Variant(view.Visible);
    if (n == "Left") return single(view.Left);
    if (n == "Top") return single(view.Top);
    if (n == "Width") return single(view.Width);
    if (n == "Height") return single(view.Height);
    if (n == "DayStartTime") return Variant(view.DayStartTime());
    if (n == "DayEndTime") return Variant(view.DayEndTime());
    if (n == "DayBackColor") return Variant(view.DayBackColor());
    if (n == "Index") return Variant(view.Index());
    nothing(path);
}

Variant Console::appointmentField(const Appointment& app, const Segment& f) {
    noArgs(f);
    const std::string& n = f.name;
    if (n == "Text") return Variant(app.Text);
    if (n == "StartDateTime") return Variant(app.StartDateTime);
    if (n == "EndDateTime") return Variant(app.EndDateTime);
    if (n == "Tag") return Variant(app.Tag);
    if (n == "Key") return Variant(app.Key());
    if (n == "BackColor") return Variant(app.BackColor);
    if (n == "Selected") return Variant(app.Selected());
    throw ScriptError("appointments have no field '" + n + "'");
}

Variant Console::stateField(const Segment& f) {
    const SchedulerState& s = stateOf(*control_);
    std::vector<std::int32_t> idx;
    for (const Expr& e : f.args)
        idx.push_back(wholeNumber(e, "an index"));
    auto want = [&](std::size_t n) {
        if (idx.size() != n)
            throw ScriptError("state." + f.name + " takes " + std::to_string(n) + " index" +
                              (n == 1 ? "" : "es"));
    };
    auto at = [&](std::size_t k, std::int32_t size) {
        if (idx[k] < 0 || idx[k] >= size) throw SubscriptOutOfRange();
        return static_cast<std::size_t>(idx[k]);
    };
    auto obj = [](const AppointmentRef& a) { return Variant(ObjectRef(a)); };

    const std::string& n = f.name;
    const std::map<std::string, std::function<Variant()>> plain{
        {"lngScheduleWidth", [&] { return Variant(s.lngScheduleWidth); }},
        {"strImagingEnabled", [&] { return Variant(s.strImagingEnabled); }},
        {"strTaskingEnabled", [&] { return Variant(s.strTaskingEnabled); }},
        {"blnClearCommentsEnabled", [&] { return Variant(s.blnClearCommentsEnabled); }},
        {"objCurrentApp", [&] { return obj(s.objCurrentApp); }},
        {"strCurrentAppId", [&] { return Variant(s.strCurrentAppId); }},
        {"strAppointmentTypeID", [&] { return Variant(s.strAppointmentTypeID); }},
        {"blnSlotFound", [&] { return Variant(s.blnSlotFound); }},
        {"blnAppMoving", [&] { return Variant(s.blnAppMoving); }},
        {"strMoveFromColumn", [&] { return Variant(s.strMoveFromColumn); }},
        {"strMoveStatus", [&] { return Variant(s.strMoveStatus); }},
        {"objMoveApp", [&] { return obj(s.objMoveApp); }},
        {"blnShowTodayRunning", [&] { return Variant(s.blnShowTodayRunning); }},
        {"blnSuppressColumnEvents", [&] { return Variant(s.blnSuppressColumnEvents); }},
        {"blnPhotoShown", [&] { return Variant(s.blnPhotoShown); }},
        {"strPatDOD", [&] { return Variant(s.strPatDOD); }},
        {"strPatPrimaryActive", [&] { return Variant(s.strPatPrimaryActive); }},
        {"strPatSecondaryActive", [&] { return Variant(s.strPatSecondaryActive); }},
        {"strPhotoServerUsed", [&] { return Variant(s.strPhotoServerUsed); }},
        {"strPhotoServerPath", [&] { return Variant(s.strPhotoServerPath); }},
        {"strPhotoImageId", [&] { return Variant(s.strPhotoImageId); }},
        {"strPhotoSaveLoc", [&] { return Variant(s.strPhotoSaveLoc); }},
    };
    if (auto p = plain.find(n); p != plain.end()) {
        want(0);
        return p->second();
    }
    const std::map<std::string, const StringTable*> tables{
        {"arrResourceGroups", &s.arrResourceGroups},
        {"arrResourceGroupDefaults", &s.arrResourceGroupDefaults},
        {"arrResourceGroupViews", &s.arrResourceGroupViews},
        {"arrResources", &s.arrResources}};
    if (auto t = tables.find(n); t != tables.end()) {
        want(2);
        return Variant(t->second->at(idx[0], idx[1]));
    }
    if (n == "strColumnTopTime") {
        want(1);
        return Variant(s.strColumnTopTime[at(0, kColumns)]);
    }
    if (n == "intTemplateCount") {
        want(1);
        return Variant(s.intTemplateCount[at(0, kColumns)]);
    }
    if (n == "dtLastSlot") {
        want(1);
        return Variant(s.dtLastSlot[at(0, 12)]);
    }
    if (n == "varResourceTemplates") {
        want(3);
        return (*s.varResourceTemplates)[at(0, kColumns)][at(1, kTemplateFields)][at(2, kTemplatesPerColumn)];
    }
    throw ScriptError("the state record has no field '" + n + "'");
}

PickList* Console::pickList(const Segment& seg) {
    SchedulerWidgets& w = widgetsOf(*control_);
    std::array<PickList, kColumns>* column = nullptr;
    if (seg.name == "cmbResourceCatType")
        column = &w.cmbResourceCatType;
    else if (seg.name == "cmbResource")
        column = &w.cmbResource;
    else if (seg.name == "cmbResourceValue")
        column = &w.cmbResourceValue;
    else if (seg.name == "cmbDayIncrement")
        column = &w.cmbDayIncrement;
    if (column) {
        if (seg.args.size() != 1) throw ScriptError(seg.name + " takes one index");
        const std::int32_t i = wholeNumber(seg.args[0], "the column index");
        if (i < 0 || i >= kColumns) throw SubscriptOutOfRange();
        return &(*column)[static_cast<std::size_t>(i)];
    }
    if (seg.hasArgs) return nullptr;
    if (seg.name == "cmbResourceGroup") return &w.cmbResourceGroup;
    if (seg.name == "cmbNumOfSchedules") return &w.cmbNumOfSchedules;
    return nullptr;
}

Variant Console::widgetProperty(const Chain& path) {
    if (path.size() != 2) nothing(path);
    const Segment& head = path.front();
    const Segment& prop = path[1];
    SchedulerWidgets& w = widgetsOf(*control_);
    Variant out;

    PickList* list = pickList(head);
    if (list) {
        if (prop.name == "List") {
            if (prop.args.size() != 1) throw ScriptError("List takes one index");
            return Variant(list->list(wholeNumber(prop.args[0], "the list index")));
        }
        noArgs(prop);
        if (prop.name == "Text") return Variant(list->text());
        if (prop.name == "ListIndex") return Variant(static_cast<std::int32_t>(list->listIndex()));
        if (prop.name == "ListCount") return Variant(static_cast<std::int32_t>(list->listCount()));
        if (common(*list, prop.name, out)) return out;
        nothing(path);
    }
    if (head.hasArgs) {
        // Menu items of a control array: mnoSchedulePatientType(1) to (50).
        if (head.args.size() != 1) nothing(path);
        const std::string element =
            head.name + "(" + std::to_string(wholeNumber(head.args[0], "the menu index")) + ")";
        if (MenuItem* item = ControlInternals::findMenuItem(*control_, element)) return menuItemProperty(*item, path);
        if (ControlInternals::findMenuItem(*control_, head.name + "(1)")) throw SubscriptOutOfRange();
        nothing(path);
    }
    if (head.name == "calCalendar") {
        if (prop.name == "DateSelected") {
            if (prop.args.size() != 1) throw ScriptError("DateSelected takes one date");
            return Variant(w.calCalendar->DateSelected(evaluate(prop.args[0]).toDate()));
        }
        noArgs(prop);
        if (prop.name == "Value") return Variant(w.calCalendar->Value());
        if (common(*w.calCalendar, prop.name, out)) return out;
        nothing(path);
    }
    noArgs(prop);
    if (head.name == "sbSchedule") {
        const ScrollBar& sb = w.sbSchedule;
        if (prop.name == "Value") return Variant(sb.value);
        if (prop.name == "Max") return Variant(sb.max);
        if (prop.name == "Min") return Variant(sb.min);
        if (prop.name == "Tag") return Variant(sb.tag);
        if (common(sb, prop.name, out)) return out;
        nothing(path);
    }
    if (TextField* field = ControlInternals::findTextField(*control_, head.name)) {
        if (prop.name == "Text") return Variant(field->text);
        if (prop.name == "BackColor") return Variant(field->backColor);
        if (prop.name == "ForeColor") return Variant(field->foreColor);
        if (common(*field, prop.name, out)) return out;
        nothing(path);
    }
    if (Button* button = ControlInternals::findButton(*control_, head.name)) {
        if (prop.name == "Caption") return Variant(button->caption);
        if (common(*button, prop.name, out)) return out;
        nothing(path);
    }
    if (MenuItem* item = ControlInternals::findMenuItem(*control_, head.name)) return menuItemProperty(*item, path);
    for (const PopupMenu* menu : {&w.mnuRightClickScheduler, &w.mnuRightClickSchedulerApp})
        if (head.name == menu->name) return menuItemProperty(*menu, path);
    throw ScriptError("'" + head.name + "' names nothing" + suggestWidget(head.name));
}

Variant Console::menuItemProperty(const MenuItem& item, const Chain& path) {
    const Segment& prop = path[1];
    noArgs(prop);
    if (prop.name == "Caption") return Variant(item.caption);
    if (prop.name == "Checked") return Variant(item.checked);
    if (prop.name == "Visible") return Variant(item.visible);
    if (prop.name == "Enabled") return Variant(item.enabled);
    if (prop.name == "Tag") return Variant(item.tag);
    nothing(path);
}

} // namespace quorvane::host
