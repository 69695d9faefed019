#include "qxbase/panels/smart_edit.h"

#include "qxbase/framework/number_text.h"

namespace qx {

TSmartEditKind SmartEditKindOf(std::uint16_t DataType)
{
    switch (DataType) {
    case varSmallint:
    case varInteger:
    case varByte:
    case varLongWord:
    case varInt64: return sekInteger;
    case varSingle:
    case varDouble: return sekFloat;
    default: return sekText;
    }
}

bool SmartTextToValue(const QString& Text, TSmartEditKind Kind, Variant& Value)
{
    switch (Kind) {
    case sekInteger: {
        std::int32_t number = 0;
        if (!TryStrToInt(Text.trimmed(), number)) return false;
        Value = Variant(number);
        return true;
    }
    case sekFloat: {
        double number = 0;
        if (!TryStrToFloat(Text, number)) return false;
        Value = Variant(number);
        return true;
    }
    case sekText: Value = Variant(Text); return true;
    }
    return false;
}

QString SmartValueText(const Variant& Value)
{
    if (Value.IsEmpty() || Value.IsNull() || Value.IsArray()) return QString();
    return Value.ToString();
}

THVKSmartEdit::THVKSmartEdit(QWidget* parent) : QLineEdit(parent) {}

void THVKSmartEdit::SetValue(const Variant& Value)
{
    setText(SmartValueText(Value));
    setModified(false);
}

bool THVKSmartEdit::GetValue(Variant& Value) const { return SmartTextToValue(text(), FKind, Value); }

}  // namespace qx
