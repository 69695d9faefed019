#include "qxbase/panels/histo_toolbar.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QToolButton>

#include "qxbase/panels/panel_base.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

namespace {

struct ButtonDef {
    const char* Name;
    const char* Glyph;
    const ResourceText* Hint;  // nullptr: no hint
    bool Toggle;
};

constexpr ButtonDef Buttons[] = {
    {"BAxisSetup", "TB_AXIS", &res::_rsHintAxisSetup, false},
    {"BAutoscale", "TB_AUTOSCALE", &res::_rsHintAutoscale, true},
    {"BCaptureScale", "TB_CAPTURESCALE", &res::_rsHintCaptureScale, false},
    {"BDefault", "TB_DEFAULTSCALE", &res::_rsHintDefaultScale, false},
    {"BCursorPanel", "TB_CROSS", &res::_rsHintCursorPanel, true},
    {"BPrint", "TB_PRINT", &res::_rsHintPrint, false},
    {"BVisible", "TB_VISIBLE", &res::_rsHintChannelVisibilities, false},
    {"BHold", "TB_HOLD", &res::_rsHintHold, true},
    {"BBackward", "TB_BACKWARD", &res::_rsHintScrollBackward, false},
    {"BForward", "TB_FORWARD", nullptr, false},
};

}  // namespace

TKSHistoToolbar::TKSHistoToolbar(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 1, 2, 1);
    layout->setSpacing(1);
    for (const ButtonDef& def : Buttons) {
        auto* button = new QToolButton(this);
        button->setObjectName(QLatin1String(def.Name));
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        button->setCheckable(def.Toggle);
        if (def.Hint) button->setToolTip(def.Hint->Text());
        QImage glyph;
        if (TKSMSSink::GetBitmapFromResource(QLatin1String(def.Glyph), glyph)) {
            button->setIcon(QIcon(QPixmap::fromImage(glyph)));
            button->setIconSize(glyph.size());
        }
        layout->addWidget(button);
        FButtons << button;
    }
    layout->addStretch();
    BBackward()->hide();
    BForward()->hide();
}

TKSHistoToolbar::~TKSHistoToolbar() = default;

}  // namespace qx
