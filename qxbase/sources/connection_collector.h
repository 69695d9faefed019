#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "qxbase/framework/export.h"

class QObject;

namespace qx {

class TKSMSSink;
class TKSSourceControlClient;
class TKSControlSourcePropListItem;
class TQXMeasureSourceEx;

// One connected panel of a root, with the lines that describe the connection.
class QXBASE_EXPORT TQXConnectionTarget {
public:
    TQXConnectionTarget(const QString& Description, const QString& ClassName, const QString& ComponentName);

    // The empty text for an index outside the lines.
    QString GetConnection(int Index) const;
    int GetConnectionCount() const { return static_cast<int>(FConnections.size()); }
    void AddConnection(const QString& Line) { FConnections.append(Line); }

    const QString& GetDescription() const { return FDescription; }
    const QString& GetClassName() const { return FClassName; }
    const QString& GetComponentName() const { return FComponentName; }

private:
    QStringList FConnections;
    QString FDescription;
    QString FClassName;
    QString FComponentName;
};

// One object of a worksheet (a data source, a binding client, a panel with event links) with
// the panels connected to it.
class QXBASE_EXPORT TQXConnectionRoot {
public:
    TQXConnectionRoot(const QString& Description, const QString& ClassName, const QString& ComponentName);

    // Null for an index outside the targets.
    TQXConnectionTarget* GetConnectionTarget(int Index) const;
    int GetConnectionTargetCount() const { return static_cast<int>(FTargets.size()); }
    TQXConnectionTarget& AddConnectionTarget(std::unique_ptr<TQXConnectionTarget> Target);
    // The first target with exactly this description; null when none.
    TQXConnectionTarget* FindConnectionTarget(const QString& Description) const;
    // Orders the targets by description (see TQXConnectionCollector::ScanRoot).
    void SortConnectionTargets();

    const QString& GetDescription() const { return FDescription; }
    const QString& GetClassName() const { return FClassName; }
    const QString& GetComponentName() const { return FComponentName; }

private:
    std::vector<std::unique_ptr<TQXConnectionTarget>> FTargets;
    QString FDescription;
    QString FClassName;
    QString FComponentName;
};

// A read-only overview of who is connected to whom in a worksheet: which panels read which
// data source through which channels, which clients bind which panels' properties, and which
// panels listen to which panels' events. It changes nothing in the scanned objects, except that
// every binding client installs its bindings again and each binding's property description is
// refreshed.
class QXBASE_EXPORT TQXConnectionCollector {
public:
    TQXConnectionCollector();
    ~TQXConnectionCollector();
    TQXConnectionCollector(const TQXConnectionCollector&) = delete;
    TQXConnectionCollector& operator=(const TQXConnectionCollector&) = delete;

    // Adds the roots found among the components under Container (the container itself not
    // included), depth first in child order; the lists are not cleared first. The data-source
    // scan and the property-and-event scan are each guarded: an exception stops that scan and
    // is discarded, the roots collected so far stay. Afterwards every list and every root's
    // targets are sorted by description, compared as UTF-8 byte strings, ascending; the sort is
    // stable, so equal descriptions keep the order in which they were found.
    void ScanRoot(QObject* Container);
    void Clear();

    // Null for an index outside the list.
    TQXConnectionRoot* GetDataSourceRoot(int Index) const;
    TQXConnectionRoot* GetEventSourceRoot(int Index) const;
    TQXConnectionRoot* GetControlSourceRoot(int Index) const;
    int GetDataSourceRootCount() const { return static_cast<int>(FDataSourceRoots.size()); }
    int GetEventSourceRootCount() const { return static_cast<int>(FEventSourceRoots.size()); }
    int GetControlSourceRootCount() const { return static_cast<int>(FControlSourceRoots.size()); }

    // The connection line of one binding of a client:
    //   "<property description> = <value text>"
    // where the value text is, for the recognised client classes, the source's current value
    // (a property that is not an enumeration) or "[active: <choice>] [passive: <choice>]" (an
    // enumeration; a value the client does not deliver is left out, "[variable]" when the
    // choices cannot be had), and "unknown" for every other client class or an unresolved
    // binding. A compound client's line is "!Compound control! : " followed by the above.
    // An exception of the source's property callback propagates.
    static QString BindingLine(const TKSSourceControlClient& Client, const TKSControlSourcePropListItem& Item);

private:
    using TRootList = std::vector<std::unique_ptr<TQXConnectionRoot>>;

    void ScanDataSources(QObject& Container);
    void ScanDataSource(TQXMeasureSourceEx& Source);
    void ScanPanels(QObject& Container);
    void ScanControlSide(TKSMSSink& Panel);
    void ScanEventSide(TKSMSSink& Panel);

    TRootList FDataSourceRoots;
    TRootList FEventSourceRoots;
    TRootList FControlSourceRoots;
};

}  // namespace qx
