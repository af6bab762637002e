// The card-type catalogue.

#include "UIFrame/CardTypes.h"

#include <QSet>

#include <gtest/gtest.h>

TEST(CardTypes, GroupsHoldTheirCountsWithoutDuplicates)
{
    EXPECT_EQ(card_types::QuoteCardTypes().size(), 93);
    EXPECT_EQ(card_types::TradeCardTypes().size(), 26);
    EXPECT_EQ(card_types::PlatformCardTypes().size(), 4);

    const QStringList all = card_types::AllCardTypes();
    EXPECT_EQ(all.size(), 123);
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), 123);
    for (const QString& type : all) {
        EXPECT_FALSE(type.isEmpty());
        for (QChar c : type)
            EXPECT_TRUE(c.unicode() < 128 && (c.isLetterOrNumber() || c == QLatin1Char('_')))
                << type.toStdString();
    }
}

TEST(CardTypes, CatalogueOrderAndSpellings)
{
    const QStringList& quote = card_types::QuoteCardTypes();
    EXPECT_EQ(quote.first(), QStringLiteral("StockHeader"));
    EXPECT_EQ(quote.at(3), QStringLiteral("KLine"));
    EXPECT_EQ(quote.at(7), QStringLiteral("OrderBook"));
    EXPECT_EQ(quote.at(20), QStringLiteral("RelativeETFHoding"));
    EXPECT_EQ(quote.at(38), QStringLiteral("OptionChainsPanel"));
    EXPECT_EQ(quote.last(), QStringLiteral("CalendarFuture"));

    const QStringList& trade = card_types::TradeCardTypes();
    EXPECT_EQ(trade.first(), QStringLiteral("TradePlaceOrderSecuritiesPanel"));
    EXPECT_EQ(trade.at(6), QStringLiteral("SecuritiesTradePosition"));
    EXPECT_EQ(trade.last(), QStringLiteral("TradeRiskSummaryCombinationPanelFutures"));

    EXPECT_EQ(card_types::PlatformCardTypes(),
              (QStringList{QStringLiteral("Web"), QStringLiteral("Web_JP"), QStringLiteral("Web_Bloomberg"),
                           QStringLiteral("Web_Fox")}));

    EXPECT_STREQ(quote_card_type::ConstituentExchangeRates, "ConstituentExchangeRates");
    EXPECT_STREQ(trade_card_type::ROAPINAccountPanel, "ROAPINAccountPanel");
    EXPECT_STREQ(platform_card_type::Web_Bloomberg, "Web_Bloomberg");
    EXPECT_TRUE(card_types::IsKnownCardType(QStringLiteral("Shikiho")));
    EXPECT_FALSE(card_types::IsKnownCardType(QStringLiteral("shikiho")));
    EXPECT_FALSE(card_types::IsKnownCardType(QString()));
}

TEST(CardTypes, PropertyAndContextKeys)
{
    EXPECT_STREQ(card_property_key::CanShowStockID, "CanShowStockID");
    EXPECT_STREQ(card_property_key::RecentStockResetIndex, "RecentStockResetIndex");
    EXPECT_STREQ(card_property_key::WatchlistPageMidTabType, "WatchlistPageMidTabType");
    EXPECT_STREQ(card_property_key::KlinePeriodID, "KlinePeriodID");
    EXPECT_STREQ(trade_context_key::TradeRestoreKey, "TradeRestoreKey");
    EXPECT_STREQ(trade_context_key::TradeOrdersHotKeyInfoQByteArray, "TradeOrdersHotKeyInfoQByteArray");
}
