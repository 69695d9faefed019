#include "qxbase/panels/wizard_topic_label.h"

#include <QFont>
#include <QPalette>

#include "qxbase/framework/color.h"

namespace qx {

namespace {

// The desktop's hot-track colour (system colour 26).
constexpr TColor clHotLight = clSystemColor | 26;

}  // namespace

TWizardTopicDotLabel::TWizardTopicDotLabel(const QString& Text, QWidget* parent) : QLabel(Text, parent)
{
    setToolTip(Text);
    QFont topicFont = font();
    topicFont.setPixelSize(13);
    setFont(topicFont);
    QPalette topicPalette = palette();
    topicPalette.setColor(QPalette::WindowText, ColorToQColor(clHotLight));
    setPalette(topicPalette);
}

}  // namespace qx
