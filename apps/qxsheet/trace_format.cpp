#include "apps/qxsheet/trace_format.h"

#include <QStringList>

#include "qxbase/framework/exception.h"

namespace qxsheet {
namespace {

struct KindLayout {
    const char* kind;
    const char* title;
    QStringList names;
};

const KindLayout* LayoutOf(const QString& kind)
{
    static const KindLayout layouts[] = {
        {"1", "property write", {"sender", "source", "property", "value"}},
        {"2", "properties updated", {"source"}},
        {"3", "user event", {"source", "class", "event", "text"}},
        {"4", "data sent", {"source", "channels", "samples"}},
        {"5", "error event", {"source", "class", "text"}},
    };
    for (const KindLayout& layout : layouts)
        if (kind == QLatin1String(layout.kind)) return &layout;
    return nullptr;
}

}  // namespace

QString FormatTraceLine(const QString& line)
{
    const QStringList fields = line.split(QChar(8));
    const KindLayout* layout = LayoutOf(fields.value(0));
    QStringList parts;
    parts << (layout ? QStringLiteral("[%1 %2]").arg(fields[0], QLatin1String(layout->title))
                     : QStringLiteral("[%1]").arg(fields.value(0)));
    for (int i = 1; i < fields.size(); ++i) {
        const QString name = layout && i - 1 < layout->names.size() ? layout->names[i - 1]
                                                                     : QString::number(i);
        parts << QStringLiteral("%1=\"%2\"").arg(name, fields[i]);
    }
    return parts.join(QLatin1Char(' '));
}

QString PropertyValueText(qx::TQXControlSource& source, qx::TQXPropertyHandle handle)
{
    const QString none = QStringLiteral("<no value>");
    qx::Variant value;
    if (!source.GetPropertyValue(handle, value)) return none;
    std::uint16_t type = 0;
    QString info;
    source.GetPropertyType(handle, type, info);
    try {
        if (type == qx::varQXEnumeration) {
            qx::Variant list;
            source.GetEnumerationList(handle, list);
            const int index = value.ToInteger();
            if (list.IsArray() && index >= list.ArrayLowBound() && index <= list.ArrayHighBound())
                return list.ArrayElement(index).ToString();
        }
        return value.ToString();
    } catch (const qx::Exception&) {
        // Null and arrays have no text.
        return none;
    }
}

}  // namespace qxsheet
