// The picture of a day view, read from its model alone: the cells in their
// colours, the ruler, the selected slot, the appointments in their boxes and
// lanes, and what a drag or the clock adds. Every edge lies on a whole view
// pixel and nothing is antialiased but text, so the picture stays sharp at any
// device pixel ratio.

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QPainter>

#include <cmath>

namespace quorvane {

namespace {

const QColor kGridLine(0xd8, 0xd8, 0xd8);
const QColor kHourLine(0xa8, 0xa8, 0xa8);
const QColor kRulerBack(0xf0, 0xf0, 0xf0);
const QColor kRulerText(0x40, 0x40, 0x40);
const QColor kSelectedSlot(0x8a, 0xb8, 0xff);
const QColor kFocusRing(0x0b, 0x3d, 0x91);
const QColor kAppointmentBorder(0x50, 0x50, 0x50);
const QColor kNowLine(0xd0, 0x20, 0x20);
const QColor kBelowGrid(0xe4, 0xe4, 0xe4);
constexpr int kPadding = 3;

// Lines and frames are filled rectangles of whole pixels: a pen's line is
// centred on the pixel edge and would spread over two device pixels at a ratio of 2.
void hLine(QPainter& p, int x0, int x1, int y, const QColor& c) { p.fillRect(QRect(x0, y, x1 - x0, 1), c); }
void vLine(QPainter& p, int x, int y0, int y1, const QColor& c) { p.fillRect(QRect(x, y0, 1, y1 - y0), c); }
void frame(QPainter& p, const QRect& r, const QColor& c) {
    hLine(p, r.left(), r.right() + 1, r.top(), c);
    hLine(p, r.left(), r.right() + 1, r.bottom(), c);
    vLine(p, r.left(), r.top(), r.bottom() + 1, c);
    vLine(p, r.right(), r.top(), r.bottom() + 1, c);
}

// Minutes of a time of day, on whatever date.
int minuteOf(OleDate t) { return minuteOfDay(t); }

QString hourText(int minute) {
    const int hour = minute / 60 % 24;
    const int twelve = hour % 12 == 0 ? 12 : hour % 12;
    return QString::number(twelve) + (hour < 12 ? QStringLiteral(" AM") : QStringLiteral(" PM"));
}

QString timeText(OleDate t) {
    const int m = minuteOf(t);
    const int hour = m / 60 % 24;
    return QStringLiteral("%1:%2 %3")
        .arg(hour % 12 == 0 ? 12 : hour % 12)
        .arg(m % 60, 2, 10, QLatin1Char('0'))
        .arg(hour < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
}

// Hours outside the view's business hours stand a shade darker.
bool inBusinessHours(const PVDayView& view, int minute) {
    const int begin = minuteOf(view.BusinessHoursBegin()), end = minuteOf(view.BusinessHoursEnd());
    return begin <= minute && minute < end;
}

void paintCells(QPainter& p, const PVDayView& view, int top, int rows, int width) {
    const int slot = view.slotMinutes();
    const int first = top, last = top + rows * slot; // minutes of the day shown
    // Runs of five-minute cells of one colour are filled at once.
    int runStart = first;
    QColor runColor;
    auto flush = [&](int endMinute) {
        if (endMinute <= runStart) return;
        const int y0 = view.pixelOfMinute(runStart), y1 = view.pixelOfMinute(endMinute);
        p.fillRect(QRect(PVDayView::kRulerPixels, y0, width - PVDayView::kRulerPixels, y1 - y0), runColor);
    };
    for (int m = first; m < last; m += 5) {
        QColor c = qColorOf(view.TimeSlotColor(makeTime(m / 60, m % 60, 0)));
        if (!inBusinessHours(view, m)) c = c.darker(108);
        if (m == first) {
            runColor = c;
        } else if (c != runColor) {
            flush(m);
            runStart = m, runColor = c;
        }
    }
    flush(last);
}

void paintSelectionAndLines(QPainter& p, const PVDayView& view, int top, int rows, int width) {
    const int slot = view.slotMinutes();
    for (int r = 0; r < rows; ++r) {
        const int minute = top + r * slot;
        const int y = r * PVDayView::kRowPixels;
        if (view.TimeSlotSelected(makeTime(minute / 60, minute % 60, 0)))
            p.fillRect(
                QRect(PVDayView::kRulerPixels, y, width - PVDayView::kRulerPixels, PVDayView::kRowPixels),
                kSelectedSlot);
        if (r > 0) hLine(p, PVDayView::kRulerPixels, width, y, minute % 60 == 0 ? kHourLine : kGridLine);
    }
}

void paintRuler(QPainter& p, const PVDayView& view, int top, int rows) {
    const int slot = view.slotMinutes();
    const int bottom = rows * PVDayView::kRowPixels;
    p.fillRect(QRect(0, 0, PVDayView::kRulerPixels, bottom), kRulerBack);
    vLine(p, PVDayView::kRulerPixels - 1, 0, bottom, kHourLine);
    QFont font = p.font();
    font.setPixelSize(10);
    p.setFont(font);
    for (int r = 0; r < rows; ++r) {
        const int minute = top + r * slot;
        const int y = r * PVDayView::kRowPixels;
        const bool onHour = minute % 60 == 0;
        if (onHour && r > 0) hLine(p, 0, PVDayView::kRulerPixels - 1, y, kHourLine);
        p.setPen(kRulerText);
        const QString label =
            onHour ? hourText(minute) : QStringLiteral(":%1").arg(minute % 60, 2, 10, QLatin1Char('0'));
        p.drawText(QRect(0, y, PVDayView::kRulerPixels - 4, PVDayView::kRowPixels),
                   Qt::AlignRight | Qt::AlignTop, label);
    }
}

// A frame of dashes: the mark of a block nobody has stored yet.
void dashedFrame(QPainter& p, const QRect& r, const QColor& c) {
    for (int x = r.left(); x <= r.right(); x += 6) {
        const int w = std::min(3, r.right() + 1 - x);
        p.fillRect(QRect(x, r.top(), w, 1), c);
        p.fillRect(QRect(x, r.bottom(), w, 1), c);
    }
    for (int y = r.top(); y <= r.bottom(); y += 6) {
        const int h = std::min(3, r.bottom() + 1 - y);
        p.fillRect(QRect(r.left(), y, 1, h), c);
        p.fillRect(QRect(r.right(), y, 1, h), c);
    }
}

// Two pixels of the focus colour around a rectangle, inside it.
void focusRing(QPainter& p, const QRect& r) {
    frame(p, r, kFocusRing);
    frame(p, r.adjusted(1, 1, -1, -1), kFocusRing);
}

double luminance(const QColor& c) {
    auto channel = [](double v) { return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
}

void paintAppointment(QPainter& p, const PVDayView::Box& box, const DayViewDecor& decor) {
    const Appointment& app = *box.app;
    const QRect r(box.left, box.top, box.right - box.left, box.bottom - box.top);
    const QColor back = qColorOf(app.BackColor);
    p.fillRect(r, back);
    const bool struck = decor.struckOut && decor.struckOut(app);
    if (struck) p.fillRect(QRect(r.left(), r.top(), std::min(6, r.width()), r.height()),
                           QBrush(textColourOn(back), Qt::BDiagPattern));
    if (app.Tag.empty())
        dashedFrame(p, r, kAppointmentBorder);
    else
        frame(p, r, kAppointmentBorder);
    if (app.Selected()) {
        // A second frame inside the first, and a grip on the bottom edge where
        // a resize takes it.
        frame(p, r.adjusted(1, 1, -1, -1), Qt::black);
        if (box.endShown && r.width() > 12)
            p.fillRect(QRect(r.center().x() - 4, r.bottom() - 2, 8, 2), Qt::black);
    }
    if (decor.focusAppointment == app.Key()) focusRing(p, r.adjusted(2, 2, -2, -2));
    p.setPen(textColourOn(back));
    const QRect textRect = r.adjusted(struck ? kPadding + 5 : kPadding, 1, -kPadding, -1);
    if (textRect.width() <= 0 || textRect.height() <= 0) return;
    const QString text = QString::fromStdString(app.Text);
    const QString times = timeText(app.StartDateTime) + QStringLiteral("-") + timeText(app.EndDateTime);
    // A box of one line shows as much of the text as fits, and says it was cut.
    const QString shown = textRect.height() >= 2 * p.fontMetrics().height()
                              ? text + QLatin1Char('\n') + times
                              : p.fontMetrics().elidedText(text, Qt::ElideRight, textRect.width());
    const QFont plain = p.font();
    if (struck) {
        QFont strike = plain;
        strike.setStrikeOut(true);
        p.setFont(strike);
    }
    p.drawText(textRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, shown);
    p.setFont(plain);
}

void paintPreview(QPainter& p, const PVDayView& view, const DayViewDecor::Preview& preview, int bottom) {
    const auto [left, right] = view.appointmentColumns();
    const int start = minuteOf(preview.start);
    const std::int64_t length = minutesBetween(preview.start, preview.end);
    const int y0 = std::max(view.pixelOfMinute(start), 0);
    const int y1 = std::min<int>(view.pixelOfMinute(static_cast<int>(start + length)), bottom);
    if (y1 <= y0 || right <= left) return;
    const QRect r(left, y0, right - left, y1 - y0);
    QColor fill = preview.color;
    fill.setAlpha(170);
    p.fillRect(r, fill);
    QPen pen(Qt::black);
    pen.setStyle(Qt::DashLine);
    p.setPen(pen);
    p.drawRect(r.adjusted(0, 0, -1, -1));
    p.drawText(r.adjusted(kPadding, 1, -kPadding, -1), Qt::AlignLeft | Qt::AlignTop,
               preview.text + QStringLiteral("  ") + timeText(preview.start));
}

} // namespace

QColor textColourOn(const QColor& fill) {
    // The contrast ratio of black on the fill against that of white on it.
    const double l = luminance(fill);
    return (l + 0.05) / 0.05 >= 1.05 / (l + 0.05) ? QColor(Qt::black) : QColor(Qt::white);
}

QColor selectedSlotColour() { return kSelectedSlot; }

QColor qColorOf(std::int32_t value) {
    const auto v = static_cast<std::uint32_t>(value);
    if (v & 0x80000000u) {
        // The system colours the control uses: the window, its text, a button's face.
        switch (v & 0xFFu) {
        case 0x05:
            return QColor(Qt::white);
        case 0x08:
            return QColor(Qt::black);
        case 0x0F:
            return QColor(0xf0, 0xf0, 0xf0);
        default:
            return QColor(0xc0, 0xc0, 0xc0);
        }
    }
    return QColor(static_cast<int>(v & 0xFF), static_cast<int>((v >> 8) & 0xFF),
                  static_cast<int>((v >> 16) & 0xFF));
}

void paintDayView(QPainter& p, const PVDayView& view, const DayViewDecor& decor) {
    const int width = view.pixelWidth();
    const int rows = view.gridRows();
    const int bottom = rows * PVDayView::kRowPixels;
    const int top = view.topRow() * view.slotMinutes();
    // Below the day's last row, when the view is taller than what is left of the day.
    p.fillRect(QRect(0, bottom, width, std::max(view.visibleRows() - rows, 1) * PVDayView::kRowPixels + 20),
               kBelowGrid);
    if (rows > 0) {
        paintCells(p, view, top, rows, width);
        paintSelectionAndLines(p, view, top, rows, width);
        paintRuler(p, view, top, rows);
    }
    // Under the appointments: the free strip beside them shows it whole.
    if (decor.focusSlot && rows > 0) {
        const int y = view.pixelOfMinute(*decor.focusSlot);
        if (y >= 0 && y < bottom)
            focusRing(p, QRect(PVDayView::kRulerPixels, y, width - decor.coveredRight - PVDayView::kRulerPixels,
                               PVDayView::kRowPixels + 1));
    }
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    const auto [laneLeft, laneRight] = view.appointmentColumns();
    for (PVDayView::Box box : view.appointmentBoxes()) {
        // A day of the week is only read, never clicked on: its blocks take
        // the day's whole width, so names stay readable in a narrow day.
        if (view.weekDay && laneRight > laneLeft) {
            const int full = width - 1 - PVDayView::kRulerPixels, lanes = laneRight - laneLeft;
            box.left = PVDayView::kRulerPixels + (box.left - laneLeft) * full / lanes;
            box.right = PVDayView::kRulerPixels + (box.right - laneLeft) * full / lanes;
        }
        paintAppointment(p, box, decor);
    }
    if (decor.preview) paintPreview(p, view, *decor.preview, bottom);
    if (decor.nowMinute) {
        const int y = view.pixelOfMinute(*decor.nowMinute);
        if (y >= 0 && y < bottom)
            p.fillRect(QRect(PVDayView::kRulerPixels, y, width - PVDayView::kRulerPixels, 2), kNowLine);
    }
}

} // namespace quorvane
