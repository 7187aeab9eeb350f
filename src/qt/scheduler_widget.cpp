// The window of the control: one Qt widget per widget model, placed at the
// model's twips, and read back from the models whenever a gesture ends or the
// host asks. Input goes the other way as the models' own user gestures (a pick,
// a click, typing, a key), each through runGesture.

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/qt/day_view_widget.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include "qt/day_view_accessible.h"
#include "qt/qt_dates.h"
#include "qt/week_dialog.h"
#include "qt/widget_views.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextCharFormat>
#include <QTimer>

#include <cmath>
#include <map>

namespace quorvane {

namespace {

// What a screen reader calls a field whose label alone is ambiguous (three
// "Ext", two "CoPay") or absent (the balances after the first), or abbreviated.
const std::map<std::string, QString> kSpokenFields = {
    {"txtPatHomePhoneExt", "Home Phone Ext"},
    {"txtPatWorkPhoneExt", "Work Phone Ext"},
    {"txtPatOtherPhoneExt", "Other Phone Ext"},
    {"txtPatPrimaryCoPay", "Primary CoPay"},
    {"txtPatSecondaryCoPay", "Secondary CoPay"},
    {"txtPatPriIns", "Primary Insurance"},
    {"txtPatSecIns", "Secondary Insurance"},
    {"txtPatBalance30", "Balance up to 30 days"},
    {"txtPatBalance60", "Balance 31 to 60 days"},
    {"txtPatBalance90", "Balance 61 to 90 days"},
    {"txtPatBalance180", "Balance over 90 days"},
    {"txtPatPCP", "Primary Care Provider"},
    {"txtPatDOB", "Date of Birth"},
    {"txtAppRefProvider", "Referring Provider"},
    {"txtAppPriorAuthNum", "Prior Authorization Number"},
};

// Names for the buttons that show a picture or "...", where the control gives
// no tool tip to take one from.
const std::map<std::string, QString> kSpokenButtons = {
    {"cmdRefProvider", "Search for a Referring Provider"},
};

// A tool tip read aloud: the key it names is said by the shortcut itself.
QString spokenToolTip(const std::string& tip) {
    QString text = QString::fromStdString(tip);
    const qsizetype paren = text.lastIndexOf(QStringLiteral(" ("));
    return paren > 0 && text.endsWith(QLatin1Char(')')) ? text.left(paren) : text;
}

// The character code of a key press, as the control compares it: a control
// character for Ctrl and a letter, else the character typed.
int keyCodeOf(const QKeyEvent& e) {
    const int key = e.key();
    if ((e.modifiers() & Qt::ControlModifier) && key >= Qt::Key_A && key <= Qt::Key_Z)
        return key - Qt::Key_A + 1;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
        return 9;
    case Qt::Key_Escape:
        return 27;
    default:
        break;
    }
    const QString text = e.text();
    if (text.size() == 1 && text.at(0).unicode() < 256) return text.at(0).unicode();
    return 0;
}

void setPaletteColors(QWidget& w, const TextField& f) {
    QPalette pal = w.palette();
    pal.setColor(QPalette::Base, qColorOf(f.backColor));
    pal.setColor(QPalette::Text, qColorOf(f.foreColor));
    w.setPalette(pal);
}

} // namespace

