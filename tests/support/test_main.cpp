#include <gtest/gtest.h>

#include <QApplication>

#if defined(__SANITIZE_THREAD__)
// Qt is not built with ThreadSanitizer: QThread::wait wakes its caller through a Qt mutex the
// sanitizer cannot see, so deleting a finished QThread looks like a race on its wait condition.
// Only that is excused; races in our code still report.
extern "C" const char* __tsan_default_suppressions()
{
    return "race:QWaitCondition\n";
}
#endif

// Every suite gets a QApplication so that widget tests can run; the offscreen platform is
// chosen by CTest's environment, and here as well when a suite is started by hand.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
