#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <ostream>

#include "qxbase/control/control_source.h"
#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"

inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }

namespace qxtest {

using namespace qx;

// A link whose handlers log "<tag>:U<handle>", "<tag>:P", "<tag>:D" and "<tag>:E<class>".
inline std::unique_ptr<TQXEventLink> LoggingLink(QStringList& Log, const QString& Tag)
{
    auto link = std::make_unique<TQXEventLink>();
    link->OnEvent = [&Log, Tag](TQXEventLink*, std::uint32_t, TQXEventClass c, const QString&) {
        Log << Tag + ":E" + QString::number(c);
    };
    link->OnValueUpdated = [&Log, Tag](TQXEventLink*, std::uint32_t h) {
        Log << Tag + ":U" + QString::number(h);
    };
    link->OnPropertiesChanged = [&Log, Tag](TQXEventLink*) { Log << Tag + ":P"; };
    link->OnSourceDestroyed = [&Log, Tag](TQXEventLink*) { Log << Tag + ":D"; };
    return link;
}

// Listens to the debug event source as the debug viewer does (DoDebug is on while it lives) and
// keeps every trace line split into its fields.
struct TDebugViewer {
    TDebugViewer()
    {
        Link.OnEvent = [this](TQXEventLink*, std::uint32_t, TQXEventClass c, const QString& text) {
            if (c == qxecDebugClientMessage) Lines.append(text.split(QChar(8)));
        };
        Link.SetEventSource(FDebugEventSource());
    }
    TQXEventLink Link;
    QList<QStringList> Lines;
};

// A property value that lives in the test, as it would live in a panel.
struct TValueHolder {
    Variant Value;
    int Writes = 0;
    TQXPropertyGetSet Callback()
    {
        return [this](TQXPropertyItem*, bool get, bool, Variant& value) -> HRESULT {
            if (get) value = Value;
            else {
                ++Writes;
                Value = value;
            }
            return S_OK;
        };
    }
};

// Registers a plain integer property and hands back its handle.
inline TQXPropertyHandle AddPlain(TQXControlSource& Source, const QString& Name,
                                  TQXPropertyGetSet GetSet = {}, const QString& Description = {})
{
    Source.RegisterProperty(Description.isEmpty() ? Name + " text" : Description, Name,
                            std::move(GetSet), varInteger, "int", true, -1, 1, 0);
    TQXPropertyHandle h = 0;
    Source.GetPropertyHandle(Name, h);
    return h;
}

// The message of the EQXControlSourceException that F raises, or "<none>".
inline QString ExceptionMessage(const std::function<void()>& F)
{
    try {
        F();
    } catch (const EQXControlSourceException& e) {
        return e.Message();
    }
    return "<none>";
}

inline Variant StringArray(int Low, const QStringList& Texts)
{
    Variant list = Variant::CreateArray(Low, Low + static_cast<int>(Texts.size()) - 1, varOleStr);
    for (int i = 0; i < Texts.size(); ++i) list.SetArrayElement(Low + i, Variant(Texts[i]));
    return list;
}

}  // namespace qxtest
