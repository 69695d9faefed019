#pragma once

#include <QFrame>

#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"

namespace qx {

// A swatch that shows one colour and reports a left click; choosing the colour is left to
// whoever listens.
class QXBASE_EXPORT THVKColorPanel : public QFrame {
    Q_OBJECT

public:
    explicit THVKColorPanel(QWidget* parent = nullptr);

    TColor GetColor() const { return FColor; }
    void SetColor(TColor Value);

signals:
    void Clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    TColor FColor = clBlack;
};

}  // namespace qx
