#pragma once

// CVXAccInfoCard ("SecuritiesAccInfo"): the summary of one account: an account selector, total
// assets in large type, cash, market value, buying power, frozen cash, today's realised and the
// unrealised P&L in rise / fall colours, and a bar splitting the assets into cash and positions.
// It follows the account's changes and the feed for the account's positions.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccountCardBase.h"

#include "UIFrame/CardBaseStyle.h"

#include <QStringList>

namespace vx_ws {

class CVXAccInfoCard : public TplVXWorkspaceCard<CVXAccInfoCard, CVXAccountCardBase>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SecuritiesAccInfo";
    static CVXCardBaseStyle StaticCardStyle();

    enum class EnField : int
    {
        TotalAssets,
        Cash,
        MarketValue,
        BuyingPower,
        FrozenCash,
        RealizedPnL,
        UnrealizedPnL,
        Count
    };

    explicit CVXAccInfoCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXAccInfoCard() override;

    // What the card shows: the summary it last read, each field's text ("--" without an
    // account) and the bar's cash share.
    const vx_trade::AccountSummary& Summary() const { return m_summary; }
    bool HasAccount() const { return m_bHasAccount; }
    QString FieldText(EnField field) const;
    double CashShareShown() const { return m_dCashShare; }

protected:
    void OnAccountDataChanged() override;
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Reload(bool resubscribe);
    void PaintBar(QPainter& painter, const QRect& area);
    void PaintAccountKind(QPainter& painter, const QFont& small);
    int PaintTotalAssets(QPainter& painter, const QFont& small, int top);
    void PaintFieldGrid(QPainter& painter, const QFont& small, int y, int barHeight);

    vx_trade::AccountSummary m_summary;
    bool m_bHasAccount = false;
    bool m_bMargin = false;
    QString m_currency;
    double m_dCashShare = 0.0;
};

} // namespace vx_ws
