#pragma once

// Shared by the book-card tests: a holder widget at which card events stop (as a box or a page
// would) and which records the requests and linkage events that reach it, and a fixture with
// the real seeded feed installed (seed 11).

#include "UIFrame/CardEvents.h"
#include "UIFrame/CardPos.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/workspace/WorkspaceTestSupport.h"

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

class BookCardsFixture : public workspace_test::CFeedTest
{
protected:
    BookCardsFixture() : CFeedTest(11) {}

    void TearDown() override
    {
        delete holder;
        holder = nullptr;
        CFeedTest::TearDown();
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

    CEventHolder* holder = nullptr;
};

} // namespace bookcards_test