void SchedulerWidget::build() {
    setObjectName(QStringLiteral("ctlScheduler"));
    timeOfDay_ = [] { return QTime::currentTime(); };
    static const bool readable = (QAccessible::installFactory(dayViewAccessible), true);
    (void)readable;
    SchedulerWidgets& w = widgetsOf(*control_);
    for (int i = 0; i < kColumns; ++i)
        dayViews_[static_cast<std::size_t>(i)] =
            new DayViewWidget(*this, w.dvwResource[static_cast<std::size_t>(i)], this);

    std::vector<TextField*> shown = {&w.txtAppChiefComplaint, &w.txtAppComments, &w.txtAppRefProvider,
                                     &w.txtAppPriorAuthNum};
    for (TextField* f : w.patientFields())
        if (f != &w.txtPatEID) shown.push_back(f);
    for (TextField* f : shown) {
        FieldView view{f, nullptr, nullptr, nullptr};
        if (f->multiLine) {
            view.text = new QPlainTextEdit(this);
            // Tab leaves the field, as in every other field: a keyboard user
            // must be able to get out of it.
            view.text->setTabChangesFocus(true);
            connect(view.text, &QPlainTextEdit::textChanged, this, [this, f, edit = view.text] {
                if (!syncing_) runGesture([&] { f->userType(edit->toPlainText().toStdString()); });
            });
        } else {
            view.line = new QLineEdit(this);
            connect(view.line, &QLineEdit::textEdited, this,
                    [this, f](const QString& text) { runGesture([&] { f->userType(text.toStdString()); }); });
        }
        view.widget()->setObjectName(QString::fromStdString(f->name));
        view.widget()->installEventFilter(this);
        if (!f->label.empty()) {
            view.label = new QLabel(QString::fromStdString(f->label), this);
            view.label->setBuddy(view.widget());
        }
        const auto spoken = kSpokenFields.find(f->name);
        view.widget()->setAccessibleName(spoken != kSpokenFields.end() ? spoken->second
                                                                        : QString::fromStdString(f->label));
        fields_.push_back(view);
    }

    auto list = [this](PickList& model, const QString& spoken) {
        auto* box = new QComboBox(this);
        box->setObjectName(QString::fromStdString(model.name));
        box->setAccessibleName(spoken);
        connect(box, &QComboBox::activated, this,
                [this, &model](int index) { runGesture([&] { model.userPick(index); }); });
        lists_.push_back({&model, box});
    };
    for (int i = 0; i < kColumns; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const QString column = QStringLiteral("Column %1 ").arg(i + 1);
        list(w.cmbResourceCatType[at], column + QStringLiteral("resource kind"));
        list(w.cmbDayIncrement[at], column + QStringLiteral("minutes per slot"));
        list(w.cmbResource[at], column + QStringLiteral("resource"));
        resourceBoxes_[at] = lists_.back().box;
        dateHeaders_[at] = new QLabel(this);
        dateHeaders_[at]->setObjectName(QStringLiteral("dateHeader(%1)").arg(i));
        dateHeaders_[at]->setAlignment(Qt::AlignCenter);
    }
    list(w.cmbNumOfSchedules, QStringLiteral("Number of columns shown"));
    list(w.cmbResourceGroup, QStringLiteral("Resource group"));

    const std::pair<Button*, QStyle::StandardPixmap> buttons[] = {
        {&w.cmdPatientSearch, QStyle::SP_FileDialogContentsView},
        {&w.cmdOpenPatient, QStyle::SP_DirOpenIcon},
        {&w.cmdValidatePatient, QStyle::SP_DialogApplyButton},
        {&w.cmdPrintSuperbill, QStyle::SP_FileIcon},
        {&w.cmdLegend, QStyle::SP_FileDialogInfoView},
        {&w.cmdTasking, QStyle::SP_MessageBoxInformation},
        {&w.cmdQuickScan, QStyle::SP_DriveCDIcon},
        {&w.cmdQuickScanI1, QStyle::SP_DriveCDIcon},
        {&w.cmdQuickScanI2, QStyle::SP_DriveCDIcon},
        {&w.cmdCalendar, QStyle::SP_FileDialogDetailedView},
        {&w.cmdPatientPhoto, QStyle::SP_DesktopIcon},
        {&w.cmdRefProvider, QStyle::SP_FileDialogContentsView},
        {&w.cmdCommentQuickComment, QStyle::SP_FileDialogContentsView},
        {&w.cmdChiefComplainQuickComment, QStyle::SP_FileDialogContentsView},
        {&w.cmdSaveAdditionalAppInfo, QStyle::SP_DialogSaveButton},
    };
    for (const auto& [model, icon] : buttons) {
        auto* b = new QPushButton(this);
        b->setObjectName(QString::fromStdString(model->name));
        b->setFocusPolicy(Qt::TabFocus);
        const auto spoken = kSpokenButtons.find(model->name);
        const QString caption = QString::fromStdString(model->caption);
        b->setAccessibleName(spoken != kSpokenButtons.end() ? spoken->second
                             : caption.isEmpty() || caption == QStringLiteral("...") ? spokenToolTip(model->toolTipText)
                                                                                       : caption);
        connect(b, &QPushButton::clicked, this,
                [this, model = model] { runGesture([&] { model->userClick(); }); });
        buttons_.push_back({model, b, icon});
    }

    calendar_ = new QCalendarWidget(this);
    calendar_->setObjectName(QStringLiteral("calCalendar"));
    calendar_->setAccessibleName(QStringLiteral("Date"));
    calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar_->setHorizontalHeaderFormat(QCalendarWidget::SingleLetterDayNames);
    calendar_->setGridVisible(false);
    // The calendar's own month buttons show only arrows.
    for (const auto& [name, spoken] : {std::pair{"qt_calendar_prevmonth", "Previous month"},
                                       std::pair{"qt_calendar_nextmonth", "Next month"}})
        if (auto* arrow = calendar_->findChild<QWidget*>(QLatin1String(name))) {
            arrow->setAccessibleName(QLatin1String(spoken));
            arrow->setToolTip(QLatin1String(spoken));
        }
    connect(calendar_, &QCalendarWidget::clicked, this, [this](QDate date) {
        runGesture([&] { widgetsOf(*control_).calCalendar->userPick(oleDateOf(date)); });
    });

    columnScroll_ = new QScrollBar(Qt::Horizontal, this);
    columnScroll_->setObjectName(QStringLiteral("sbSchedule"));
    columnScroll_->setAccessibleName(QStringLiteral("Columns"));
    connect(columnScroll_, &QScrollBar::valueChanged, this, [this](int value) {
        if (syncing_) return;
        runGesture([&] { widgetsOf(*control_).sbSchedule.userScroll(static_cast<std::int16_t>(value)); });
    });
    for (DayViewWidget* v : dayViews_)
        v->installEventFilter(this);

    // The line of the current time moves on by itself; nothing else here does.
    auto* minutes = new QTimer(this);
    connect(minutes, &QTimer::timeout, this, [this] {
        for (DayViewWidget* v : dayViews_)
            if (v->view().CurrentDate() == platform().clock.today()) v->update();
    });
    minutes->start(60 * 1000);

    hookPlatform();
    refresh();
}

