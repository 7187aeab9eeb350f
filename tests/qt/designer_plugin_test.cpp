// Qt Designer's way in: the plugin loads, names the widget and its header, and
// makes a working control.

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QPluginLoader>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

#ifdef QUORVANE_DESIGNER_PLUGIN
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

TEST(DesignerPlugin, LoadsAndMakesTheControl) {
    QPluginLoader loader(QStringLiteral(QUORVANE_DESIGNER_PLUGIN));
    ASSERT_TRUE(loader.load()) << loader.errorString().toStdString();
    auto* entry = qobject_cast<QDesignerCustomWidgetInterface*>(loader.instance());
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name(), "quorvane::SchedulerWidget");
    EXPECT_EQ(entry->includeFile(), "QuorvaneScheduler/qt/scheduler_widget.h");
    EXPECT_TRUE(entry->domXml().contains("class=\"quorvane::SchedulerWidget\""));
    std::unique_ptr<QWidget> made(entry->createWidget(nullptr));
    ASSERT_TRUE(made);
    EXPECT_STREQ(made->metaObject()->className(), "quorvane::SchedulerWidget");
    EXPECT_TRUE(made->findChild<QWidget*>("dvwResource(0)")) << "the control's columns are there";
}
#else
TEST(DesignerPlugin, LoadsAndMakesTheControl) { GTEST_SKIP() << "built without Qt's designer files (qt6-tools-dev)"; }
#endif
