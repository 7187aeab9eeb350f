#pragma once
// A day view painted from its model, and the painting itself, which the week
// form and the benchmarks share. The widget works in the view's own pixels (15
// twips each) and lets Qt scale them to the screen and its device pixel ratio.

// moc reads what a header includes and cannot parse the standard library's
// concepts, which the control's headers bring in; it needs none of their names.
#ifndef Q_MOC_RUN
#include <QuorvaneScheduler/components/day_view.h>
#endif

#include <QuorvaneScheduler/qt/export.h>

#include <QColor>
#include <QPointer>
#include <QTime>
#include <QWidget>

#include <map>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <QLineEdit>
class QAccessibleInterface;
class QPainter;
class QScrollBar;

namespace quorvane {

class SchedulerWidget;

// What a painting shows besides the model: a drop or a new end being dragged,
// and the current time on today's date.
struct QUORVANE_WIDGETS_EXPORT DayViewDecor {
    // An appointment shown where a drag would put it.
    struct Preview {
        OleDate start; // where it would start
        OleDate end;   // and end
        QString text;  // its text
        QColor color;  // its fill
    };
    std::optional<Preview> preview; // the drag under way, if any
    std::optional<int> nowMinute; // minute of the day, when the view shows today
    // What the keyboard acts on, ringed: a slot by its minute of the day, or
    // an appointment by its key.
    std::optional<int> focusSlot;
    std::optional<std::int32_t> focusAppointment;
    int coveredRight = 0; // view pixels at the right that a scroll bar covers
    // Appointments whose visit will not happen (cancelled, no-show): their
    // text is struck through and their left edge hatched, so colour is not
    // the only sign.
    std::function<bool(const Appointment&)> struckOut;
};

// Paints a view at its own pixel size, from its top left corner.
QUORVANE_WIDGETS_EXPORT void paintDayView(QPainter& painter, const PVDayView& view, const DayViewDecor& decor);
// The text drawn on a fill: black or white, whichever contrasts more.
QUORVANE_WIDGETS_EXPORT QColor textColourOn(const QColor& fill);
// The fill of a selected slot, told apart from every status colour.
QUORVANE_WIDGETS_EXPORT QColor selectedSlotColour();

// A colour value of the platform (red + 256 green + 65536 blue, or a system colour).
QUORVANE_WIDGETS_EXPORT QColor qColorOf(std::int32_t value);

// A column's day view on screen: it paints the model and turns the mouse and
// the keys into the model's gestures.
class QUORVANE_WIDGETS_EXPORT DayViewWidget : public QWidget {
    Q_OBJECT

public:
    DayViewWidget(SchedulerWidget& owner, DayViewRef view, QWidget* parent); // shows `view` in `owner`
    ~DayViewWidget() override;

    PVDayView& view() const { return *view_; }        // the model shown
    SchedulerWidget& owner() const { return owner_; } // the control's widget it belongs to
    // A point of the widget in the view's pixels, and back.
    QPoint toView(const QPointF& p) const;
    QPoint fromView(QPoint viewPoint) const;
    // The drop or the new end shown while a drag runs; none clears it.
    void setPreview(std::optional<DayViewDecor::Preview> preview);
    // The slot editor a typed character opened, while it is open.
    QLineEdit* slotEditor() const { return editor_; }
    // Reads TopIndex and the slot length into the scroll bar.
    void syncScrollBar();

    // What a screen reader walks: the slots shown, top to bottom, then the
    // appointments in time order; a slot is (0, its minute of the day), an
    // appointment (1, its key).
    using Part = std::pair<int, int>;
    std::vector<Part> accessibleParts() const;
    // The part the keys act on: the selected appointment, else the selected slot.
    Part focusedPart() const;
    // A part's accessible interface, made once and kept while the widget lives.
    QAccessibleInterface* partInterface(Part part) const;
    // Tells a reader the focused part, when it changed since it was last told.
    void announceFocus();

protected:
    // Qt's handlers: painting, the mouse, the keys and the focus.
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    enum class Mode { None, Pressed, Dragging, Resizing };
    bool handleEvent(QEvent* event);
    bool focusNextPrevChild(bool next) override;
    // The keyboard: false for a key the grid does not take.
    bool keyboard(QKeyEvent* event);
    bool takeKey(QKeyEvent* event, QPointer<DayViewWidget>& stay);
    int focusMinute() const;
    void showMinute(int minute);
    void selectMinute(int minute);
    void openMenuAtFocus();
    void aimAt(std::optional<std::pair<int, int>> point);
    DayViewWidget* neighbour(int by) const;
    void dragTo(const QPointF& pos);
    void previewDrop(const QPointF& pos);
    void finishGesture();
    void openEditor(const QString& typed, OleDate slot);
    void commitEditor();
    void scrollRows(int rows);
    double scaleX() const;
    double scaleY() const;
    void forgetParts();

    SchedulerWidget& owner_;
    DayViewRef view_;
    QScrollBar* scroll_ = nullptr;
    std::optional<DayViewDecor::Preview> preview_;
    QPointer<QLineEdit> editor_;
    OleDate editorSlot_;

    Mode mode_ = Mode::None;
    std::int32_t key_ = 0; // the appointment pressed on
    int grab_ = 0;         // minutes below its start where it was taken
    QPoint pressPos_;
    OleDate resizeEnd_;
    QPointer<DayViewWidget> dropTarget_;
    std::optional<OleDate> dropStart_;

    mutable std::map<Part, unsigned> partIds_; // accessible interfaces of the parts, by id
    std::optional<Part> announced_;
};

} // namespace quorvane