QRect SchedulerWidget::pixelRect(float left, float top, float width, float height) const {
    const Screen& s = control_->platform().screen;
    const auto px = [](double twips, float perPixel) {
        return static_cast<int>(std::lround(twips / perPixel));
    };
    return QRect(px(left, s.twipsPerPixelX), px(top, s.twipsPerPixelY), px(width, s.twipsPerPixelX),
                 px(height, s.twipsPerPixelY));
}

QRect SchedulerWidget::pixelRect(const WidgetBase& w) const {
    return pixelRect(w.left, w.top, w.width, w.height);
}

void SchedulerWidget::setTimeOfDaySource(std::function<QTime()> source) {
    timeOfDay_ = std::move(source);
    for (DayViewWidget* v : dayViews_)
        v->update();
}

QTime SchedulerWidget::timeOfDay() const { return timeOfDay_ ? timeOfDay_() : QTime(); }

DayViewWidget* SchedulerWidget::dayViewAt(const QPoint& globalPos) const {
    for (DayViewWidget* v : dayViews_)
        if (v->isVisible() && v->rect().contains(v->mapFromGlobal(globalPos))) return v;
    return nullptr;
}

QString SchedulerWidget::appointmentToolTip(const AppointmentRef& app) {
    const QLocale english(QLocale::English);
    auto clock = [&](OleDate t) {
        const DateParts p = splitDate(t);
        return english.toString(QTime(p.hour, p.minute), QStringLiteral("h:mm AP"));
    };
    QString tip = QString::fromStdString(app->Text) + QLatin1Char('\n') + clock(app->StartDateTime) +
                  QStringLiteral(" to ") + clock(app->EndDateTime);
    // A colour that is none of the six statuses reads as no status.
    const std::string status = control_->GetStatus(app);
    if (!status.empty()) tip += QStringLiteral(", ") + QString::fromStdString(status);
    if (toolTipNotes_) {
        const QString notes = toolTipNotes_(*app);
        if (!notes.isEmpty()) tip += QLatin1Char('\n') + notes;
    }
    return tip;
}

void SchedulerWidget::guard(const std::function<void()>& work) {
    try {
        work();
    } catch (const RuntimeError& e) {
        platform().container.untrappedError(e);
    } catch (const std::exception& e) {
        Q_EMIT untrappedError(QString::fromUtf8(e.what()));
    } catch (...) {
        Q_EMIT untrappedError(QStringLiteral("unknown error"));
    }
}

void SchedulerWidget::runGesture(const std::function<void()>& gesture) {
    ++gestureDepth_;
    guard(gesture);
    if (--gestureDepth_ > 0) return;
    refresh();
    showPendingMenu();
}

