#include <gtest/gtest.h>

#include <QLoggingCategory>
#include <QStringList>

#include "qxbase/framework/debug_output.h"
#include "tests/framework/print_qstring.h"

namespace {

QStringList gCaptured;

void Capture(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    gCaptured.append(QStringLiteral("%1|%2|%3").arg(type).arg(QString::fromLatin1(context.category), message));
}

TEST(DebugOutput, WritesTheTextUnquotedToQxDebugUntilARuleSilencesIt)
{
    const QString text = QStringLiteral("DoOnEventlinkSourceDestroied EventLink = 0000ABCD \"x\"");
    const QtMessageHandler previous = qInstallMessageHandler(Capture);
    qx::KSDebugOutputString(text);
    // A rule ending in ".debug" names a message type, so the category needs it twice.
    QLoggingCategory::setFilterRules(QStringLiteral("qx.debug.debug=false"));
    qx::KSDebugOutputString(QStringLiteral("hidden"));
    QLoggingCategory::setFilterRules(QString());
    qInstallMessageHandler(previous);
    EXPECT_EQ(gCaptured, QStringList{QStringLiteral("%1|qx.debug|").arg(QtDebugMsg) + text});
}

}  // namespace
