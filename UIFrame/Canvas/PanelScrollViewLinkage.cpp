// CVXPanelScrollView: the linkage groups of the canvas's boxes and the trade requests that boxes
// pass up to the canvas.

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/Canvas/PanelScrollView_p.h"

#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"

#include <algorithm>
#include <memory>

// ----------------------------------------------------------------------------------------------
// Linkage

namespace {

// The first box of the group (other than `exclude`) for which `value` gives a non-empty answer.
template <typename T, typename Fn>
T FirstGroupValue(const QVector<CVXPanelBaseBox*>& boxes, const QString& groupId, CVXPanelBaseBox* exclude,
                  Fn value, bool (*isEmpty)(const T&))
{
    if (groupId.isEmpty())
        return T();
    for (CVXPanelBaseBox* box : boxes) {
        if (box == exclude || box->GetGroupID() != groupId)
            continue;
        T v = value(box);
        if (!isEmpty(v))
            return v;
    }
    return T();
}

bool IsNullStock(const unsigned long long& id)
{
    return id == PanelLinkageDataNullStockID;
}

bool IsEmptyTree(const CVXVariantMapTree& tree)
{
    return tree.IsEmpty();
}

// Group ids are numbers as text in practice: order them numerically, others after them.
bool GroupIdLess(const QString& a, const QString& b)
{
    bool okA = false;
    bool okB = false;
    const qulonglong na = a.toULongLong(&okA);
    const qulonglong nb = b.toULongLong(&okB);
    if (okA && okB)
        return na < nb;
    if (okA != okB)
        return okA;
    return a < b;
}

} // namespace

unsigned long long CVXPanelScrollView::GetCurrentGroupStockID(const QString& groupId,
                                                              CVXPanelBaseBox* exclude) const
{
    return FirstGroupValue<unsigned long long>(
        GetPanelBoxes(), groupId, exclude, [](CVXPanelBaseBox* b) { return b->GetStockID(); }, &IsNullStock);
}

CVXVariantMapTree CVXPanelScrollView::GetCurrentGroupAccountInfo(const QString& groupId,
                                                                 CVXPanelBaseBox* exclude) const
{
    return FirstGroupValue<CVXVariantMapTree>(
        GetPanelBoxes(), groupId, exclude, [](CVXPanelBaseBox* b) { return b->GetAccountInfo(); },
        &IsEmptyTree);
}

CVXVariantMapTree CVXPanelScrollView::GetCurrentGroupComboOptionInfo(const QString& groupId,
                                                                     CVXPanelBaseBox* exclude) const
{
    return FirstGroupValue<CVXVariantMapTree>(
        GetPanelBoxes(), groupId, exclude, [](CVXPanelBaseBox* b) { return b->GetComboOptionInfo(); },
        &IsEmptyTree);
}

CVXVariantMapTree CVXPanelScrollView::GetCurrentGroupOptionIndexInfo(const QString& groupId,
                                                                     CVXPanelBaseBox* exclude) const
{
    return FirstGroupValue<CVXVariantMapTree>(
        GetPanelBoxes(), groupId, exclude, [](CVXPanelBaseBox* b) { return b->GetOptionIndexInfo(); },
        &IsEmptyTree);
}

bool CVXPanelScrollView::ExistGroupID(const QString& groupId) const
{
    if (groupId.isEmpty())
        return false;
    return GetAllGroupIDs().contains(groupId);
}

QString CVXPanelScrollView::GenerateGroupID() const
{
    const QStringList used = GetAllGroupIDs();
    for (unsigned long long n = 1;; ++n) {
        const QString candidate = QString::number(n);
        if (!used.contains(candidate))
            return candidate;
    }
}

QStringList CVXPanelScrollView::GetAllGroupIDs() const
{
    QStringList ids;
    for (CVXPanelBaseBox* box : GetPanelBoxes()) {
        const QString id = box->GetGroupID();
        if (!id.isEmpty() && !ids.contains(id))
            ids.append(id);
    }
    for (const QString& id : qAsConst(d->userGroupIds)) {
        if (!id.isEmpty() && !ids.contains(id))
            ids.append(id);
    }
    std::sort(ids.begin(), ids.end(), &GroupIdLess);
    return ids;
}

QStringList CVXPanelScrollView::GetUserGroupIDList() const
{
    return d->userGroupIds;
}

