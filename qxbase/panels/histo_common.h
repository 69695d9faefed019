#pragma once

#include <QString>

#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"

class QWidget;

// What every chart panel shares besides its widgets: the choice lists of its enumeration
// properties, number and time text for the cursor read-out, and the data-file helpers.
namespace qx {

// Choice lists for RegisterProperty's enumeration overload: arrays of strings 0..n-1 in the
// order of the enumeration's values.
QXBASE_EXPORT Variant LegendPositionTexts();      // "Horizontal", "Vertical"
QXBASE_EXPORT Variant DisplayStyleTexts();        // "One band", "Multiple bands"
QXBASE_EXPORT Variant CursorPanelPositionTexts(); // "Hide", "Top", "Bottom", "Left", "Right"
QXBASE_EXPORT Variant TriggerTypeTexts();         // "Positive", "Negative", "Off"
QXBASE_EXPORT Variant YAxisScaleTexts();          // "linear", "logarithmic", "dB"
QXBASE_EXPORT Variant XAxisScaleTexts();          // "linear", "logarithmic"
QXBASE_EXPORT Variant SaveMethodTexts();          // "Show Dialog" ... "Use name with overwrite warning"

// A cursor value in fixed-point form with at most 7 significant digits and exactly `Decimals`
// places: the value is rounded once, to 7 significant digits or to `Decimals` places, whichever
// keeps fewer digits, and places past the seventh digit are written as zeros
// (1.23456789 with 9 places gives "1.234568000", with 3 "1.235"). A value needing more than 7
// integer digits is written in exponent form with 7 significant digits ("1.234568E8").
// Decimals are clamped to 0..15; "." is the separator whatever the locale; NaN and infinities
// give "NAN", "INF", "-INF".
QXBASE_EXPORT QString FormatCursorNumber(double Value, int Decimals);

// `Seconds` since 1970-01-01T00:00:00 UTC written with a QDateTime format, in UTC; "? " when
// the value is not finite or lies outside the years QDateTime can write.
QXBASE_EXPORT QString FormatCursorTime(double Seconds, const QString& TimeFormat);

// A Windows-style filter ("Text (*.txt)|*.txt|All|*.*") in Qt's form ("Text (*.txt);;All (*.*)").
// A description that already names its patterns is kept as it is; patterns separated by ";"
// become blank-separated. A pair without a pattern keeps its description alone.
QXBASE_EXPORT QString FilterToQtFilter(const QString& Filter);

// The name without its extension: the text up to the last "." of the file part (after the last
// "/" or "\"); the whole name when the file part holds no ".".
QXBASE_EXPORT QString RemoveFileExtension(const QString& FileName);

// Sets `FileName` to `DefaultName`, then asks for a data file through the host's save-file
// dialog ("Save data file", "KS file format (*.dcf)"). When the user confirms, `FileName` is the
// chosen name without its extension and the result is true; cancelled, it stays the default.
// The extension is dropped because the chart panels add their own when they write.
QXBASE_EXPORT bool SelectDCFSaveFileName(QWidget* Owner, const QString& DefaultName, QString& FileName);

// The part of a dotted name after its second dot ("a.b.c.d" gives "c.d"), after its only dot
// ("a.b" gives "b"), or the whole text when it has no dot.
QXBASE_EXPORT QString GetNameFromFullPath(const QString& Path);

}  // namespace qx
