#include "qxbase/panels/panel_tab_page.h"

#include <QBuffer>
#include <QByteArray>
#include <QPaintEvent>
#include <QPainter>

#include "qxbase/framework/exception.h"
#include "qxbase/panels/design_grid.h"

namespace qx {

namespace {

QString PixmapToBase64(const QPixmap& pixmap)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    pixmap.save(&buffer, "PNG");
    return QString::fromLatin1(png.toBase64());
}

QPixmap PixmapFromBase64(const QString& text, const QString& place)
{
    QPixmap pixmap;
    if (text.isEmpty())
        return pixmap;
    const QByteArray::FromBase64Result bytes =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!bytes)
        throw EStreamError(QStringLiteral("%1: the text is not base64").arg(place));
    if (!pixmap.loadFromData(*bytes, "PNG"))
        throw EStreamError(QStringLiteral("%1: the data is not a PNG image").arg(place));
    return pixmap;
}

}  // namespace

TKSPanelTabPage::TKSPanelTabPage(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAutoFillBackground(false);
}

TKSPanelTabPage::~TKSPanelTabPage() = default;

void TKSPanelTabPage::SetCaption(const QString& Value) { FCaption = Value; }

void TKSPanelTabPage::SetGridXSize(int Value)
{
    FGridXSize = Value;
    update();
}

void TKSPanelTabPage::SetGridYSize(int Value)
{
    FGridYSize = Value;
    update();
}

void TKSPanelTabPage::SetDesignGridColor(TColor Value)
{
    FDesignGridColor = Value;
    update();
}

void TKSPanelTabPage::SetRuntimeColor(TColor Value)
{
    FRuntimeColor = Value;
    update();
}

void TKSPanelTabPage::SetDesignBKColor(TColor Value)
{
    FDesignBKColor = Value;
    update();
}

void TKSPanelTabPage::SetIsDesigning(bool Value)
{
    FIsDesigning = Value;
    update();
}

void TKSPanelTabPage::SetShowGrid(bool Value)
{
    FShowGrid = Value;
    update();
}

void TKSPanelTabPage::SetBackgroundPaintStyle(TBackgroundImagePaintStyle Value)
{
    if (Value > bipsTile)
        return;
    FBackgroundPaintStyle = Value;
    update();
}

void TKSPanelTabPage::DefineProperties(TFiler& Filer)
{
    Filer.DefineProperty(
        QStringLiteral("BackgroundImage"),
        [this](TReader& reader) {
            // Decode fully before storing, so a bad image leaves the old one.
            const QString place = reader.GetPlace();
            FBackgroundImage = PixmapFromBase64(reader.ReadString(), place);
        },
        [this](TWriter& writer) { writer.WriteString(PixmapToBase64(FBackgroundImage)); },
        !FBackgroundImage.isNull());
}

void TKSPanelTabPage::Paint(QPainter& Canvas, const QRect& Clip)
{
    if (!FIsDesigning) {
        Canvas.fillRect(Clip, ColorToQColor(FRuntimeColor));
        return;
    }
    Canvas.fillRect(Clip, ColorToQColor(FDesignBKColor));
    if (!FShowGrid)
        return;
    const std::vector<QLine> lines = DesignGridLines(Clip, FGridXSize, FGridYSize);
    if (lines.empty())
        return;
    Canvas.setPen(QPen(ColorToQColor(FDesignGridColor), 0));
    Canvas.drawLines(lines.data(), static_cast<int>(lines.size()));
}

void TKSPanelTabPage::PaintBackgroundImage(QPainter& Canvas)
{
    if (FIsDesigning || FBackgroundImage.isNull())
        return;
    const int imageWidth = FBackgroundImage.width();
    const int imageHeight = FBackgroundImage.height();
    switch (FBackgroundPaintStyle) {
    case bipsCenter:
        Canvas.drawPixmap((width() - imageWidth) / 2, (height() - imageHeight) / 2, FBackgroundImage);
        break;
    case bipsStretch:
        Canvas.drawPixmap(rect(), FBackgroundImage);
        break;
    case bipsTile:
        // Copies at every multiple of the image size from (0, 0), in one call: a tiny image
        // on a large page would otherwise mean millions of draws.
        Canvas.drawTiledPixmap(rect(), FBackgroundImage, QPoint(0, 0));
        break;
    }
}

void TKSPanelTabPage::paintEvent(QPaintEvent* event)
{
    QPainter canvas(this);
    Paint(canvas, event->rect());
    PaintBackgroundImage(canvas);
}

}  // namespace qx
