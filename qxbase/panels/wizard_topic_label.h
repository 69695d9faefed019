#pragma once

#include <QLabel>
#include <QString>

#include "qxbase/framework/export.h"

namespace qx {

// The heading above a group of controls in the library's dialogs and property pages: one line in
// the desktop's hot-track colour on a transparent background, the text repeated as tooltip so a
// clipped heading can still be read.
class QXBASE_EXPORT TWizardTopicDotLabel : public QLabel {
    Q_OBJECT

public:
    explicit TWizardTopicDotLabel(const QString& Text, QWidget* parent = nullptr);
};

}  // namespace qx