void SchedulerWidget::scheduleRefresh() {
    if (refreshPosted_ || gestureDepth_ > 0) return;
    refreshPosted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            refreshPosted_ = false;
            refresh();
        },
        Qt::QueuedConnection);
}

void SchedulerWidget::refresh() {
    syncing_ = true;
    setEnabled(platform().container.enabled());
    for (DayViewWidget* v : dayViews_) {
        const PVDayView& m = v->view();
        v->setGeometry(pixelRect(m.Left, m.Top, m.Width, m.Height));
        v->setVisible(m.Visible);
        v->syncScrollBar();
        v->update();
    }
    syncLists();
    syncDateHeaders();
    syncFields();
    syncButtons();
    syncCalendar();
    syncScrollBar();
    syncing_ = false;
    syncFocus();
    for (DayViewWidget* v : dayViews_)
        v->announceFocus();
}

// The date of each column stands at the right end of its resource list, so
// columns on different dates are told apart at a glance; today's is marked in
// words as well as in colour. A column too narrow for it shows none.
void SchedulerWidget::syncDateHeaders() {
    const QLocale english(QLocale::English);
    const OleDate today = platform().clock.today();
    for (std::size_t i = 0; i < dateHeaders_.size(); ++i) {
        QLabel* header = dateHeaders_[i];
        const PVDayView& view = dayViews_[i]->view();
        const PickList& list = widgetsOf(*control_).cmbResource[i];
        const QDate date = qDateOf(view.CurrentDate());
        const bool isToday = view.CurrentDate() == today;
        header->setText((isToday ? QStringLiteral("Today ") : QString()) + english.toString(date, QStringLiteral("ddd M/d")));
        header->setAccessibleName(english.toString(date, QStringLiteral("dddd, MMMM d, yyyy")) +
                                  (isToday ? QStringLiteral(", today") : QString()));
        header->setStyleSheet(isToday ? QStringLiteral("QLabel { background: #0b3d91; color: white; font-weight: bold; }")
                                      : QStringLiteral("QLabel { background: #e8e8e8; color: black; }"));
        const QRect box = resourceBoxes_[i]->geometry();
        const int width = header->fontMetrics().horizontalAdvance(header->text()) + 14;
        const bool shown = view.Visible && list.visible && list.width > 0 && date.isValid() && box.width() >= width + 48;
        header->setVisible(shown);
        if (!shown) continue;
        header->setGeometry(box.right() + 1 - width, box.top(), width, box.height());
        resourceBoxes_[i]->setGeometry(box.adjusted(0, 0, -width - 2, 0));
    }
}

void SchedulerWidget::syncFields() {
    for (const FieldView& v : fields_) {
        const TextField& f = *v.model;
        QWidget* w = v.widget();
        w->setGeometry(pixelRect(f));
        w->setVisible(f.visible);
        w->setEnabled(f.enabled);
        w->setToolTip(QString::fromStdString(f.toolTipText));
        setPaletteColors(*w, f);
        const QString text = QString::fromStdString(f.text);
        if (v.line) {
            v.line->setReadOnly(f.locked);
            v.line->setMaxLength(f.maxLength > 0 ? f.maxLength : 32767);
            v.line->setAlignment(f.rightAligned ? Qt::AlignRight : Qt::AlignLeft);
            if (v.line->text() != text) v.line->setText(text);
        } else {
            v.text->setReadOnly(f.locked);
            if (v.text->toPlainText() != text) v.text->setPlainText(text);
        }
        if (v.label) {
            // Right-aligned against the field, on its first row.
            const QRect field = w->geometry();
            const int width = v.label->fontMetrics().horizontalAdvance(v.label->text()) + 2;
            const int rowHeight = pixelRect(0, 0, 0, 315).height();
            v.label->setGeometry(field.left() - 4 - width, field.top(), width, rowHeight);
            v.label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            v.label->setVisible(f.visible);
        }
    }
}

void SchedulerWidget::syncLists() {
    for (const ListView& v : lists_) {
        const PickList& m = *v.model;
        bool same = v.box->count() == m.listCount();
        for (int i = 0; same && i < m.listCount(); ++i)
            same = v.box->itemText(i) == QString::fromStdString(m.list(i));
        const QSignalBlocker block(v.box);
        if (!same) {
            v.box->clear();
            for (int i = 0; i < m.listCount(); ++i)
                v.box->addItem(QString::fromStdString(m.list(i)));
        }
        v.box->setCurrentIndex(m.listIndex());
        v.box->setGeometry(pixelRect(m));
        v.box->setVisible(m.visible && m.width > 0);
        v.box->setEnabled(m.enabled);
        v.box->setToolTip(m.toolTipText.empty() ? v.box->accessibleName() : QString::fromStdString(m.toolTipText));
    }
}

