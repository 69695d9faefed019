#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>
#include <cstdint>

#include "qxbase/framework/color.h"
#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/export.h"

class QPainter;

namespace qx {

// One page of a worksheet: the panels are its child widgets. In design mode it draws the design
// grid on the design background; outside it the run-time colour and the background image. It
// never erases its background on its own (Qt::WA_OpaquePaintEvent, no auto-filled background):
// every paint fills what it covers, so panels do not flicker.
class QXBASE_EXPORT TKSPanelTabPage : public QWidget, public TStreamable {
    Q_OBJECT
    // The tab text of the page.
    Q_PROPERTY(QString Caption READ GetCaption WRITE SetCaption)
    Q_PROPERTY(bool ShowGrid READ GetShowGrid WRITE SetShowGrid)
    Q_PROPERTY(qint32 RuntimeColor READ GetRuntimeColor WRITE SetRuntimeColor)
    Q_PROPERTY(bool EmbededVisible READ GetEmbededVisible WRITE SetEmbededVisible)
    Q_PROPERTY(qint32 SortOder READ GetSortOder WRITE SetSortOder)
    Q_PROPERTY(TBackgroundImagePaintStyle BackgroundPaintStyle READ GetBackgroundPaintStyle WRITE
                   SetBackgroundPaintStyle)

public:
    // Declared in the class so the meta-object knows it and the property streams by name; the
    // namespace-scope names below are the ones to use.
    enum TBackgroundImagePaintStyle : std::uint8_t { bipsCenter, bipsStretch, bipsTile };
    Q_ENUM(TBackgroundImagePaintStyle)

    explicit TKSPanelTabPage(QWidget* parent = nullptr);
    ~TKSPanelTabPage() override;

    const QString& GetCaption() const { return FCaption; }
    void SetCaption(const QString& Value);
    int GetGridXSize() const { return FGridXSize; }
    void SetGridXSize(int Value);
    int GetGridYSize() const { return FGridYSize; }
    void SetGridYSize(int Value);
    TColor GetDesignGridColor() const { return FDesignGridColor; }
    void SetDesignGridColor(TColor Value);
    TColor GetRuntimeColor() const { return FRuntimeColor; }
    void SetRuntimeColor(TColor Value);
    TColor GetDesignBKColor() const { return FDesignBKColor; }
    void SetDesignBKColor(TColor Value);
    bool GetIsDesigning() const { return FIsDesigning; }
    void SetIsDesigning(bool Value);
    bool GetShowGrid() const { return FShowGrid; }
    void SetShowGrid(bool Value);
    const QString& GetForced() const { return FForced; }
    void SetForced(const QString& Value) { FForced = Value; }
    const QPixmap& GetBackgroundImage() const { return FBackgroundImage; }
    void SetBackgroundImage(const QPixmap& Value) { FBackgroundImage = Value; }
    TBackgroundImagePaintStyle GetBackgroundPaintStyle() const { return FBackgroundPaintStyle; }
    // Ignores a value that is none of the three styles.
    void SetBackgroundPaintStyle(TBackgroundImagePaintStyle Value);
    bool GetEmbededVisible() const { return FEmbededVisible; }
    void SetEmbededVisible(bool Value) { FEmbededVisible = Value; }
    std::int32_t GetSortOder() const { return FSortOder; }
    void SetSortOder(std::int32_t Value) { FSortOder = Value; }

    // The background image travels as a defined property "BackgroundImage": its PNG bytes as
    // one base64 string, written only when there is an image. Reading a text that is not
    // base64 or not an image raises EStreamError.
    void DefineProperties(TFiler& Filer) override;

protected:
    // Draws the design grid or the run-time fill into the clip rectangle.
    virtual void Paint(QPainter& Canvas, const QRect& Clip);
    // Outside design mode: the background image, when there is one, in the chosen style.
    void PaintBackgroundImage(QPainter& Canvas);
    void paintEvent(QPaintEvent* event) override;

private:
    QString FCaption;
    int FGridXSize = 10;
    int FGridYSize = 10;
    TColor FDesignGridColor = clBtnHighlight;
    TColor FRuntimeColor = clWindow;
    TColor FDesignBKColor = clBtnFace;
    bool FIsDesigning = true;
    bool FShowGrid = true;
    QString FForced;
    QPixmap FBackgroundImage;
    TBackgroundImagePaintStyle FBackgroundPaintStyle = bipsCenter;
    bool FEmbededVisible = false;
    std::int32_t FSortOder = 0;
};

using TBackgroundImagePaintStyle = TKSPanelTabPage::TBackgroundImagePaintStyle;
inline constexpr TBackgroundImagePaintStyle bipsCenter = TKSPanelTabPage::bipsCenter;
inline constexpr TBackgroundImagePaintStyle bipsStretch = TKSPanelTabPage::bipsStretch;
inline constexpr TBackgroundImagePaintStyle bipsTile = TKSPanelTabPage::bipsTile;

}  // namespace qx