void CVXPanelScrollView::UpdateUserSelectedGroupID(const QString& groupId)
{
    d->lastUsedGroupId = groupId;
    if (!groupId.isEmpty() && !d->userGroupIds.contains(groupId))
        d->userGroupIds.append(groupId);
}

QString CVXPanelScrollView::GetLastUsedGroupID() const
{
    return d->lastUsedGroupId;
}

void CVXPanelScrollView::OnBoxLinkageValueChanged(CVXPanelBaseBox* box, unsigned long kind)
{
    if (!box)
        return;
    const QString groupId = box->GetGroupID();
    if (groupId.isEmpty())
        return;
    // A box of the group took a value being spread right now: the store already holds it.
    if (d->spreading.contains(qMakePair(groupId, kind)))
        return;
    const QString scope = GetCurrentTabColorString();
    CVXPanelLinkageData& store = CVXPanelLinkageData::GetInstance();
    switch (kind) {
    case PanelLinkageDataKind_StockID: {
        const unsigned long long stockId = box->GetStockID();
        if (stockId == PanelLinkageDataNullStockID)
            return;
        store.SetStockID(PanelLinkageDataSourceType_Page, scope, groupId, stockId);
        break;
    }
    case PanelLinkageDataKind_AccountInfo:
        store.SetAccountInfo(PanelLinkageDataSourceType_Page, scope, groupId, box->GetAccountInfo());
        break;
    case PanelLinkageDataKind_ComboOptionInfo:
        store.SetComboOptionInfo(PanelLinkageDataSourceType_Page, scope, groupId, box->GetComboOptionInfo());
        break;
    case PanelLinkageDataKind_OptionIndexInfo:
        store.SetOptionIndexInfo(PanelLinkageDataSourceType_Page, scope, groupId, box->GetOptionIndexInfo());
        break;
    default:
        VXLOG_WARN("CVXPanelScrollView::OnBoxLinkageValueChanged: unknown kind {}", kind);
        return;
    }
    core::CMessageBody body;
    const QByteArray scopeUtf8 = scope.toUtf8();
    const QByteArray groupUtf8 = groupId.toUtf8();
    body.set_exdata(scopeUtf8.constData(), static_cast<size_t>(scopeUtf8.size()));
    body.set_exparam(groupUtf8.constData(), static_cast<size_t>(groupUtf8.size()));
    core::__CMessageDispatch::Instance().Send(kMsgPanelLinkageDataChanged, kind, body, true);
}

void CVXPanelScrollView::HandlePanelLinkageDataChanged(QString& scopeKey, QString& groupId,
                                                       unsigned long kind)
{
    if (scopeKey != GetCurrentTabColorString() || groupId.isEmpty())
        return;
    VXLOG_INFO("[CVXPanelScrollView] PanelLinkageDataChanged, tabColor: {}, panelGroupID: {}", scopeKey,
               groupId);
    const CVXPanelLinkageData& store = CVXPanelLinkageData::GetInstance();
    std::unique_ptr<IVUIEventTypeBase> event;
    unsigned long long stockId = PanelLinkageDataNullStockID;
    switch (kind) {
    case PanelLinkageDataKind_StockID:
        stockId = store.GetStockID(scopeKey, groupId);
        if (stockId == PanelLinkageDataNullStockID)
            return;
        event = std::make_unique<CardEventStockIDChanged>(stockId);
        break;
    case PanelLinkageDataKind_AccountInfo: {
        CVXVariantMapTree info = store.GetAccountInfo(scopeKey, groupId);
        if (info.IsEmpty())
            return;
        event = std::make_unique<CardEventAccountInfoChanged>(std::move(info));
        break;
    }
    case PanelLinkageDataKind_ComboOptionInfo: {
        CVXVariantMapTree info = store.GetComboOptionInfo(scopeKey, groupId);
        if (info.IsEmpty())
            return;
        event = std::make_unique<CardEventComboOptionChanged>(std::move(info));
        break;
    }
    case PanelLinkageDataKind_OptionIndexInfo: {
        CVXVariantMapTree info = store.GetOptionIndexInfo(scopeKey, groupId);
        if (info.IsEmpty())
            return;
        event = std::make_unique<CardEventOptionIndexChanged>(std::move(info));
        break;
    }
    default:
        return;
    }

    const auto spreadKey = qMakePair(groupId, kind);
    const bool outermost = !d->spreading.contains(spreadKey);
    d->spreading.insert(spreadKey);
    // The items' own guards, copied: cheaper than a new guard per box, and the item list itself
    // may change while the event spreads.
    QVector<QPointer<CVXPanelBaseBox>> targets;
    targets.reserve(static_cast<int>(d->items.size()));
    for (const Impl::Item& item : d->items) {
        if (item.guard && !item.guard->IsDeleted() && item.guard->GetGroupID() == groupId)
            targets.append(item.guard);
    }
    for (const QPointer<CVXPanelBaseBox>& box : qAsConst(targets)) {
        // A handler may have removed the box or moved it to another group meanwhile.
        if (!box || box->IsDeleted() || box->GetGroupID() != groupId)
            continue;
        if (kind == PanelLinkageDataKind_StockID && box->GetStockID() == stockId)
            continue;
        Platform::UIEvent::DispatchUIEventToAllChildRecursively(box, event.get());
    }
    if (outermost)
        d->spreading.remove(spreadKey);
}

