#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/control_source.h"
#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "tests/framework/print_qstring.h"

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

// A source with Count logging links tagged "A", "B", ... attached in that order.
struct TLinkedSource {
    explicit TLinkedSource(int Count)
    {
        for (int i = 0; i < Count; ++i) {
            Links.push_back(LoggingLink(Log, QString(QChar('A' + i))));
            Links.back()->SetEventSource(Source.get());
        }
    }
    TQXEventLink& Link(int i) { return *Links[static_cast<std::size_t>(i)]; }

    QStringList Log;
    std::unique_ptr<TQXControlSource> Source = std::make_unique<TQXControlSource>();
    std::vector<std::unique_ptr<TQXEventLink>> Links;
};

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

inline TQXPropertyGetSet CountWrites(int& Writes)
{
    return [&Writes](TQXPropertyItem*, bool get, bool, Variant&) -> HRESULT {
        Writes += get ? 0 : 1;
        return S_OK;
    };
}

// Registers an integer property, or an enumeration when Choices is given; returns its handle.
inline TQXPropertyHandle AddProperty(TQXControlSource& Source, const QString& Name,
                                     TQXPropertyGetSet GetSet = {}, const QString& Description = {},
                                     const Variant& Choices = Variant::Null())
{
    const QString text = Description.isEmpty() ? Name + " text" : Description;
    if (Choices.IsNull())
        Source.RegisterProperty(text, Name, std::move(GetSet), varInteger, "int", true, -1, 1, 0);
    else
        Source.RegisterProperty(text, Name, std::move(GetSet), varDouble, Choices, 3);
    TQXPropertyHandle h = 0;
    Source.GetPropertyHandle(Name, h);
    return h;
}

inline Variant StringArray(int Low, const QStringList& Texts)
{
    Variant list = Variant::CreateArray(Low, Low + static_cast<int>(Texts.size()) - 1, varOleStr);
    for (int i = 0; i < Texts.size(); ++i) list.SetArrayElement(Low + i, Variant(Texts[i]));
    return list;
}

}  // namespace qxtest
