#include "apps/Workspace/Cards/WorkspaceCardBase.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/CardEvents.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace vx_ws {

CVXWorkspaceCardBase::CVXWorkspaceCardBase(EnVXCardPos pos, QWidget* parent)
    : CVXCardObjBase(pos, parent)
{
    SetContentEnableScroll(false);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(this, &CVXCardObjBase::CardStockIDChanged, this, &CVXWorkspaceCardBase::OnCardStockIDChanged);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            [this](vx_ui_res::Theme) { update(); });
    Resubscribe(kDefaultStockID);
}

CVXWorkspaceCardBase::~CVXWorkspaceCardBase()
{
    if (vx_md::CVXSimMarketData* md = MarketData()) {
        if (m_ulSubscribedShown != 0)
            md->Unsubscribe(m_ulSubscribedShown);
        for (unsigned long id : m_extraIDs)
            md->Unsubscribe(id);
    }
}

unsigned long CVXWorkspaceCardBase::ShownStockID() const
{
    const unsigned long long id = GetStockID();
    return id != 0 ? static_cast<unsigned long>(id) : kDefaultStockID;
}

std::vector<unsigned long> CVXWorkspaceCardBase::SubscribedIDs() const
{
    std::vector<unsigned long> ids;
    if (m_ulSubscribedShown != 0)
        ids.push_back(m_ulSubscribedShown);
    ids.insert(ids.end(), m_extraIDs.begin(), m_extraIDs.end());
    return ids;
}

void CVXWorkspaceCardBase::RaiseStockChange(unsigned long stockID)
{
    CardEventStockIDChanged event(stockID);
    core::ui_event::DispatchCardEvent(this, &event, true);
}

void CVXWorkspaceCardBase::OnStockDataUpdate(const std::set<unsigned long>& stockIDs,
                                             const std::set<unsigned long>& /*dataFields*/)
{
    // Unlike the base card, a demo card does not reload through a stock id round trip: it only
    // repaints what it watches.
    const bool watched =
        (m_ulSubscribedShown != 0 && stockIDs.count(m_ulSubscribedShown) != 0)
        || std::any_of(m_extraIDs.begin(), m_extraIDs.end(),
                       [&](unsigned long id) { return stockIDs.count(id) != 0; });
    if (watched)
        OnMarketDataChanged(stockIDs);
}

void CVXWorkspaceCardBase::SetExtraSubscriptions(const std::vector<unsigned long>& ids)
{
    vx_md::CVXSimMarketData* md = MarketData();
    std::vector<unsigned long> kept;
    for (unsigned long id : ids) {
        if (std::find(kept.begin(), kept.end(), id) != kept.end())
            continue;
        if (md && !md->Contains(id))
            continue;
        kept.push_back(id);
    }
    if (md) {
        for (unsigned long id : kept)
            md->Subscribe(id);
        for (unsigned long id : m_extraIDs)
            md->Unsubscribe(id);
    }
    m_extraIDs = std::move(kept);
}

void CVXWorkspaceCardBase::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/) { update(); }

void CVXWorkspaceCardBase::OnShownStockChanged(unsigned long /*stockID*/) { update(); }

void CVXWorkspaceCardBase::OnCardStockIDChanged(unsigned long newStockID, unsigned long /*oldStockID*/)
{
    const unsigned long shown = newStockID != 0 ? newStockID : kDefaultStockID;
    const unsigned long before = m_ulSubscribedShown;
    Resubscribe(shown);
    if (shown != before)
        OnShownStockChanged(shown);
}

void CVXWorkspaceCardBase::Resubscribe(unsigned long shown)
{
    if (shown == m_ulSubscribedShown)
        return;
    vx_md::CVXSimMarketData* md = MarketData();
    if (!md)
        return;
    const unsigned long old = m_ulSubscribedShown;
    m_ulSubscribedShown = SubscribeOne(shown) ? shown : 0;
    if (old != 0)
        md->Unsubscribe(old);
}

bool CVXWorkspaceCardBase::SubscribeOne(unsigned long id)
{
    vx_md::CVXSimMarketData* md = MarketData();
    return md && md->Contains(id) && md->Subscribe(id);
}

QColor CVXWorkspaceCardBase::ThemeColor(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}

QColor CVXWorkspaceCardBase::ChangeColor(double change)
{
    if (change > 0)
        return ThemeColor("ct_rise");
    if (change < 0)
        return ThemeColor("ct_fall");
    return ThemeColor("ct_flat");
}

QString CVXWorkspaceCardBase::FormatPrice(double price, double tickSize)
{
    int decimals = 0;
    double step = tickSize > 0 ? tickSize : 0.01;
    while (decimals < 6 && std::fabs(step - std::round(step)) > 1e-9) {
        step *= 10;
        ++decimals;
    }
    return QString::number(price, 'f', decimals);
}

QString CVXWorkspaceCardBase::FormatPercent(double ratio)
{
    const double percent = ratio * 100.0;
    const QString text = QString::number(std::fabs(percent), 'f', 2) + QLatin1Char('%');
    if (percent >= 0.005)
        return QLatin1Char('+') + text;
    if (percent <= -0.005)
        return QLatin1Char('-') + text;
    return QStringLiteral("0.00%");
}

QString CVXWorkspaceCardBase::FormatVolume(long long volume)
{
    const double magnitude = std::fabs(static_cast<double>(volume));
    if (magnitude >= 1e9)
        return QString::number(volume / 1e9, 'f', 2) + QLatin1Char('B');
    if (magnitude >= 1e6)
        return QString::number(volume / 1e6, 'f', 2) + QLatin1Char('M');
    QLocale locale(QLocale::English);
    return locale.toString(volume);
}

QString CVXWorkspaceCardBase::FormatTime(int seconds)
{
    const int s = std::max(0, seconds);
    return QStringLiteral("%1:%2:%3")
        .arg(s / 3600, 2, 10, QLatin1Char('0'))
        .arg((s / 60) % 60, 2, 10, QLatin1Char('0'))
        .arg(s % 60, 2, 10, QLatin1Char('0'));
}

} // namespace vx_ws
