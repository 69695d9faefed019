#include "qxbase/panels/panel_registry.h"

#include <memory>
#include <utility>

#include "qxbase/panels/panel_tab_page.h"

namespace qx {

namespace {

struct TRegistries {
    int Users = 0;
    bool PageRegistered = false;
    std::unique_ptr<QStringList> Panels;
    std::unique_ptr<QStringList> Sources;
    // The classes the registries added to the streaming registry, removed again at the end.
    QStringList Streamed;
};

TRegistries& Registries()
{
    static TRegistries registries;
    return registries;
}

QStringList& Existing(const std::unique_ptr<QStringList>& list)
{
    if (!list)
        throw EPanelRegistryError(QStringLiteral("The panel registries do not exist"));
    return *list;
}

void RegisterInto(const std::unique_ptr<QStringList>& list, const QString& className,
                  TStreamClassDescriptor descriptor)
{
    QStringList& names = Existing(list);
    if (RegisterStreamClass(className, std::move(descriptor)))
        Registries().Streamed.append(className);
    names.append(className);
}

// Runs the unit's start when the library is loaded and its end when it is unloaded.
struct TUnitLifetime {
    TUnitLifetime() { QxbasePanelsInitialize(); }
    ~TUnitLifetime() { QxbasePanelsFinalize(); }
    TUnitLifetime(const TUnitLifetime&) = delete;
    TUnitLifetime& operator=(const TUnitLifetime&) = delete;
};

const TUnitLifetime GUnitLifetime;

}  // namespace

void QxbasePanelsInitialize()
{
    TRegistries& registries = Registries();
    if (registries.Users++ > 0)
        return;
    registries.Panels = std::make_unique<QStringList>();
    registries.Sources = std::make_unique<QStringList>();
    // A page class registered by someone else stays theirs, also at the end.
    registries.PageRegistered =
        FindStreamClass(StreamClassName(TKSPanelTabPage::staticMetaObject)) == nullptr;
    if (registries.PageRegistered)
        RegisterStreamClass<TKSPanelTabPage>();
}

void QxbasePanelsFinalize()
{
    TRegistries& registries = Registries();
    if (registries.Users == 0 || --registries.Users > 0)
        return;
    if (registries.PageRegistered)
        UnregisterStreamClass(StreamClassName(TKSPanelTabPage::staticMetaObject));
    registries.PageRegistered = false;
    // So that a new start meets the streaming registry as the first one did, and the host's
    // classes register and list again.
    for (const QString& className : std::as_const(registries.Streamed))
        UnregisterStreamClass(className);
    registries.Streamed.clear();
    registries.Panels.reset();
    registries.Sources.reset();
}

QStringList& ClassNames() { return Existing(Registries().Panels); }

QStringList& SourceClassNames() { return Existing(Registries().Sources); }

void RegisterKSPanelClass(const QString& ClassName, TStreamClassDescriptor Descriptor)
{
    RegisterInto(Registries().Panels, ClassName, std::move(Descriptor));
}

void RegisterKSSourceClass(const QString& ClassName, TStreamClassDescriptor Descriptor)
{
    RegisterInto(Registries().Sources, ClassName, std::move(Descriptor));
}

Variant StringlistToOleVariant(const QStringList& Strings)
{
    if (Strings.isEmpty())
        return Variant(std::int32_t{0});
    Variant result = Variant::CreateArray(0, static_cast<int>(Strings.size()) - 1, varOleStr);
    for (int i = 0; i < Strings.size(); ++i)
        result.SetArrayElement(i, Strings[i]);
    return result;
}

void OleVariantToStringList(const Variant& Value, QStringList& Strings)
{
    Strings.clear();
    if (!Value.IsArray())
        return;
    QStringList lines;
    for (int i = Value.ArrayLowBound(); i <= Value.ArrayHighBound(); ++i)
        lines.append(Value.ArrayElement(i).ToString());
    Strings = std::move(lines);
}

}  // namespace qx
