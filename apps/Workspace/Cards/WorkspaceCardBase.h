#pragma once

// CVXWorkspaceCardBase: the base of the workspace program's demo cards. It keeps the card's
// securities moving in the simulated feed (the shown security plus any extra ones, each
// subscribed once while the card lives), turns bus message 30203 into OnMarketDataChanged() for
// the securities it watches, repaints on theme changes and offers the colours and number
// formats every card shares. The card paints itself (no scroll container).
//
// The shown security is the card's stock id, or kDefaultStockID while it has none. An id the
// feed does not know is kept as the stock id but not subscribed (the card shows an empty state).

#include "UIFrame/CardObjBase.h"

#include <QColor>
#include <QString>

#include <vector>

namespace vx_ws {

class CVXWorkspaceCardBase : public CVXCardObjBase
{
    Q_OBJECT
public:
    explicit CVXWorkspaceCardBase(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXWorkspaceCardBase() override;

    unsigned long ShownStockID() const;
    // The ids this card holds subscriptions for, shown security first.
    std::vector<unsigned long> SubscribedIDs() const;

    // What a card does when the user picks a security in it: the event is raised from the card,
    // so the box, its linkage group and this card all follow.
    void RaiseStockChange(unsigned long stockID);

    void OnStockDataUpdate(const std::set<unsigned long>& stockIDs,
                           const std::set<unsigned long>& dataFields) override;

    // Shared look.
    static QColor ThemeColor(const char* key);
    // Rise, fall or flat colour of a change.
    static QColor ChangeColor(double change);
    // A price with the decimals its tick size needs (2 for 0.01, 3 for 0.001, ...).
    static QString FormatPrice(double price, double tickSize);
    // "+1.23%" / "-0.50%" / "0.00%".
    static QString FormatPercent(double ratio);
    // 1234 -> "1,234", 1234567 -> "1.23M", 1234567890 -> "1.23B".
    static QString FormatVolume(long long volume);
    // Seconds since midnight -> "09:30:05".
    static QString FormatTime(int seconds);

protected:
    // Securities kept moving besides the shown one (watch list rows, option chain); replaces the
    // earlier extra set.
    void SetExtraSubscriptions(const std::vector<unsigned long>& ids);
    // A watched security changed in the feed. Default: update().
    virtual void OnMarketDataChanged(const std::set<unsigned long>& stockIDs);
    // The shown security changed (also the first time it is known). Default: update().
    virtual void OnShownStockChanged(unsigned long stockID);

private:
    void OnCardStockIDChanged(unsigned long newStockID, unsigned long oldStockID);
    void Resubscribe(unsigned long shown);
    bool SubscribeOne(unsigned long id);

    unsigned long m_ulSubscribedShown = 0;
    std::vector<unsigned long> m_extraIDs;
};

} // namespace vx_ws
