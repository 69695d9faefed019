#include <gtest/gtest.h>

#include <QApplication>

// Every suite gets a QApplication so that widget tests can run; the offscreen platform is
// chosen by CTest's environment, and here as well when a suite is started by hand.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