void CVXPanelScrollView::HandleTabGroupColorChanged(const QString& color)
{
    if (color == d->tabColor)
        return;
    SetCurrentTabColorString(color);
    // The groups move to the new scope with the values their boxes show.
    CVXPanelLinkageData& store = CVXPanelLinkageData::GetInstance();
    const QString scope = GetCurrentTabColorString();
    for (const QString& groupId : GetAllGroupIDs()) {
        const unsigned long long stockId = GetCurrentGroupStockID(groupId, nullptr);
        if (stockId != PanelLinkageDataNullStockID)
            store.SetStockID(PanelLinkageDataSourceType_Page, scope, groupId, stockId);
        const CVXVariantMapTree account = GetCurrentGroupAccountInfo(groupId, nullptr);
        if (!account.IsEmpty())
            store.SetAccountInfo(PanelLinkageDataSourceType_Page, scope, groupId, account);
    }
}

QString CVXPanelScrollView::GetCurrentTabColorString() const
{
    return d->tabColor.isEmpty() ? d->ownScope : d->tabColor;
}

void CVXPanelScrollView::SetCurrentTabColorString(const QString& color)
{
    d->tabColor = color;
}

QStringList CVXPanelScrollView::GetUsedTabColorStrings() const
{
    QStringList colors;
    for (const QPointer<CVXPanelScrollView>& canvas : qAsConst(panel_scroll_view_detail::LiveCanvases())) {
        if (canvas && !canvas->d->tabColor.isEmpty() && !colors.contains(canvas->d->tabColor))
            colors.append(canvas->d->tabColor);
    }
    return colors;
}

namespace {

using BoxCardFinder = bool (CVXPanelAtomizationBox::*)(const QString&, const CVXVariantMapTree&,
                                                       const CVXVariantMapTree&);

// The first single-card box of the group whose finder accepts the card type (and account).
bool FindInGroup(const QVector<CVXPanelBaseBox*>& boxes, const QString& groupId, BoxCardFinder finder,
                 const QString& cardType, const CVXVariantMapTree& account, const CVXVariantMapTree& property)
{
    if (groupId.isEmpty())
        return false;
    for (CVXPanelBaseBox* box : boxes) {
        auto* single = qobject_cast<CVXPanelAtomizationBox*>(box);
        if (single && single->GetGroupID() == groupId && (single->*finder)(cardType, account, property))
            return true;
    }
    return false;
}

} // namespace

bool CVXPanelScrollView::FindPanelBoxsByGroupIDAndCardTypeToSetAccountAndProperty(
    const QString& groupId, const QString& cardType, const CVXVariantMapTree& account,
    const CVXVariantMapTree& property)
{
    return FindInGroup(GetPanelBoxes(), groupId,
                       &CVXPanelAtomizationBox::FindCardByCardTypeToSetAccountAndProperty, cardType, account,
                       property);
}

bool CVXPanelScrollView::FindPanelBoxsByGroupIDAndCardTypeAndAccountToSetProperty(
    const QString& groupId, const QString& cardType, const CVXVariantMapTree& account,
    const CVXVariantMapTree& property)
{
    return FindInGroup(GetPanelBoxes(), groupId,
                       &CVXPanelAtomizationBox::FindCardByCardTypeAndAccountToSetProperty, cardType, account,
                       property);
}

