#include <gtest/gtest.h>

#include <QLoggingCategory>
#include <QStringList>

#include "qxbase/framework/debug_output.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

QStringList gCaptured;

void Capture(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    gCaptured.append(QStringLiteral("%1|%2|%3").arg(type).arg(QString::fromLatin1(context.category), message));
}

// Installs the capturing handler for one test and restores the previous one.
class DebugOutput : public ::testing::Test {
protected:
    void SetUp() override
    {
        gCaptured.clear();
        FPrevious = qInstallMessageHandler(Capture);
    }
    void TearDown() override
    {
        qInstallMessageHandler(FPrevious);
        QLoggingCategory::setFilterRules(QString());
    }

    QtMessageHandler FPrevious = nullptr;
};

TEST_F(DebugOutput, WritesTheTextUnquotedToQxDebug)
{
    EXPECT_STREQ(lcQxDebug().categoryName(), "qx.debug");
    KSDebugOutputString(QStringLiteral("DoOnEventlinkSourceDestroied EventLink = 0000ABCD \"x\""));
    ASSERT_EQ(gCaptured.size(), 1);
    EXPECT_EQ(gCaptured[0],
              QStringLiteral("%1|qx.debug|DoOnEventlinkSourceDestroied EventLink = 0000ABCD \"x\"").arg(QtDebugMsg));
}

TEST_F(DebugOutput, LoggingRulesCanSilenceIt)
{
    // A rule ending in ".debug" names a message type, so the category needs it twice.
    QLoggingCategory::setFilterRules(QStringLiteral("qx.debug.debug=false"));
    KSDebugOutputString(QStringLiteral("hidden"));
    EXPECT_TRUE(gCaptured.isEmpty());
}

}  // namespace
