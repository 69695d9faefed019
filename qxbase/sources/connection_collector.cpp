#include "qxbase/sources/connection_collector.h"

#include <QObject>
#include <QPointer>
#include <QVariant>
#include <algorithm>
#include <array>

#include "qxbase/control/event_link.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/sources/measure_source.h"

namespace qx {
namespace {

// Clients whose values the overview knows how to show.
constexpr std::array<const char*, 8> kRecognisedClients = {
    "TKSCtrlSrcCliButton", "TKSCtrlSrcCliCounter",   "TKSCtrlSrcCliEvent",       "TKSHotKeysPanel",
    "TKSCtrlSrcCliComp",   "TKSInitializePanel",     "TKSCSCliDelayedOperation", "TKSFinalizePanel",
};
constexpr std::array<const char*, 5> kCompoundClients = {
    "TKSDAQCompound", "TKSKoraxCompound", "TKSCombCliLineRec", "TKSCombCliScope", "TKSCombCliSpectrum",
};

template <std::size_t N>
bool IsOneOf(const QString& ClassName, const std::array<const char*, N>& Names)
{
    return std::any_of(Names.begin(), Names.end(), [&](const char* n) { return ClassName == QLatin1String(n); });
}

QString ClassNameOf(const QObject& Object) { return StreamClassName(*Object.metaObject()); }

// The components under Container, depth first in child order: Visit runs on each component
// before its own components. Children are taken as a snapshot of guarded pointers, since the
// visits may let panels rebuild their bindings.
template <class F>
void ForEachComponent(QObject& Container, F&& Visit)
{
    std::vector<QPointer<QObject>> children;
    children.reserve(static_cast<std::size_t>(Container.children().size()));
    for (QObject* child : Container.children()) children.emplace_back(child);
    for (const QPointer<QObject>& child : children) {
        if (!child) continue;
        Visit(*child);
        if (child) ForEachComponent(*child, Visit);
    }
}

bool DescriptionLess(const QString& A, const QString& B) { return A.toUtf8() < B.toUtf8(); }

template <class T>
void SortByDescription(std::vector<std::unique_ptr<T>>& List)
{
    std::stable_sort(List.begin(), List.end(), [](const std::unique_ptr<T>& A, const std::unique_ptr<T>& B) {
        return DescriptionLess(A->GetDescription(), B->GetDescription());
    });
}

QString ChannelLine(const TQXMSExChannelInformation& Info)
{
    return Info.SecondText + QLatin1String(" [") + Info.ThirdText + QLatin1String("];  {") + FloatToStr(Info.RangeLow) +
           QLatin1Char(',') + FloatToStr(Info.RangeHigh) + QLatin1Char('}');
}

// The text of a value for a line; "unknown" for what has no text (Null, arrays).
QString ValueText(const Variant& Value)
{
    try {
        return Value.ToString();
    } catch (const EVariantError&) {
        return QStringLiteral("unknown");
    }
}

// The choice at an enumeration value (an array index); empty outside the list.
QString ChoiceText(const Variant& List, const Variant& Value)
{
    try {
        const int index = Value.ToInteger();
        if (index < List.ArrayLowBound() || index > List.ArrayHighBound()) return {};
        return List.ArrayElement(index).ToString();
    } catch (const EVariantError&) {
        return {};
    }
}

QString EnumerationValueText(const TKSSourceControlClient& Client, const TKSControlSourcePropListItem& Item)
{
    Variant list;
    if (!Item.FSource->GetEnumerationList(Item.FPropertyHandle, list) || !list.IsArray())
        return QStringLiteral("[variable]");
    Variant active;
    Variant passive;
    Client.GetValuesOfProperty(Item.FPanelName, Item.FPropertyName, active, passive);
    QStringList parts;
    if (!active.IsEmpty()) parts << QLatin1String("[active: ") + ChoiceText(list, active) + QLatin1Char(']');
    if (!passive.IsEmpty()) parts << QLatin1String("[passive: ") + ChoiceText(list, passive) + QLatin1Char(']');
    return parts.join(QLatin1Char(' '));
}

}  // namespace

TQXConnectionTarget::TQXConnectionTarget(const QString& Description, const QString& ClassName,
                                         const QString& ComponentName)
    : FDescription(Description), FClassName(ClassName), FComponentName(ComponentName)
{
}

QString TQXConnectionTarget::GetConnection(int Index) const
{
    if (Index < 0 || Index >= FConnections.size()) return {};
    return FConnections.at(Index);
}

TQXConnectionRoot::TQXConnectionRoot(const QString& Description, const QString& ClassName,
                                     const QString& ComponentName)
    : FDescription(Description), FClassName(ClassName), FComponentName(ComponentName)
{
}

TQXConnectionTarget* TQXConnectionRoot::GetConnectionTarget(int Index) const
{
    if (Index < 0 || Index >= GetConnectionTargetCount()) return nullptr;
    return FTargets[static_cast<std::size_t>(Index)].get();
}

TQXConnectionTarget& TQXConnectionRoot::AddConnectionTarget(std::unique_ptr<TQXConnectionTarget> Target)
{
    return *FTargets.emplace_back(std::move(Target));
}

TQXConnectionTarget* TQXConnectionRoot::FindConnectionTarget(const QString& Description) const
{
    for (const auto& target : FTargets)
        if (target->GetDescription() == Description) return target.get();
    return nullptr;
}

void TQXConnectionRoot::SortConnectionTargets() { SortByDescription(FTargets); }

TQXConnectionCollector::TQXConnectionCollector() = default;
TQXConnectionCollector::~TQXConnectionCollector() = default;

void TQXConnectionCollector::Clear()
{
    FDataSourceRoots.clear();
    FEventSourceRoots.clear();
    FControlSourceRoots.clear();
}

namespace {
TQXConnectionRoot* RootAt(const std::vector<std::unique_ptr<TQXConnectionRoot>>& List, int Index)
{
    if (Index < 0 || static_cast<std::size_t>(Index) >= List.size()) return nullptr;
    return List[static_cast<std::size_t>(Index)].get();
}
}  // namespace

TQXConnectionRoot* TQXConnectionCollector::GetDataSourceRoot(int Index) const { return RootAt(FDataSourceRoots, Index); }
TQXConnectionRoot* TQXConnectionCollector::GetEventSourceRoot(int Index) const { return RootAt(FEventSourceRoots, Index); }
TQXConnectionRoot* TQXConnectionCollector::GetControlSourceRoot(int Index) const
{
    return RootAt(FControlSourceRoots, Index);
}

void TQXConnectionCollector::ScanRoot(QObject* Container)
{
    if (Container) {
        try {
            ScanDataSources(*Container);
        } catch (...) {
        }
        try {
            ScanPanels(*Container);
        } catch (...) {
        }
    }
    for (TRootList* list : {&FDataSourceRoots, &FEventSourceRoots, &FControlSourceRoots}) {
        SortByDescription(*list);
        for (const auto& root : *list) root->SortConnectionTargets();
    }
}

void TQXConnectionCollector::ScanDataSources(QObject& Container)
{
    ForEachComponent(Container, [this](QObject& Component) {
        if (auto* source = qobject_cast<TQXMeasureSourceEx*>(&Component)) ScanDataSource(*source);
    });
}

void TQXConnectionCollector::ScanDataSource(TQXMeasureSourceEx& Source)
{
    auto root = std::make_unique<TQXConnectionRoot>(Source.GetObjectDescription(), ClassNameOf(Source),
                                                    Source.objectName());
    for (TQXMeasureLinkEx* link : Source.GetLinks()) {
        auto* panel = qobject_cast<TKSMSSink*>(link->GetOwner());
        if (!panel) continue;
        auto target = std::make_unique<TQXConnectionTarget>(panel->GetObjectDescription(), ClassNameOf(*panel),
                                                            panel->objectName());
        const int count = std::min(Source.GetChannelListCount(), panel->GetChannelCount());
        for (int i = 0; i < count; ++i) {
            const int index = panel->GetChannelArray(i);
            if (index < 0) {
                target->AddConnection(QStringLiteral("unknown"));
            } else if (const TQXMSExChannelInformation* info = Source.GetChannelList(index)) {
                target->AddConnection(ChannelLine(*info));
            }
        }
        root->AddConnectionTarget(std::move(target));
    }
    if (!root->GetComponentName().isEmpty()) FDataSourceRoots.push_back(std::move(root));
}

void TQXConnectionCollector::ScanPanels(QObject& Container)
{
    ForEachComponent(Container, [this](QObject& Component) {
        auto* panel = qobject_cast<TKSMSSink*>(&Component);
        if (!panel) return;
        const QPointer<TKSMSSink> guard(panel);
        ScanControlSide(*panel);
        if (guard) ScanEventSide(*panel);
    });
}

QString TQXConnectionCollector::BindingLine(const TKSSourceControlClient& Client,
                                            const TKSControlSourcePropListItem& Item)
{
    const QString className = ClassNameOf(Client);
    // Taken before any property callback runs: a callback may change the client's bindings.
    QString line = Item.FPropertyDescription + QLatin1String(" = ");
    QString value = QStringLiteral("unknown");
    if (!Item.IsResolved()) {
        value = QStringLiteral("unresolved");
    } else if (IsOneOf(className, kRecognisedClients)) {
        if (Item.FPropertyType == varQXEnumeration) {
            value = EnumerationValueText(Client, Item);
        } else {
            Variant current;
            Item.FSource->GetPropertyValue(Item.FPropertyHandle, current);
            value = ValueText(current);
        }
    }
    line += value;
    if (IsOneOf(className, kCompoundClients)) return QLatin1String("!Compound control! : ") + line;
    return line;
}

void TQXConnectionCollector::ScanControlSide(TKSMSSink& Panel)
{
    auto root = std::make_unique<TQXConnectionRoot>(Panel.GetObjectDescription(), ClassNameOf(Panel), Panel.objectName());
    if (auto* client = qobject_cast<TKSSourceControlClient*>(&Panel)) {
        client->InstallControlSourceConnections();
        TKSControlSourcePropList& bindings = client->GetPropInputList();
        for (std::size_t i = 0; i < bindings.size(); ++i) {
            TKSControlSourcePropListItem& item = *bindings[i];
            TQXConnectionTarget* target = root->FindConnectionTarget(item.FSourceDescription);
            if (!target) {
                // A binding whose panel is not there names the panel it looks for.
                const auto* source = dynamic_cast<const QObject*>(item.FSource.Get());
                target = &root->AddConnectionTarget(std::make_unique<TQXConnectionTarget>(
                    item.FSourceDescription, source ? ClassNameOf(*source) : QString(),
                    source ? source->objectName() : item.FPanelName));
            }
            if (!item.FSource || !item.FSource->GetDescriptionFromName(item.FPropertyName, item.FPropertyDescription))
                item.FPropertyDescription = item.FPropertyName;
            const QString line = BindingLine(*client, item);
            target->AddConnection(line);
        }
    }
    if (root->GetConnectionTargetCount() > 0) FControlSourceRoots.push_back(std::move(root));
}

void TQXConnectionCollector::ScanEventSide(TKSMSSink& Panel)
{
    auto root = std::make_unique<TQXConnectionRoot>(Panel.GetObjectDescription(), ClassNameOf(Panel), Panel.objectName());
    for (TQXEventLink* link : Panel.GetEventLinks()) {
        auto* owner = qobject_cast<TKSMSSink*>(link->GetOwner());
        if (!owner) continue;
        auto target = std::make_unique<TQXConnectionTarget>(owner->GetObjectDescription(), ClassNameOf(*owner),
                                                            owner->objectName());
        if (target->GetClassName() == QLatin1String("TKSCtrlSrcCliEvent"))
            target->AddConnection(owner->property("ActiveEventEventDescription").toString());
        if (!target->GetComponentName().isEmpty()) root->AddConnectionTarget(std::move(target));
    }
    if (root->GetConnectionTargetCount() > 0) FEventSourceRoots.push_back(std::move(root));
}

}  // namespace qx