void CVXPanelScrollView::FindOrOpenRelatedCardAndSetParams(CVXPanelBaseBox* sender, const QString& groupId,
                                                           const QString& cardType,
                                                           const CVXVariantMapTree& account,
                                                           const CVXVariantMapTree& property)
{
    if (cardType.isEmpty()) {
        VXLOG_WARN("CVXPanelScrollView::FindOrOpenRelatedCardAndSetParams: no card type");
        return;
    }
    auto* own = qobject_cast<CVXPanelAtomizationBox*>(sender);
    if (own && own->FindCardByCardTypeToSetAccountAndProperty(cardType, account, property))
        return;
    if (FindPanelBoxsByGroupIDAndCardTypeToSetAccountAndProperty(groupId, cardType, account, property))
        return;
    CVXPanelAtomizationBox* box = AddPanelBoxWithCardInitType(cardType, property);
    if (!box)
        return;
    // The new card works for the sender's group and account.
    if (!groupId.isEmpty() && box->GetGroupID() != groupId)
        box->SetGroupID(groupId);
    if (!account.IsEmpty())
        box->SetAccountInfo(account);
}

// ----------------------------------------------------------------------------------------------
// Trade requests passed up by boxes

void CVXPanelScrollView::OnCardEventPostionsOpenPlaceOrderInner(
    const CardEventPostionsOpenPlaceOrderInner* pEvent)
{
    if (!VX_ASSERT(pEvent && pEvent->pSender))
        return;
    const panel_trade_request::Target target = panel_trade_request::ForPlaceOrder(pEvent->request);
    FindOrOpenRelatedCardAndSetParams(qobject_cast<CVXPanelBaseBox*>(pEvent->pSender), pEvent->strGroupID,
                                      target.cardType, target.account, target.property);
}

void CVXPanelScrollView::OnCardEventOpenTradeOrdersInner(const CardEventOpenTradeOrdersInner* pEvent)
{
    if (!VX_ASSERT(pEvent && pEvent->pSender))
        return;
    const panel_trade_request::Target target = panel_trade_request::ForTradeOrders(pEvent->request);
    auto* sender = qobject_cast<CVXPanelAtomizationBox*>(pEvent->pSender);
    if (sender &&
        sender->FindCardByCardTypeToSetAccountAndProperty(target.cardType, target.account, target.property))
        return;
    // An orders list of the same account in the group serves before any other of the group.
    if (FindPanelBoxsByGroupIDAndCardTypeAndAccountToSetProperty(pEvent->strGroupID, target.cardType,
                                                                 target.account, target.property))
        return;
    FindOrOpenRelatedCardAndSetParams(nullptr, pEvent->strGroupID, target.cardType, target.account,
                                      target.property);
}

void CVXPanelScrollView::OnCardEventPostionsOpenPlaceOrderComboOptionInner(
    const CardEventPostionsOpenPlaceOrderComboOptionInner* pEvent)
{
    if (!VX_ASSERT(pEvent && pEvent->pSender))
        return;
    const panel_trade_request::Target target = panel_trade_request::ForComboOptionOrder(pEvent->request);
    FindOrOpenRelatedCardAndSetParams(qobject_cast<CVXPanelBaseBox*>(pEvent->pSender), pEvent->strGroupID,
                                      target.cardType, target.account, target.property);
}

void CVXPanelScrollView::OnCardEventPlaceOrderComboOptionOpenOptionChainInner(
    const CardEventPlaceOrderComboOptionOpenOptionChainInner* pEvent)
{
    if (!VX_ASSERT(pEvent && pEvent->pSender))
        return;
    const panel_trade_request::Target target = panel_trade_request::ForOptionChain(pEvent->request);
    FindOrOpenRelatedCardAndSetParams(qobject_cast<CVXPanelBaseBox*>(pEvent->pSender), pEvent->strGroupID,
                                      target.cardType, target.account, target.property);
}

void CVXPanelScrollView::OnCardEventCommonJumpInner(const CardEventCommonJumpInner* pEvent)
{
    if (!VX_ASSERT(pEvent && pEvent->pSender))
        return;
    const panel_trade_request::Target target = panel_trade_request::ForCommonJump(pEvent->request);
    FindOrOpenRelatedCardAndSetParams(qobject_cast<CVXPanelBaseBox*>(pEvent->pSender), pEvent->strGroupID,
                                      target.cardType, target.account, target.property);
}