void SchedulerWidget::syncButtons() {
    for (const ButtonView& v : buttons_) {
        const Button& m = *v.model;
        v.button->setText(QString::fromStdString(m.caption));
        if (m.caption.empty()) v.button->setIcon(style()->standardIcon(v.icon));
        // A button without a tip of its own shows the name a reader hears.
        v.button->setToolTip(m.toolTipText.empty() ? v.button->accessibleName() : QString::fromStdString(m.toolTipText));
        v.button->setGeometry(pixelRect(m));
        v.button->setVisible(m.visible);
        v.button->setEnabled(m.enabled);
    }
}

// Marked dates stand in bold; the marks of the last reading are taken off first.
void SchedulerWidget::syncCalendar() {
    const PVCalendar& cal = *widgetsOf(*control_).calCalendar;
    calendar_->setGeometry(pixelRect(cal));
    calendar_->setVisible(cal.visible);
    const QSignalBlocker block(calendar_);
    for (const QDate& d : boldDates_)
        calendar_->setDateTextFormat(d, QTextCharFormat());
    boldDates_.clear();
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    for (const OleDate d : cal.markedDates()) {
        const QDate date = qDateOf(d);
        calendar_->setDateTextFormat(date, bold);
        boldDates_.push_back(date);
    }
    calendar_->setSelectedDate(qDateOf(cal.Value()));
}

void SchedulerWidget::syncScrollBar() {
    const ScrollBar& sb = widgetsOf(*control_).sbSchedule;
    const QSignalBlocker block(columnScroll_);
    columnScroll_->setGeometry(pixelRect(sb));
    columnScroll_->setVisible(sb.visible);
    columnScroll_->setRange(sb.min, sb.max);
    columnScroll_->setSingleStep(sb.smallChange);
    columnScroll_->setPageStep(sb.largeChange);
    columnScroll_->setValue(sb.value);
}

// The control names the widget that has the focus; a new name moves Qt's focus
// there, as FocusControl's last step puts it in txtAppChiefComplaint.
void SchedulerWidget::syncFocus() {
    const std::string& active = platform().container.activeControl();
    if (active == lastActive_) return;
    lastActive_ = active;
    // The grid the keys were on, even while a question of theirs is open.
    if (keysOnGrid_ && qobject_cast<DayViewWidget*>(focusWidget())) return;
    auto* target = findChild<QWidget*>(QString::fromStdString(active));
    if (target && target->isVisible() && target->isEnabled() && !target->hasFocus()) target->setFocus();
}

void SchedulerWidget::revealColumn(DayViewWidget& column) {
    ScrollBar& sb = widgetsOf(*control_).sbSchedule;
    for (int step = 0; step < kColumns && column.isVisible(); ++step) {
        const QRect at = column.geometry();
        const bool before = at.left() < 0, after = at.right() >= width();
        if (!before && !after) return;
        const auto to = static_cast<std::int16_t>(std::clamp<int>(sb.value + (before ? -1 : 1), sb.min, sb.max));
        if (to == sb.value) return;
        runGesture([&] { sb.userScroll(to); });
    }
}

void SchedulerWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!resizesControl_) return;
    const auto clamp16 = [](int v) { return static_cast<std::int16_t>(std::clamp(v, 0, 32767)); };
    runGesture([&] { control_->ResizeControl(clamp16(height()), clamp16(width())); });
}

bool SchedulerWidget::event(QEvent* event) {
    bool handled = true;
    guard([&] { handled = QWidget::event(event); });
    return handled;
}

void SchedulerWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
}

// The control sees every key before the widget that has the focus, and the key
// goes on to that widget in every case.
bool SchedulerWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int code = keyCodeOf(*static_cast<QKeyEvent*>(event));
        TextField* field = nullptr;
        for (const FieldView& v : fields_)
            if (v.widget() == watched) field = v.model;
        if (code > 0 && code < 256) runGesture([&] { control_->userKeyPress(code, field); });
    } else if (event->type() == QEvent::FocusIn) {
        for (const FieldView& v : fields_)
            if (v.widget() == watched) {
                keysOnGrid_ = false;
                v.model->setFocus();
                lastActive_ = v.model->name;
            }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quorvane
