#include "qxbase/panels/property_value_list.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <algorithm>

#include "qxbase/control/control_types.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/color_panel.h"
#include "qxbase/panels/ctrl_client_prop_selector.h"
#include "qxbase/panels/smart_edit.h"

namespace qx {
namespace {

bool IsCommand(const Variant& Choices)
{
    return Choices.IsArray() && Choices.ArrayCount() == 2 &&
           Choices.ArrayElement(Choices.ArrayLowBound()).ToString() == QLatin1String("True") &&
           Choices.ArrayElement(Choices.ArrayLowBound() + 1).ToString() == QLatin1String("Unknown");
}

}  // namespace

struct TKSPropertyValueList::Private {
    struct Row {
        TQXPropertyHandle Handle = 0;
        TValueEditorKind Kind = vekSmartEdit;
        int EnumerationLow = 0;
        QPointer<QWidget> Editor;
    };

    TQXControlSourceRef Source;
    std::vector<Row> Rows;
    // The properties written, in the order of their first write.
    std::vector<TQXPropertyHandle> Written;
    // Every shown value as it was before the first write: one write may change others (a
    // scope's pre-trigger follows its buffer size).
    std::vector<std::pair<TQXPropertyHandle, Variant>> Former;
    QGridLayout* Grid = nullptr;
    bool Showing = false;

    Row* Find(TQXPropertyHandle Handle)
    {
        const auto row = std::find_if(Rows.begin(), Rows.end(), [&](const Row& r) { return r.Handle == Handle; });
        return row == Rows.end() ? nullptr : &*row;
    }
};

TKSPropertyValueList::TKSPropertyValueList(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>())
{
    d->Grid = new QGridLayout(this);
    d->Grid->setColumnStretch(1, 1);
}

TKSPropertyValueList::~TKSPropertyValueList() = default;

bool TKSPropertyValueList::IsShownProperty(const TQXPropertyItem& Item)
{
    return Item.FName != QLatin1String("ShowPropertypage") &&
           !(Item.FDataType == varQXEnumeration && IsCommand(Item.FValue));
}

void TKSPropertyValueList::SetSource(TQXControlSource* Source)
{
    d->Source = Source;
    d->Written.clear();
    d->Former.clear();
    BuildRows();
}

TQXControlSource* TKSPropertyValueList::GetSource() const
{
    return d->Source.Get();
}

std::vector<TQXPropertyHandle> TKSPropertyValueList::GetShownHandles() const
{
    std::vector<TQXPropertyHandle> handles;
    for (const Private::Row& row : d->Rows) handles.push_back(row.Handle);
    return handles;
}

QWidget* TKSPropertyValueList::GetEditor(TQXPropertyHandle Handle) const
{
    const Private::Row* row = d->Find(Handle);
    return row != nullptr ? row->Editor.data() : nullptr;
}

void TKSPropertyValueList::BuildRows()
{
    for (const Private::Row& row : d->Rows) delete row.Editor.data();
    qDeleteAll(findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly));
    d->Rows.clear();
    TQXControlSource* source = d->Source.Get();
    if (source == nullptr)
        return;
    Variant names;
    source->GetPropertyList(names);
    for (int i = 0; names.IsArray() && i < names.ArrayCount(); ++i) {
        TQXPropertyHandle handle = 0;
        if (!source->GetPropertyHandle(names.ArrayElement(i).ToString(), handle))
            continue;
        const TQXPropertyItem* item = source->GetPropertyItem(handle);
        if (item == nullptr || !IsShownProperty(*item))
            continue;
        Private::Row row;
        row.Handle = handle;
        row.Kind = ValueEditorKindOf(item->FDataType, item->FTypeInfo, item->FName);
        const int line = static_cast<int>(d->Rows.size());
        d->Grid->addWidget(new QLabel(item->FDescription, this), line, 0);
        switch (row.Kind) {
        case vekComboBox: {
            auto* combo = new QComboBox(this);
            const Variant& list = item->FValue;
            if (list.IsArray()) {
                row.EnumerationLow = list.ArrayLowBound();
                for (int c = list.ArrayLowBound(); c <= list.ArrayHighBound(); ++c)
                    combo->addItem(SmartValueText(list.ArrayElement(c)));
            }
            connect(combo, &QComboBox::activated, this, [this, handle] { EditorChanged(handle); });
            row.Editor = combo;
            break;
        }
        case vekColorPanel: {
            auto* panel = new THVKColorPanel(this);
            panel->setMinimumHeight(20);
            connect(panel, &THVKColorPanel::Clicked, this, [this, handle] { EditorChanged(handle); });
            row.Editor = panel;
            break;
        }
        case vekSmartEdit: {
            auto* edit = new THVKSmartEdit(this);
            edit->SetKind(SmartEditKindOf(item->FDataType));
            connect(edit, &QLineEdit::editingFinished, this, [this, handle] { EditorChanged(handle); });
            row.Editor = edit;
            break;
        }
        }
        d->Grid->addWidget(row.Editor, line, 1);
        d->Rows.push_back(row);
    }
    d->Grid->setRowStretch(static_cast<int>(d->Rows.size()), 1);
    RefreshValues();
}

