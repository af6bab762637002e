#pragma once

// The private state of CVXPanelAtomizationBox, shared by its source files (the box itself and its
// card events, menu and group handling). Private to UIFrame/PanelBox.

#include "UIFrame/PanelBox/PanelAtomizationBox.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelBoxGesture.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"
#include "Platform/StdUI/TabWidget.h"

#include <QMap>
#include <QPointer>

#include <memory>

class CVXPanelCurGroupBtn;
class CVXPanelGroupSetting;
class CVXPanelBoxMask;

namespace vx_std_ui {
class VIconButton;
}

namespace panelbox_detail {
// A new tab id, unique in the process.
unsigned long long NewTabId();
// Bus message 20251: the box left `groupId` in `scope`.
void SendGroupLeft(const QString& scope, const QString& groupId);
} // namespace panelbox_detail

struct CVXPanelAtomizationBox::Impl
{
    // What the box knows of each tab, by the tab's global id: its card type and, while the tab
    // was never opened, the restore data its factory holds.
    struct TabInfo
    {
        QString strCardType;
        CVXVariantMapTree lazyData;
        bool bLazy = false;
    };

    CVXPanelAtomizationBox* q = nullptr;
    bool bPopup = false;
    unsigned long long u64BoxId = 0;
    vx_std_ui::VTabWidget* tabs = nullptr;
    CVXPanelCurGroupBtn* groupBtn = nullptr;
    vx_std_ui::VIconButton* menuBtn = nullptr;
    vx_std_ui::VIconButton* closeBtn = nullptr;
    CVXPanelBoxMask* mask = nullptr; // null until first needed
    QString groupColor;
    // The box's cursor while the mouse hovers an edge band over a descendant (HitNone: unset).
    CVXPanelBaseBox::HitPos hoverCursorHit = CVXPanelBaseBox::HitNone;
    bool bEdgeGesture = false; // a resize started in a band over a descendant is under way
    QPointer<CVXPanelGroupSetting> groupSetting;
    CVXVariantMapTree comboOptionInfo;
    QMap<unsigned long long, TabInfo> tabInfos;
    bool bWaitingDrop = false;
    std::unique_ptr<panelbox_detail::CPanelBoxGesture> gesture;

    QString Scope() const
    {
        CVXPanelScrollView* view = q->GetPanelScrollView();
        return view ? view->GetCurrentTabColorString() : QString();
    }
    PanelLinkageDataSourceType Source() const
    {
        return q->GetPanelScrollView() && !bPopup ? PanelLinkageDataSourceType_Page
                                                  : PanelLinkageDataSourceType_Pop;
    }

    CVXCardObjBase* MakeCard(const QString& cardType, const CVXVariantMapTree& initData,
                             const CVXVariantMapTree& restoreData, const CVXVariantMapTree& property)
    {
        CVXCardObjBase* card = CVXCardFactoryMgr::Instance().CreateCard(
            cardType, CardPos_PanelBox, TabFrameKey_PanelWorkspace, initData, nullptr);
        if (!card) {
            VXLOG_WARN("CVXPanelAtomizationBox::MakeCard: no factory for card type '{}'", cardType);
            return nullptr;
        }
        if (!restoreData.IsEmpty())
            card->SetObjRestoreData(restoreData);
        if (!property.IsEmpty())
            card->SetObjProperty(cardType, property);
        return card;
    }

    int InsertCard(CVXCardObjBase* card, const QString& cardType, int index, unsigned long long tabId)
    {
        const int count = tabs->count();
        const int at = (index < 0 || index > count) ? count : index;
        if (!q->AppendCardWithIndex(card, at, q->GetStockID() != 0)) {
            delete card;
            return -1;
        }
        tabs->setTabId(at, tabId != 0 ? tabId : panelbox_detail::NewTabId());
        tabInfos.insert(tabs->tabGlobalId(at), TabInfo{cardType, CVXVariantMapTree(), false});
        AttachCard(card);
        return at;
    }

    void InsertLazyTab(const QString& cardType, const CVXVariantMapTree& restoreData,
                       unsigned long long tabId)
    {
        CVXCardBaseStyle style;
        CVXCardFactoryMgr::Instance().GetCardStyle(cardType, &style);
        auto factory = std::make_shared<CVXCardFactory>(
            q, cardType, CardPos_PanelBox, TabFrameKey_PanelWorkspace, CVXVariantMapTree(), restoreData);
        const int at = tabs->addLazyTab(factory, style.title.isEmpty() ? cardType : style.title,
                                        tabId != 0 ? tabId : panelbox_detail::NewTabId());
        tabInfos.insert(tabs->tabGlobalId(at), TabInfo{cardType, restoreData, true});
    }

