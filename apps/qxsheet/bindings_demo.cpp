#include "apps/qxsheet/bindings_demo.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "apps/qxsheet/demo_clients.h"
#include "apps/qxsheet/trace_format.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"

namespace qxsheet {
namespace {

std::vector<TDemoClientPanel*> ClientsOf(const TWorksheetWindow& Window)
{
    std::vector<TDemoClientPanel*> clients;
    for (qx::TKSPanelTabPage* page : Window.GetPages())
        for (qx::TKSMSSink* panel : qx::GetAllPagePanels(*page))
            if (auto* client = qobject_cast<TDemoClientPanel*>(panel))
                clients.push_back(client);
    return clients;
}

template <class T>
T* FirstOf(const std::vector<TDemoClientPanel*>& Clients)
{
    for (TDemoClientPanel* client : Clients)
        if (auto* wanted = qobject_cast<T*>(client))
            return wanted;
    return nullptr;
}

// The name the source gives its event of this class: the system event's internal name.
QString EventName(const qx::TQXControlSource& Source, qx::TQXEventClass Class)
{
    QStringList names;
    QStringList descriptions;
    qx::TQXDynArrayEventClass classes;
    Source.EventGetEvents(names, descriptions, classes);
    for (std::size_t i = 0; i < classes.size(); ++i)
        if (classes[i] == Class)
            return names.value(static_cast<qsizetype>(i));
    return QString::number(Class);
}

// A binding value with the choice it stands for when the property is an enumeration.
QString BindingValueText(const qx::TKSControlSourcePropListItem& Item, const qx::Variant& Value)
{
    QString text;
    try {
        text = Value.IsEmpty() ? QStringLiteral("(unassigned)") : Value.ToString();
        if (Item.FSource != nullptr && Item.FPropertyType == qx::varQXEnumeration) {
            qx::Variant list;
            Item.FSource->GetEnumerationList(Item.FPropertyHandle, list);
            const int index = Value.ToInteger();
            if (list.IsArray() && index >= list.ArrayLowBound() && index <= list.ArrayHighBound())
                text += QStringLiteral(" \"%1\"").arg(list.ArrayElement(index).ToString());
        }
    } catch (const qx::Exception&) {
        // Null, arrays and texts that are no index: the text so far says enough.
    }
    return text;
}

void ListBindings(QTextStream& out, const TDemoClientPanel& Client)
{
    out << qx::StreamClassName(*Client.metaObject()) << " " << Client.objectName() << " (\"" << Client.GetCaption()
        << "\"):" << Qt::endl;
    const qx::TKSControlSourcePropList& bindings = Client.GetPropInputList();
    if (bindings.empty())
        out << "  no bindings" << Qt::endl;
    for (const auto& item : bindings)
        out << "  " << item->FPanelName << "->" << item->FPropertyName << "  active "
            << BindingValueText(*item, item->FActiveValue) << ", passive "
            << BindingValueText(*item, item->FPassiveValue)
            << (item->IsResolved() ? "" : "  (unresolved)") << Qt::endl;
}

// One link per bound panel that prints what the panel announces.
std::vector<std::unique_ptr<qx::TQXEventLink>> ListenToBoundPanels(QTextStream& out,
                                                                   const std::vector<TDemoClientPanel*>& Clients)
{
    std::vector<std::unique_ptr<qx::TQXEventLink>> links;
    std::vector<qx::TQXControlSource*> sources;
    QStringList names;
    for (TDemoClientPanel* client : Clients)
        for (const auto& item : client->GetPropInputList()) {
            if (item->FSource == nullptr || std::find(sources.begin(), sources.end(), item->FSource) != sources.end())
                continue;
            qx::TQXControlSource* source = item->FSource;
            const QString panel = item->FPanelName;
            auto link = std::make_unique<qx::TQXEventLink>();
            link->OnValueUpdated = [&out, source, panel](qx::TQXEventLink*, std::uint32_t handle) {
                QString property;
                source->GetPropertyNameFromHandle(handle, property);
                out << "  " << EventName(*source, qx::qxecControlSourceUpdated) << "  panel " << panel
                    << ", property " << property << " = " << PropertyValueText(*source, handle) << Qt::endl;
            };
            link->SetEventSource(source);
            sources.push_back(source);
            names << panel;
            links.push_back(std::move(link));
        }
    out << "listening on " << (names.isEmpty() ? QStringLiteral("no panel") : names.join(QStringLiteral(", ")))
        << Qt::endl;
    return links;
}

}  // namespace

int RunBindingsDemo(const QString& Path, QTextStream& out, QTextStream& err)
{
    std::unique_ptr<TWorksheetWindow> window = OpenWorksheetWindowOrReport(Path, err);
    if (!window)
        return 1;
    const std::vector<TDemoClientPanel*> clients = ClientsOf(*window);
    auto* heaterSwitch = FirstOf<TDemoSwitchPanel>(clients);
    auto* button = FirstOf<TDemoButtonPanel>(clients);
    if (heaterSwitch == nullptr || button == nullptr) {
        err << "qxsheet: " << window->GetPath() << " has no " << (heaterSwitch == nullptr ? "switch" : "button")
            << " panel to drive" << Qt::endl;
        return 1;
    }

    out << "qxsheet - binding walk-through: a switch and a button set properties of other panels"
        << Qt::endl << Qt::endl << "Bindings in " << window->GetPath() << ", as loaded:" << Qt::endl;
    for (const TDemoClientPanel* client : clients)
        ListBindings(out, *client);

    const std::vector<std::unique_ptr<qx::TQXEventLink>> links = ListenToBoundPanels(out, clients);
    qx::TQXEventLink viewer;
    viewer.OnEvent = [&out](qx::TQXEventLink*, std::uint32_t, qx::TQXEventClass eventClass, const QString& text) {
        if (eventClass == qx::qxecDebugClientMessage)
            // Plain debug messages carry no kind and no fields.
            out << "  trace  " << (text.contains(QChar(8)) ? FormatTraceLine(text) : text) << Qt::endl;
    };
    viewer.SetEventSource(qx::FDebugEventSource());

    const auto step = [&](const QString& what) { out << Qt::endl << "== " << what << " ==" << Qt::endl; };
    for (int i = 0; i < 2; ++i) {
        step(QStringLiteral("toggle switch %1, which is %2").arg(heaterSwitch->objectName(),
                                                                 heaterSwitch->GetOn() ? "on" : "off"));
        heaterSwitch->Toggle();
        out << "switch " << heaterSwitch->objectName() << " is now " << (heaterSwitch->GetOn() ? "on" : "off")
            << Qt::endl;
    }
    step(QStringLiteral("press button %1").arg(button->objectName()));
    button->Press();

    // Panels go in stacking order; a client that outlives a panel it is bound to drops the
    // binding and says so.
    step(QStringLiteral("close the worksheet"));
    const auto systemOutput = qx::HostServices().DebugOutput;
    qx::HostServices().DebugOutput = [&out](const QString& text) { out << "  debug output  " << text << Qt::endl; };
    window.reset();
    qx::HostServices().DebugOutput = systemOutput;
    viewer.SetEventSource(nullptr);
    return 0;
}

}  // namespace qxsheet