void TKSPropertyValueList::RefreshValues()
{
    TQXControlSource* source = d->Source.Get();
    if (source == nullptr)
        return;
    d->Showing = true;
    for (const Private::Row& row : d->Rows) {
        Variant value;
        try {
            source->GetPropertyValue(row.Handle, value);
        } catch (const Exception&) {
            continue;
        }
        if (auto* combo = qobject_cast<QComboBox*>(row.Editor.data())) {
            int position = -1;
            if (value.VarType() == varOleStr)
                position = combo->findText(value.ToString());
            else if (!value.IsEmpty() && !value.IsNull())
                position = value.ToInteger() - row.EnumerationLow;
            combo->setCurrentIndex(position >= 0 && position < combo->count() ? position : -1);
        } else if (auto* panel = qobject_cast<THVKColorPanel*>(row.Editor.data())) {
            panel->SetColor(static_cast<TColor>(value.IsEmpty() || value.IsNull() ? 0 : value.ToInteger()));
        } else if (auto* edit = qobject_cast<THVKSmartEdit*>(row.Editor.data())) {
            edit->SetValue(value);
        }
    }
    d->Showing = false;
}

void TKSPropertyValueList::EditorChanged(TQXPropertyHandle Handle)
{
    Private::Row* row = d->Find(Handle);
    if (d->Showing || row == nullptr || row->Editor.isNull())
        return;
    Variant value;
    if (auto* combo = qobject_cast<QComboBox*>(row->Editor.data())) {
        if (combo->currentIndex() < 0)
            return;
        value = Variant(static_cast<std::int32_t>(row->EnumerationLow + combo->currentIndex()));
    } else if (auto* panel = qobject_cast<THVKColorPanel*>(row->Editor.data())) {
        TColor color = panel->GetColor();
        if (!HostServices().ChooseColor || !HostServices().ChooseColor(window(), color))
            return;
        value = Variant(static_cast<std::int32_t>(color));
    } else if (auto* edit = qobject_cast<THVKSmartEdit*>(row->Editor.data())) {
        if (!edit->isModified())
            return;
        // Writing may move the focus, which would end the edit again.
        edit->setModified(false);
        if (!edit->GetValue(value)) {
            HostServices().MessageBox(window(), QStringLiteral("'%1' is not a valid value").arg(edit->text()),
                                      QStringLiteral("Error"), 1);
            RefreshValues();
            return;
        }
    }
    WriteValue(Handle, value);
}

bool TKSPropertyValueList::WriteValue(TQXPropertyHandle Handle, const Variant& Value)
{
    TQXControlSource* source = d->Source.Get();
    if (source == nullptr || source->GetPropertyItem(Handle) == nullptr)
        return false;
    if (d->Written.empty())
        for (const Private::Row& row : d->Rows) {
            Variant former;
            try {
                source->GetPropertyValue(row.Handle, former);
            } catch (const Exception&) {
                continue;
            }
            d->Former.emplace_back(row.Handle, former);
        }
    bool written = false;
    try {
        if (std::find(d->Written.begin(), d->Written.end(), Handle) == d->Written.end())
            d->Written.push_back(Handle);
        written = source->SetPropertyValue(nullptr, Handle, Value);
    } catch (const Exception& e) {
        HostServices().MessageBox(window(), e.Message(), QStringLiteral("Error"), 1);
    }
    // The write may have destroyed the source, or this list with its dialog.
    if (d->Source.Get() != nullptr)
        RefreshValues();
    return written;
}

int TKSPropertyValueList::GetChangedCount() const
{
    return static_cast<int>(d->Written.size());
}

void TKSPropertyValueList::Revert()
{
    std::vector<TQXPropertyHandle> written;
    std::vector<std::pair<TQXPropertyHandle, Variant>> former;
    written.swap(d->Written);
    former.swap(d->Former);
    const auto formerOf = [&](TQXPropertyHandle Handle) -> const Variant* {
        const auto f = std::find_if(former.begin(), former.end(), [&](const auto& p) { return p.first == Handle; });
        return f == former.end() ? nullptr : &f->second;
    };
    const auto writeBack = [&](TQXPropertyHandle Handle, const Variant& Value) {
        TQXControlSource* source = d->Source.Get();
        if (source == nullptr)
            return false;
        try {
            source->SetPropertyValue(nullptr, Handle, Value);
        } catch (const Exception&) {
            // A value the source gave cannot be refused by it; if it is, the others still go back.
        }
        return true;
    };
    // The written ones latest first, then whatever they changed on the side and still differs.
    for (auto w = written.rbegin(); w != written.rend(); ++w)
        if (const Variant* value = formerOf(*w); value != nullptr && !writeBack(*w, *value))
            return;
    for (const auto& [handle, value] : former) {
        TQXControlSource* source = d->Source.Get();
        if (source == nullptr)
            return;
        Variant now;
        try {
            source->GetPropertyValue(handle, now);
        } catch (const Exception&) {
            continue;
        }
        if (!(now == value))
            writeBack(handle, value);
    }
    RefreshValues();
}

}  // namespace qx