    void AttachCard(CVXCardObjBase* card)
    {
        QObject::connect(card, &CVXCardObjBase::CardCurrentSizeChanged, q,
                         &CVXPanelAtomizationBox::OnCardCurrentSizeChanged, Qt::UniqueConnection);
        QObject::connect(card, &CVXCardObjBase::CardMaxMinSizeChanged, q,
                         &CVXPanelAtomizationBox::OnCardMaxMinSizeChanged, Qt::UniqueConnection);
    }

    void OnPageCreated(int index, QWidget* page)
    {
        auto* card = dynamic_cast<CVXCardObjBase*>(page);
        auto it = tabInfos.find(tabs->tabGlobalId(index));
        if (it != tabInfos.end()) {
            it->bLazy = false;
            it->lazyData = CVXVariantMapTree();
        }
        if (!card)
            return;
        card->SetParentBox(q);
        card->SetObjKey(q->GetObjKey());
        AttachCard(card);
    }

    // Values of the box's group in the linkage store: taken when the group has them, given to it
    // when it has none (the first box of a group gives the group its values).
    void ExchangeGroupValues()
    {
        const QString groupId = q->m_strGroupID;
        if (groupId.isEmpty())
            return;
        CVXPanelLinkageData& store = CVXPanelLinkageData::GetInstance();
        const QString scope = Scope();
        const PanelLinkageDataSourceType source = Source();
        const unsigned long long stockId = store.GetStockID(scope, groupId);
        if (stockId != PanelLinkageDataNullStockID)
            q->UpdateBoxStockID(stockId);
        else if (q->GetStockID() != PanelLinkageDataNullStockID)
            store.SetStockID(source, scope, groupId, q->GetStockID());

        const CVXVariantMapTree account = store.GetAccountInfo(scope, groupId);
        if (!account.IsEmpty())
            q->SetAccountInfo(account);
        else if (!q->GetAccountInfo().IsEmpty())
            store.SetAccountInfo(source, scope, groupId, q->GetAccountInfo());

        const CVXVariantMapTree combo = store.GetComboOptionInfo(scope, groupId);
        if (!combo.IsEmpty())
            q->SetComboOptionInfo(combo);
        else if (!comboOptionInfo.IsEmpty())
            store.SetComboOptionInfo(source, scope, groupId, comboOptionInfo);

        const CVXVariantMapTree optionIndex = store.GetOptionIndexInfo(scope, groupId);
        if (!optionIndex.IsEmpty())
            q->SetOptionIndexInfo(optionIndex);
        else if (!q->GetOptionIndexInfo().IsEmpty())
            store.SetOptionIndexInfo(source, scope, groupId, q->GetOptionIndexInfo());
    }

    void AnnounceLinkage(PanelLinkageDataKind kind)
    {
        CVXPanelScrollView* view = q->GetPanelScrollView();
        if (view && !bPopup && !q->m_strGroupID.isEmpty())
            view->OnBoxLinkageValueChanged(q, kind);
    }

    // A trade request raised by a card: a popup box satisfies it itself; on a canvas the canvas
    // decides (the sender's box, a box of its group, or a new box).
    template <typename Inner, typename Request>
    void RouteTradeRequest(const QString& cardType, const Request& request, const CVXVariantMapTree& account,
                           const CVXVariantMapTree& property)
    {
        CVXPanelScrollView* view = q->GetPanelScrollView();
        if (view && !bPopup) {
            Inner inner;
            inner.request = request;
            inner.pSender = q;
            inner.strGroupID = q->m_strGroupID;
            view->DirectHandleUIEvent(&inner);
            return;
        }
        if (!q->FindCardByCardTypeToSetAccountAndProperty(cardType, account, property) &&
            q->CreateCardAndOpen(cardType, CVXVariantMapTree(), property)) {
            if (CVXCardObjBase* card = q->GetCurrentCard(); card && !account.IsEmpty())
                card->SetAccountInfo(account);
        }
    }

    // The resize cursor of the edge band under the mouse, set on the box so that the descendant
    // under the mouse shows it too; taken back as soon as the mouse leaves the bands, so that it
    // never stays on the cards.
    void UpdateHoverCursor(const QPoint& local)
    {
        const CVXPanelBaseBox::HitPos hit = q->HitTestMouseMove(local);
        const CVXPanelBaseBox::HitPos wanted =
            panelbox_detail::IsEdgeHit(hit) ? hit : CVXPanelBaseBox::HitNone;
        if (wanted == hoverCursorHit)
            return;
        hoverCursorHit = wanted;
        if (wanted == CVXPanelBaseBox::HitNone)
            q->unsetCursor();
        else
            q->UpdateCursorByHitPos(wanted);
    }

    void BuildTitleStrip();
};
