// The main of the widget tests: a QApplication on the offscreen platform unless the caller chose
// one, so that windows are built and driven without a display.

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
