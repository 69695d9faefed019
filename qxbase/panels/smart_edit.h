#pragma once

#include <QLineEdit>
#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/framework/variant.h"

namespace qx {

// What a smart edit holds: a 32-bit integer, a double or plain text.
enum TSmartEditKind : std::uint8_t { sekInteger, sekFloat, sekText };

// The edit kind for a variant type code: integer kinds (2, 3, 17, 19, 20) edit as integers,
// single and double as floats, everything else as text.
QXBASE_EXPORT TSmartEditKind SmartEditKindOf(std::uint16_t DataType);

// Converts an edited text by kind: a 32-bit integer (decimal, or hexadecimal with "$" or "0x"),
// a double with "." as decimal separator whatever the locale, or the text itself. False, and
// Value untouched, when the text does not convert.
QXBASE_EXPORT bool SmartTextToValue(const QString& Text, TSmartEditKind Kind, Variant& Value);

// The text a value shows in an edit; empty for Empty, Null and arrays.
QXBASE_EXPORT QString SmartValueText(const Variant& Value);

// A line edit for one value of a given kind. Typing is free; the text is checked when the value
// is taken (GetValue), so a wrong text can be shown and then replaced.
class QXBASE_EXPORT THVKSmartEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit THVKSmartEdit(QWidget* parent = nullptr);

    TSmartEditKind GetKind() const { return FKind; }
    void SetKind(TSmartEditKind Value) { FKind = Value; }
    // Shows a value as text and clears the modified flag.
    void SetValue(const Variant& Value);
    // The text converted by kind; false (Value untouched) when it does not convert.
    bool GetValue(Variant& Value) const;

private:
    TSmartEditKind FKind = sekText;
};

}  // namespace qx
