#include "qxbase/panels/worksheet_file.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRect>
#include <QSaveFile>
#include <QSet>
#include <QStringList>
#include <QVariant>
#include <QWidget>
#include <utility>

#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/controler_panel_base.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"

namespace qx {
namespace {

const QString KFormatKey = QStringLiteral("format");
const QString KVersionKey = QStringLiteral("version");
const QString KPagesKey = QStringLiteral("pages");
const QString KPanelsKey = QStringLiteral("panels");
const QString KGeometryKey = QStringLiteral("geometry");
const QString KComponentsKey = QStringLiteral("components");
const QString KNameKey = QStringLiteral("name");

const QStringList KRootKeys = {KFormatKey, KVersionKey, KPagesKey};
const QStringList KPageKeys = {QStringLiteral("class"), KNameKey, QStringLiteral("properties"),
                               QStringLiteral("defined"), KPanelsKey};
const QStringList KHeldKeys = {QStringLiteral("class"), KNameKey, QStringLiteral("properties"),
                               QStringLiteral("defined"), KGeometryKey, KComponentsKey};

QString Join(const QString& place, const QString& more)
{
    return place.isEmpty() ? more : QStringLiteral("%1, %2").arg(place, more);
}

[[noreturn]] void Fail(const QString& place, const QString& problem)
{
    throw EStreamError(QStringLiteral("%1: %2").arg(place, problem));
}

bool IsWholeNumber(const QJsonValue& value)
{
    return value.isDouble() && value.toVariant().metaType().id() == QMetaType::LongLong;
}

QString JsonTypeName(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return QStringLiteral("boolean");
    case QJsonValue::Double: return IsWholeNumber(value) ? QStringLiteral("integer") : QStringLiteral("number");
    case QJsonValue::String: return QStringLiteral("string");
    case QJsonValue::Array: return QStringLiteral("list");
    case QJsonValue::Object: return QStringLiteral("object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("nothing");
}

QString PagePlace(const QString& file, const QString& pageName)
{
    return Join(file, QStringLiteral("page \"%1\"").arg(pageName));
}

// The children a page or a component holds on file: panels of either base, and components of
// classes registered for streaming. Panels go in even when their class is not registered, so
// that saving one fails instead of dropping it. Internal helpers of a panel (timers, menus,
// plain widgets) are not streamed.
std::vector<QObject*> HeldChildren(const QObject& owner)
{
    std::vector<QObject*> held;
    for (QObject* child : owner.children())
        if (qobject_cast<TKSMSSink*>(child) != nullptr || qobject_cast<TKSControlerPanelBase*>(child) != nullptr
            || FindStreamClass(StreamClassName(*child->metaObject())) != nullptr)
            held.push_back(child);
    return held;
}

void CollectPanels(const QObject& owner, std::vector<TKSMSSink*>& panels)
{
    for (QObject* child : owner.children()) {
        if (auto* panel = qobject_cast<TKSMSSink*>(child))
            panels.push_back(panel);
        CollectPanels(*child, panels);
    }
}

// Names already used in one namespace: the worksheet, or the inside of one panel.
class TNameSet {
public:
    explicit TNameSet(QString scope) : FScope(std::move(scope)) {}

    void Add(const QString& name, const QString& place)
    {
        if (name.isEmpty())
            Fail(place, QStringLiteral("the name is empty"));
        if (FNames.contains(name))
            Fail(place, QStringLiteral("the name \"%1\" is used twice %2").arg(name, FScope));
        FNames.insert(name);
    }

private:
    QString FScope;
    QSet<QString> FNames;
};

QJsonObject WriteComponentAt(const QObject& component, const QString& place)
{
    try {
        return WriteComponent(component);
    } catch (const EStreamError& e) {
        throw EStreamError(Join(place, e.Message()));
    }
}

QJsonObject WriteHeld(const QObject& component, const QString& ownerPlace)
{
    QJsonObject json = WriteComponentAt(component, ownerPlace);
    if (const auto* widget = qobject_cast<const QWidget*>(&component)) {
        const QRect bounds = widget->geometry();
        json.insert(KGeometryKey, QJsonArray{bounds.left(), bounds.top(), bounds.width(), bounds.height()});
    }
    const QString place = Join(ownerPlace, ComponentPlace(component));
    TNameSet names(QStringLiteral("in %1").arg(ComponentPlace(component)));
    QJsonArray held;
    for (const QObject* child : HeldChildren(component)) {
        names.Add(child->objectName(), Join(place, ComponentPlace(*child)));
        held.append(WriteHeld(*child, place));
    }
    if (!held.isEmpty())
        json.insert(KComponentsKey, held);
    return json;
}

class TWorksheetReader {
public:
    explicit TWorksheetReader(QString fileName)
        : FFile(std::move(fileName)), FNames(QStringLiteral("in the worksheet"))
    {
    }

    std::vector<std::unique_ptr<TKSPanelTabPage>> Read(const QByteArray& data)
    {
        const QJsonObject root = ReadRoot(data);
        const QJsonArray pageEntries = RequiredList(root, KPagesKey, FFile);
        std::vector<std::unique_ptr<TKSPanelTabPage>> pages;
        for (qsizetype i = 0; i < pageEntries.size(); ++i)
            pages.push_back(ReadPage(pageEntries.at(i), i));
        FinishLoading(pages);
        return pages;
    }

private:
    // Only now: every panel may look up any other while it finishes. Panels find each other
    // through their topmost ancestor, so the pages share one holder meanwhile; they leave it
    // again whether or not a LoadFinished raises, and the caller's pages own them throughout.
    static void FinishLoading(const std::vector<std::unique_ptr<TKSPanelTabPage>>& pages)
    {
        QWidget holder;
        struct TRelease {
            const std::vector<std::unique_ptr<TKSPanelTabPage>>& Pages;
            ~TRelease()
            {
                for (const auto& page : Pages)
                    page->setParent(nullptr);
            }
        } release{pages};
        for (const auto& page : pages)
            page->setParent(&holder);
        for (const auto& page : pages)
            for (TKSMSSink* panel : GetAllPagePanels(*page))
                panel->LoadFinished();
    }

    QJsonObject ReadRoot(const QByteArray& data) const
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(data, &error);
        if (error.error != QJsonParseError::NoError)
            Fail(FFile, QStringLiteral("not a JSON document (%1 at offset %2)").arg(error.errorString()).arg(error.offset));
        if (!document.isObject())
            Fail(FFile, QStringLiteral("not a worksheet file (a list, not an object, at the top)"));
        const QJsonObject root = document.object();
        if (root.value(KFormatKey) != WorksheetFormatTag())
            Fail(FFile, QStringLiteral("not a worksheet file (\"format\" is not \"%1\")").arg(WorksheetFormatTag()));
        const QJsonValue version = root.value(KVersionKey);
        if (!IsWholeNumber(version))
            Fail(FFile, QStringLiteral("\"version\" must be an integer but is a %1").arg(JsonTypeName(version)));
        if (version.toInteger() != KWorksheetVersion)
            Fail(FFile, QStringLiteral("version %1 is not supported (this program reads version %2)")
                            .arg(version.toInteger())
                            .arg(KWorksheetVersion));
        CheckKeys(root, KRootKeys, FFile);
        return root;
    }

    std::unique_ptr<TKSPanelTabPage> ReadPage(const QJsonValue& entry, qsizetype index)
    {
        const QString entryPlace = Join(FFile, QStringLiteral("page %1").arg(index + 1));
        const QJsonObject json = EntryObject(entry, entryPlace);
        CheckKeys(json, KPageKeys, entryPlace);
        const QString name = EntryName(json, entryPlace);
        FNames.Add(name, entryPlace);
        std::unique_ptr<QObject> component = ReadComponent(json, nullptr, FFile);
        auto* page = qobject_cast<TKSPanelTabPage*>(component.get());
        if (page == nullptr)
            Fail(Join(FFile, ComponentPlace(*component)), QStringLiteral("not a worksheet page"));
        std::unique_ptr<TKSPanelTabPage> result(page);
        component.release();
        const QString place = PagePlace(FFile, name);
        const QJsonArray panels = RequiredList(json, KPanelsKey, place);
        for (qsizetype i = 0; i < panels.size(); ++i)
            ReadHeld(panels.at(i), *page, place, Join(place, QStringLiteral("panel %1").arg(i + 1)), FNames);
        return result;
    }

    // Reads one entry as a child of `owner`; on success the owner holds it.
    void ReadHeld(const QJsonValue& entry, QObject& owner, const QString& ownerPlace, const QString& entryPlace,
                  TNameSet& names)
    {
        const QJsonObject json = EntryObject(entry, entryPlace);
        CheckKeys(json, KHeldKeys, entryPlace);
        names.Add(EntryName(json, entryPlace), entryPlace);
        std::unique_ptr<QObject> component = ReadComponent(json, &owner, ownerPlace);
        const QString place = Join(ownerPlace, ComponentPlace(*component));
        if (auto* widget = qobject_cast<QWidget*>(component.get()))
            ApplyGeometry(*widget, json.value(KGeometryKey), place);
        else if (json.contains(KGeometryKey))
            Fail(place, QStringLiteral("\"geometry\" given for a component that is not a widget"));
        if (json.contains(KComponentsKey)) {
            const QJsonArray held = RequiredList(json, KComponentsKey, place);
            TNameSet inner(QStringLiteral("in %1").arg(ComponentPlace(*component)));
            for (qsizetype i = 0; i < held.size(); ++i)
                ReadHeld(held.at(i), *component, place, Join(place, QStringLiteral("component %1").arg(i + 1)), inner);
        }
        component.release();
    }

    static void ApplyGeometry(QWidget& widget, const QJsonValue& value, const QString& place)
    {
        if (value.isUndefined())
            Fail(place, QStringLiteral("\"geometry\" is missing"));
        const QJsonArray numbers = value.toArray();
        bool whole = value.isArray() && numbers.size() == 4;
        for (const QJsonValue number : numbers)
            whole = whole && IsWholeNumber(number);
        if (!whole)
            Fail(place, QStringLiteral("\"geometry\" must be [left, top, width, height] in whole pixels"));
        const qint64 left = numbers.at(0).toInteger();
        const qint64 top = numbers.at(1).toInteger();
        const qint64 width = numbers.at(2).toInteger();
        const qint64 height = numbers.at(3).toInteger();
        const QString text = QStringLiteral("[%1, %2, %3, %4]").arg(left).arg(top).arg(width).arg(height);
        const auto inRange = [](qint64 n, qint64 low) { return n >= low && n <= QWIDGETSIZE_MAX; };
        if (!inRange(left, -QWIDGETSIZE_MAX) || !inRange(top, -QWIDGETSIZE_MAX) || !inRange(width, 0)
            || !inRange(height, 0))
            Fail(place, QStringLiteral("\"geometry\" %1 is out of range (width and height from 0 to %2)")
                            .arg(text)
                            .arg(QWIDGETSIZE_MAX));
        // As a stream sets bounds: as they are, without the panel's resize rules.
        widget.setGeometry(static_cast<int>(left), static_cast<int>(top), static_cast<int>(width),
                           static_cast<int>(height));
    }

    static QJsonObject EntryObject(const QJsonValue& entry, const QString& place)
    {
        if (!entry.isObject())
            Fail(place, QStringLiteral("object expected but %1 found").arg(JsonTypeName(entry)));
        return entry.toObject();
    }

    static QString EntryName(const QJsonObject& json, const QString& place)
    {
        const QJsonValue name = json.value(KNameKey);
        if (name.isUndefined())
            Fail(place, QStringLiteral("\"name\" is missing"));
        if (!name.isString())
            Fail(place, QStringLiteral("\"name\" must be a string but is a %1").arg(JsonTypeName(name)));
        return name.toString();
    }

    static void CheckKeys(const QJsonObject& json, const QStringList& allowed, const QString& place)
    {
        for (auto it = json.begin(); it != json.end(); ++it)
            if (!allowed.contains(it.key()))
                Fail(place, QStringLiteral("unknown entry \"%1\"").arg(it.key()));
    }

    static QJsonArray RequiredList(const QJsonObject& json, const QString& key, const QString& place)
    {
        const QJsonValue value = json.value(key);
        if (value.isUndefined())
            Fail(place, QStringLiteral("\"%1\" is missing").arg(key));
        if (!value.isArray())
            Fail(place, QStringLiteral("\"%1\" must be a list but is a %2").arg(key, JsonTypeName(value)));
        return value.toArray();
    }

    QString FFile;
    TNameSet FNames;
};

}  // namespace

QString WorksheetFormatTag()
{
    return QStringLiteral("qxbase worksheet");
}

std::vector<TKSMSSink*> GetPagePanels(const TKSPanelTabPage& Page)
{
    std::vector<TKSMSSink*> panels;
    for (QObject* child : Page.children())
        if (auto* panel = qobject_cast<TKSMSSink*>(child))
            panels.push_back(panel);
    return panels;
}

std::vector<TKSMSSink*> GetAllPagePanels(const TKSPanelTabPage& Page)
{
    std::vector<TKSMSSink*> panels;
    CollectPanels(Page, panels);
    return panels;
}

QByteArray WriteWorksheet(const std::vector<TKSPanelTabPage*>& Pages)
{
    TNameSet names(QStringLiteral("in the worksheet"));
    QJsonArray pages;
    for (std::size_t i = 0; i < Pages.size(); ++i) {
        const TKSPanelTabPage* page = Pages[i];
        if (page == nullptr)
            Fail(QStringLiteral("page %1").arg(i + 1), QStringLiteral("no page given"));
        names.Add(page->objectName(), ComponentPlace(*page));
        QJsonObject json = WriteComponent(*page);
        const QString place = PagePlace({}, page->objectName());
        QJsonArray panels;
        for (const QObject* panel : HeldChildren(*page)) {
            names.Add(panel->objectName(), Join(place, ComponentPlace(*panel)));
            panels.append(WriteHeld(*panel, place));
        }
        json.insert(KPanelsKey, panels);
        pages.append(json);
    }
    QJsonObject root;
    root.insert(KFormatKey, WorksheetFormatTag());
    root.insert(KVersionKey, KWorksheetVersion);
    root.insert(KPagesKey, pages);
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

std::vector<std::unique_ptr<TKSPanelTabPage>> ReadWorksheet(const QByteArray& Data, const QString& FileName)
{
    return TWorksheetReader(FileName).Read(Data);
}

void SaveWorksheetFile(const QString& Path, const std::vector<TKSPanelTabPage*>& Pages)
{
    QByteArray data;
    try {
        data = WriteWorksheet(Pages);
    } catch (const EStreamError& e) {
        Fail(QStringLiteral("Cannot save %1").arg(Path), e.Message());
    }
    QSaveFile file(Path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        Fail(QStringLiteral("Cannot save %1").arg(Path), file.errorString());
}

std::vector<std::unique_ptr<TKSPanelTabPage>> LoadWorksheetFile(const QString& Path)
{
    QFile file(Path);
    if (!file.open(QIODevice::ReadOnly))
        Fail(QStringLiteral("Cannot read %1").arg(Path), file.errorString());
    return ReadWorksheet(file.readAll(), Path);
}

}  // namespace qx
