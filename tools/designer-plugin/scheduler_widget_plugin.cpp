// Qt Designer's entry for SchedulerWidget: the control can be placed on a form
// from the widget box, and a form that holds it builds with the header below.

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QIcon>
#include <QObject>

namespace {

class SchedulerWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    using QObject::QObject;

    QString name() const override { return QStringLiteral("quorvane::SchedulerWidget"); }
    QString group() const override { return QStringLiteral("QuorvaneScheduler"); }
    QString includeFile() const override { return QStringLiteral("QuorvaneScheduler/qt/scheduler_widget.h"); }
    QString toolTip() const override { return QStringLiteral("The appointment-scheduling control"); }
    QString whatsThis() const override {
        return QStringLiteral("ctlScheduler as a Qt widget: the host drives it through control() and hears "
                              "its events as signals.");
    }
    QIcon icon() const override { return QIcon(); }
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override { return new quorvane::SchedulerWidget(parent); }
    QString domXml() const override {
        return QStringLiteral(R"(<ui language="c++"><widget class="quorvane::SchedulerWidget" name="scheduler">
<property name="geometry"><rect><x>0</x><y>0</y><width>1000</width><height>700</height></rect></property>
</widget></ui>)");
    }
};

} // namespace

#include "scheduler_widget_plugin.moc"
