#include "qxbase/panels/panel_dependencies.h"

#include <QObject>
#include <algorithm>

#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_base.h"

namespace qx {

namespace {

QString DependenciesOf(const QObject& panel)
{
    const TStreamClassDescriptor* descriptor = FindStreamClassOf(panel);
    if (descriptor != nullptr && descriptor->Dependencies)
        return descriptor->Dependencies();
    return TKSMSSink::GetDependencies();
}

bool LessCaseless(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; }

// Inserts into the sorted list unless an entry differing only in case is there.
void AddSorted(QStringList& list, const QString& entry)
{
    const auto at = std::lower_bound(list.begin(), list.end(), entry, LessCaseless);
    if (at == list.end() || LessCaseless(entry, *at))
        list.insert(at, entry);
}

bool Collect(const QObject& owner, QStringList& list)
{
    bool found = false;
    for (const QObject* child : owner.children()) {
        if (qobject_cast<const TKSMSSink*>(child) != nullptr) {
            found = true;
            for (const QString& part : DependenciesOf(*child).split(QLatin1Char(','))) {
                const QString entry = part.trimmed();
                if (!entry.isEmpty())
                    AddSorted(list, entry);
            }
        }
        found = Collect(*child, list) || found;
    }
    return found;
}

}  // namespace

int GetAllPanelDependencies(QObject* root, std::unique_ptr<QStringList>& List)
{
    if (root == nullptr)
        return 0;
    List = std::make_unique<QStringList>();
    if (!Collect(*root, *List)) {
        List.reset();
        return 0;
    }
    return static_cast<int>(List->size());
}

}  // namespace qx
