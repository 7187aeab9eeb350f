// The week form: the resource's name, the seven days of the week view painted
// as day views are, and the Close button. The form handles no event of the
// week: a click on an appointment does nothing.

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/qt/day_view_widget.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include "qt/qt_dates.h"
#include "qt/week_dialog.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QToolTip>
#include <QVBoxLayout>

namespace quorvane {

namespace {

// One day of the week, painted at the size the form gives it.
class WeekDayPane : public QWidget {
public:
    WeekDayPane(PVDayView& day, QWidget* parent) : QWidget(parent), day_(day) {
        setObjectName(QStringLiteral("day%1").arg(day.Index()));
        setMinimumSize(110, 300);
    }

protected:
    void resizeEvent(QResizeEvent*) override {
        // The form sizes its days; the day's pixels are 15 twips each.
        day_.Width = static_cast<float>(width() * 15);
        day_.Height = static_cast<float>(height() * 15);
    }
    bool event(QEvent* event) override {
        // A name the block had to cut is read whole in its tool tip.
        if (event->type() == QEvent::ToolTip) {
            auto* help = static_cast<QHelpEvent*>(event);
            for (const PVDayView::Box& b : day_.appointmentBoxes())
                if (help->pos().y() >= b.top && help->pos().y() < b.bottom && help->pos().x() >= PVDayView::kRulerPixels) {
                    QToolTip::showText(help->globalPos(), QString::fromStdString(b.app->Text), this);
                    return true;
                }
            QToolTip::hideText();
            return true;
        }
        return QWidget::event(event);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        // A day that cannot be drawn stays blank rather than ending the window.
        try {
            paintDayView(p, day_, {});
        } catch (const std::exception&) {
        }
    }

private:
    PVDayView& day_;
};

} // namespace

void runWeekDialog(SchedulerWidget& owner, WeekViewForm& form) {
    QDialog dialog(owner.window());
    dialog.setObjectName(QString::fromStdString(form.name));
    dialog.setWindowTitle(QString::fromStdString(form.caption));
    dialog.setModal(true);

    auto* top = new QHBoxLayout;
    auto* label = new QLabel(QString::fromStdString(form.Label1.caption), &dialog);
    label->setObjectName(QString::fromStdString(form.Label1.name));
    auto* resource = new QLineEdit(QString::fromStdString(form.txtResource.text), &dialog);
    resource->setObjectName(QString::fromStdString(form.txtResource.name));
    resource->setReadOnly(form.txtResource.locked);
    QPalette pal = resource->palette();
    pal.setColor(QPalette::Base, qColorOf(form.txtResource.backColor));
    resource->setPalette(pal);
    top->addWidget(label);
    top->addWidget(resource, 1);
    top->addStretch(2);

    auto* days = new QHBoxLayout;
    days->setSpacing(4);
    for (int k = 0; k < IGWeekView::kDays; ++k) {
        PVDayView& day = *form.wvwWeekView.day(k);
        auto* column = new QVBoxLayout;
        const QDate date = qDateOf(day.CurrentDate());
        auto* heading = new QLabel(QLocale::c().toString(date, QStringLiteral("ddd M/d")), &dialog);
        heading->setAlignment(Qt::AlignCenter);
        column->addWidget(heading);
        column->addWidget(new WeekDayPane(day, &dialog), 1);
        days->addLayout(column, 1);
    }

    auto* close = new QPushButton(QString::fromStdString(form.cmdClose.caption), &dialog);
    close->setObjectName(QString::fromStdString(form.cmdClose.name));
    // The form's own Close: it empties the week and hides the form, which ends
    // the dialog; closing the window instead is left to ShowWkvw, which closes
    // the form the same way.
    QObject::connect(close, &QPushButton::clicked, &dialog, [&] {
        owner.runGesture([&] { form.cmdClose.click(); });
        if (!form.visible) dialog.accept();
    });
    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(close);

    auto* layout = new QVBoxLayout(&dialog);
    layout->addLayout(top);
    layout->addLayout(days, 1);
    layout->addLayout(bottom);
    dialog.resize(1180, 600);
    dialog.exec();
}

} // namespace quorvane
