#pragma once

#include <QString>
#include <QWidget>

#include "qxbase/framework/variant.h"
#include "qxbase/panels/source_control_client.h"

class QMouseEvent;

// The demo's binding clients: panels that set properties of other panels. Their bindings are
// edited on the binding property page ("Properties" in the panel menu or a double click, in
// design mode) and stored in the worksheet with the panel.
namespace qxsheet {

// What the two clients share: which properties they take, the property page, and writing one
// value of every binding.
class TDemoClientPanel : public qx::TKSSourceControlClient {
    Q_OBJECT

public:
    explicit TDemoClientPanel(QWidget* parent = nullptr);

    // Any property of another panel, except "ShowPropertypage": a switch that opens a page
    // modally is not what these panels are for.
    bool CanClientHandle(qx::TKSControlSourcePropListItem* Item, qx::TQXPropertyHandle Handle,
                         const QString& Name) override;
    bool CanClientAdd(qx::TKSControlSourcePropListItem* Item, qx::TQXPropertyHandle Handle,
                      const QString& Name) override;
    // Repaints, for the veil.
    void SetPanelEnable(bool Value) override;
    // The caption is the panel's description on the bus too.
    void SetCaption(const QString& Value) override;

    // Writes the active (or passive) value of every resolved binding to its source, in binding
    // order; this panel is the sender. A write that raises is reported as a warning-level event
    // of this panel and the others still go out. Returns the number of writes the sources took.
    int WriteBindings(bool Active);

protected:
    // The content area with the caption drawn in its top part; returns what is left below it.
    QRect PaintFace(QPainter& Canvas);
};

// A two-state switch. A click outside design mode toggles it and writes the active value of
// every binding when it goes on, the passive value when it goes off. Its state follows the first
// binding: the switch shows "on" while that property holds the binding's active value and "off"
// while it holds the passive one, whoever wrote it.
class TDemoSwitchPanel : public TDemoClientPanel {
    Q_OBJECT

public:
    explicit TDemoSwitchPanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    bool GetOn() const { return FOn; }
    // What a click does: false, and nothing changed, while the panel is disabled.
    bool Toggle();
    void LoadFinished() override;
    // The page may have put another binding first.
    void CallSetup() override;
    void ShowPropertyPage() override;

protected:
    void Paint(QPainter& Canvas) override;
    void mousePressEvent(QMouseEvent* event) override;
    void DoOnEventlinkValueUpdated(qx::TQXEventLink* Sender, std::uint32_t Handle) override;

private:
    void FollowFirstBinding();

    bool FOn = false;
};

// A push button. A press outside design mode writes the active value of every binding.
class TDemoButtonPanel : public TDemoClientPanel {
    Q_OBJECT

public:
    explicit TDemoButtonPanel(QWidget* parent = nullptr);
    static QString GetDescription(const QMetaObject& Class);

    bool GetDown() const { return FDown; }
    // What a press does: false, and nothing written, while the panel is disabled.
    bool Press();

protected:
    void Paint(QPainter& Canvas) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool FDown = false;
};

// Whether two binding values are the same: equal variants, or numbers of equal value whatever
// their type codes (a stored 1 and a read 1.0).
bool SameBindingValue(const qx::Variant& A, const qx::Variant& B);

}  // namespace qxsheet
