#pragma once

// CVXKLineCard ("KLine"): the candlestick chart of the shown security from the feed's minute
// candles, at a period of 1, 5 or 15 minutes picked in the card's own tool strip, with a volume
// panel, a round price axis, a time axis, the last price line and MA5/MA10 (on unless toggled
// off). Hovering the plot shows a crosshair with the hovered candle's time, OHLC and volume.
// The period and the MA switch are the card's saved state (keys "Period" int, "ShowMA" bool).

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/KLineModel.h"

#include "UIFrame/CardTypes.h"

#include <memory>

class QPainter;

namespace vx_ws {

class CVXKLineCard : public TplVXWorkspaceCard<CVXKLineCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = quote_card_type::KLine;
    static constexpr const char* kKeyPeriod = "Period";
    static constexpr const char* kKeyShowMA = "ShowMA";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXKLineCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXKLineCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    // A missing or unsupported value keeps the current one (an unsupported one is logged).
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    int Period() const;
    // Minutes, one of kline::kPeriods; anything else logs and changes nothing.
    void SetPeriod(int periodMinutes);
    bool IsMAShown() const;
    void SetMAShown(bool shown);

    // What the chart draws: the shown security's candles at the current period, oldest first.
    const std::vector<vx_md::Candle>& Candles() const;
    kline::CandleRange VisibleRange() const;
    // The candle under the mouse (index into Candles()), -1 when the mouse is off the plot.
    int HoveredCandleIndex() const;
    // The crosshair's text lines for the hovered candle; empty when none is hovered.
    QStringList CrosshairLines() const;

    // Geometry, in card coordinates, for input: the tool strip's buttons, the price plot and the
    // centre of a candle (-1 when the candle is not on screen).
    QRect PeriodButtonRect(int periodMinutes) const;
    QRect MAButtonRect() const;
    QRect PricePlotRect() const;
    int CandleCenterX(int index) const;

protected:
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnShownStockChanged(unsigned long stockID) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct PaintKit;
    struct PriceScale;
    void PaintToolStrip(QPainter& p, const PaintKit& kit);
    PriceScale VisibleScale() const;
    void PaintPriceAxis(QPainter& p, const PaintKit& kit, const PriceScale& scale);
    void PaintTimeAxis(QPainter& p, const PaintKit& kit);
    void PaintCandlesAndVolume(QPainter& p, const PaintKit& kit, const PriceScale& scale);
    void PaintMovingAverages(QPainter& p, const PaintKit& kit, const PriceScale& scale);
    void PaintLastPrice(QPainter& p, const PriceScale& scale);
    void PaintCrosshair(QPainter& p, const PaintKit& kit, const PriceScale& scale);
    void PaintCrosshairInfo(QPainter& p, const PaintKit& kit, int crosshairX);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ws
