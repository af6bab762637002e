#include "apps/Workspace/QuoteCards/StockHeaderModel.h"

#include "apps/Workspace/Cards/WorkspaceCardBase.h"

#include "Platform/Core/Langx.h"

#include <cmath>

namespace vx_ws {

namespace {

const QString kEntrySeparator = QStringLiteral("  ");

QString SignedPrice(double change, double tickSize)
{
    const QString text = CVXWorkspaceCardBase::FormatPrice(std::fabs(change), tickSize);
    // Below half a tick the change is zero on the grid: no sign.
    if (change > tickSize / 2)
        return QLatin1Char('+') + text;
    if (change < -tickSize / 2)
        return QLatin1Char('-') + text;
    return CVXWorkspaceCardBase::FormatPrice(0.0, tickSize);
}

StockHeaderStat PriceStat(const QString& label, double price, double prevClose, double tickSize, bool traded)
{
    StockHeaderStat stat;
    stat.label = label;
    if (!traded) {
        stat.value = QStringLiteral("--");
        return stat;
    }
    stat.value = CVXWorkspaceCardBase::FormatPrice(price, tickSize);
    stat.direction = price - prevClose;
    stat.neutral = false;
    return stat;
}

StockHeaderStat PlainStat(const QString& label, const QString& value)
{
    StockHeaderStat stat;
    stat.label = label;
    stat.value = value;
    return stat;
}

} // namespace

StockHeaderView BuildStockHeaderView(const vx_md::SecurityInfo& info, const vx_md::Quote& quote, bool wide)
{
    StockHeaderView view;
    view.code = QString::fromStdString(info.code);
    view.name = QString::fromStdString(info.name);
    view.market = QString::fromStdString(info.market);
    const double tick = info.tickSize;
    const double prevClose = quote.prevClose;
    const double change = quote.last - prevClose;
    view.last = CVXWorkspaceCardBase::FormatPrice(quote.last, tick);
    view.change = SignedPrice(change, tick);
    view.changePercent = CVXWorkspaceCardBase::FormatPercent(prevClose > 0 ? change / prevClose : 0.0);
    view.direction = std::fabs(change) < tick / 2 ? 0.0 : change;

    const bool traded = quote.day.tradeCount > 0;
    const StockHeaderStat open =
        PriceStat(core::langx::tr(970102, "开"), quote.day.open, prevClose, tick, traded);
    const StockHeaderStat high =
        PriceStat(core::langx::tr(970103, "高"), quote.day.high, prevClose, tick, traded);
    const StockHeaderStat low =
        PriceStat(core::langx::tr(970104, "低"), quote.day.low, prevClose, tick, traded);
    const StockHeaderStat prev =
        PlainStat(core::langx::tr(970105, "昨收"), CVXWorkspaceCardBase::FormatPrice(prevClose, tick));
    const StockHeaderStat volume =
        PlainStat(core::langx::tr(970106, "量"), CVXWorkspaceCardBase::FormatVolume(quote.day.volume));
    const StockHeaderStat turnover =
        PlainStat(core::langx::tr(970107, "额"),
                  CVXWorkspaceCardBase::FormatVolume(static_cast<long long>(quote.day.turnover)));
    const StockHeaderStat trades =
        PlainStat(core::langx::tr(970108, "笔数"), CVXWorkspaceCardBase::FormatVolume(quote.day.tradeCount));
    // The day's range against the previous close.
    const StockHeaderStat amplitude = PlainStat(
        core::langx::tr(970127, "振幅"),
        traded && prevClose > 0
            ? QString::number((quote.day.high - quote.day.low) / prevClose * 100.0, 'f', 2) + QLatin1Char('%')
            : QStringLiteral("--"));
    view.time = traded ? CVXWorkspaceCardBase::FormatTime(quote.time) : QStringLiteral("--");
    if (wide)
        view.stats = {open, high, low, prev, volume, turnover, trades, amplitude};
    else
        view.stats = {high, low, volume, turnover};
    return view;
}

unsigned long FindSecurityByInput(const std::vector<vx_md::SecurityInfo>& universe, const QString& text)
{
    QString typed = text.trimmed();
    if (typed.isEmpty())
        return 0;
    // A completion entry: the code is what precedes the separator.
    const int separator = typed.indexOf(kEntrySeparator);
    if (separator > 0)
        typed = typed.left(separator);
    for (const vx_md::SecurityInfo& info : universe) {
        if (QString::fromStdString(info.code).compare(typed, Qt::CaseInsensitive) == 0)
            return info.id;
    }
    for (const vx_md::SecurityInfo& info : universe) {
        if (QString::fromStdString(info.name) == typed)
            return info.id;
    }
    return 0;
}

QStringList CompletionEntries(const std::vector<vx_md::SecurityInfo>& universe)
{
    QStringList entries;
    entries.reserve(static_cast<int>(universe.size()));
    for (const vx_md::SecurityInfo& info : universe)
        entries.push_back(QString::fromStdString(info.code) + kEntrySeparator +
                          QString::fromStdString(info.name));
    return entries;
}

} // namespace vx_ws
