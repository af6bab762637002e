#pragma once

// Shared by the book-card tests: a holder widget at which card events stop (as a box or a page
// would) and which records the requests and linkage events that reach it, and a fixture with
// the real seeded feed installed.

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/CardPos.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>

#include <vector>

namespace bookcards_test {

class CEventHolder : public QWidget, public VUIEventHandler, public IVXUIEventContainer
{
public:
    CEventHolder()
    {
        RegisterUIEventHandler<CardEventPostionsOpenPlaceOrder>(this, &CEventHolder::OnPlaceOrder);
        RegisterUIEventHandler<CardEventOptionIndexChanged>(this, &CEventHolder::OnOptionIndex);
        RegisterUIEventHandler<CardEventComboOptionChanged>(this, &CEventHolder::OnCombo);
    }
    EnVXUIEventContainerKind ContainerKind() const override { return EnVXUIEventContainerKind::SplitterPage; }

    void OnPlaceOrder(const CardEventPostionsOpenPlaceOrder* event) { orders.push_back(event->request); }
    void OnOptionIndex(const CardEventOptionIndexChanged* event)
    {
        optionIndexes.push_back(event->optionIndexInfo);
    }
    void OnCombo(const CardEventComboOptionChanged* event) { combos.push_back(event->comboOptionInfo); }

    std::vector<VXPlaceOrderRequest> orders;
    std::vector<CVXVariantMapTree> optionIndexes;
    std::vector<CVXVariantMapTree> combos;
};

class BookCardsFixture : public ::testing::Test
{
protected:
    void SetUp() override { vx_ws::SetMarketData(&feed); }
    void TearDown() override
    {
        delete holder;
        holder = nullptr;
        vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
        vx_ws::SetMarketData(nullptr);
    }

    // A shown holder of the given size with `card` filling it.
    template <typename Card> Card* Show(QSize size)
    {
        holder = new CEventHolder;
        holder->resize(size);
        auto* card = new Card(CardPos_PanelBox, holder);
        card->setGeometry(QRect(QPoint(0, 0), size));
        holder->show();
        QApplication::processEvents();
        return card;
    }

    void Steps(int n)
    {
        for (int i = 0; i < n; ++i)
            feed.Step();
    }

    vx_md::CVXSimMarketData feed{11};
    CEventHolder* holder = nullptr;
};

} // namespace bookcards_test
