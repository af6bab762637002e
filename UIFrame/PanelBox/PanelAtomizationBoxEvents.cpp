// CVXPanelAtomizationBox: its menu, its linkage group, its mouse input and painting, and the card
// events it handles.

#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelAtomizationBox_p.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/Linkage/PanelCurGroupBtn.h"
#include "UIFrame/Linkage/PanelGroupSetting.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxMenu.h"

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QMouseEvent>
#include <QPainter>

// ---------------------------------------------------------------------------------------------
// Menu and group

void CVXPanelAtomizationBox::OnClickMenu()
{
    vx_std_ui::VMenu menu(this);
    menu.setObjectName(QStringLiteral("PanelBoxMenu"));
    panelbox_menu::MenuContext context;
    context.pCurrentCard = GetCurrentCard();
    if (GetCurrentTabIndex() >= 0)
        GetTabCardData(GetCurrentTabIndex(), &context.strCurrentCardType, nullptr);
    context.strCurrentColor = GetGroupColor();
    QPointer<CVXPanelAtomizationBox> self(this);
    context.setColor = [self](const QString& color) {
        if (self)
            self->OnGroupColorChanged(color);
    };
    context.switchCard = [self](const QString& type) {
        if (self)
            self->SwitchCard(type);
    };
    context.addCard = [self](const QString& type) {
        if (self)
            self->CreateCardAndOpen(type, CVXVariantMapTree(), CVXVariantMapTree());
    };
    panelbox_menu::Build(&menu, context);
    menu.exec(d->menuBtn->mapToGlobal(QPoint(0, d->menuBtn->height())));
}

void CVXPanelAtomizationBox::OnClickGroup()
{
    if (!d->groupSetting) {
        d->groupSetting = new CVXPanelGroupSetting(this);
        connect(d->groupSetting, &CVXPanelGroupSetting::GroupIDChanged, this,
                &CVXPanelAtomizationBox::OnGroupIDChanged);
        connect(d->groupSetting, &CVXPanelGroupSetting::GroupIDAdded, this,
                &CVXPanelAtomizationBox::OnGroupIDAdded);
    }
    CVXPanelScrollView* view = GetPanelScrollView();
    const QStringList ids = view ? view->GetAllGroupIDs() : QStringList();
    d->groupSetting->ShowGroup(ids, m_strGroupID, d->groupBtn->mapToGlobal(QPoint(0, d->groupBtn->height())));
}

void CVXPanelAtomizationBox::OnGroupIDChanged(QString groupId)
{
    BeforeCommand<panelbox_undo_cmd::GroupChanged>();
    SetGroupID(groupId);
    // A group looks the same in every box: take the colour the group already shows.
    if (CVXPanelScrollView* view = GetPanelScrollView(); view && !groupId.isEmpty()) {
        for (CVXPanelBaseBox* other : view->GetPanelBoxes()) {
            if (other != this && other->GetGroupID() == groupId && !other->GetGroupColor().isEmpty()) {
                SetGroupColor(other->GetGroupColor());
                break;
            }
        }
    }
    AfterCommand<panelbox_undo_cmd::GroupChanged>();
}

void CVXPanelAtomizationBox::OnGroupIDAdded(QString groupId)
{
    OnGroupIDChanged(groupId);
    if (d->groupSetting && d->groupSetting->isVisible()) {
        CVXPanelScrollView* view = GetPanelScrollView();
        d->groupSetting->UpdateGroupIDList(view ? view->GetAllGroupIDs() : QStringList{groupId}, groupId);
    }
}

void CVXPanelAtomizationBox::OnGroupColorChanged(QString color)
{
    BeforeCommand<panelbox_undo_cmd::ColorChanged>();
    SetGroupColor(color);
    AfterCommand<panelbox_undo_cmd::ColorChanged>();
}

// ---------------------------------------------------------------------------------------------
// Mouse and painting

void CVXPanelAtomizationBox::mousePressEvent(QMouseEvent* event)
{
    if (d->gesture->Press(event->pos(), event->globalPos(), event->button()))
        Q_EMIT Clicked();
    event->accept();
}

void CVXPanelAtomizationBox::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton && !m_bPressed)
        d->UpdateHoverCursor(event->pos());
    d->gesture->Move(event->pos(), event->globalPos(), event->buttons());
    event->accept();
}

void CVXPanelAtomizationBox::mouseReleaseEvent(QMouseEvent* event)
{
    d->gesture->Release(event->globalPos(), event->button());
    event->accept();
}

void CVXPanelAtomizationBox::leaveEvent(QEvent* event)
{
    if (!m_bPressed) {
        unsetCursor();
        d->hoverCursorHit = HitNone;
    }
    CVXPanelBaseBox::leaveEvent(event);
}

bool CVXPanelAtomizationBox::FilterDescendantMouseEvent(QMouseEvent* event)
{
    const QPoint local = mapFromGlobal(event->globalPos());
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        if (event->button() != Qt::LeftButton || !panelbox_detail::IsEdgeHit(HitTestMouseMove(local)))
            return false;
        d->bEdgeGesture = d->gesture->Press(local, event->globalPos(), event->button());
        return d->bEdgeGesture;
    }
    case QEvent::MouseMove: {
        if (d->bEdgeGesture) {
            // The widget under the press keeps the mouse until the release (Qt's implicit grab):
            // its moves are the resize's.
            d->gesture->Move(local, event->globalPos(), event->buttons());
            return true;
        }
        if (event->buttons() == Qt::NoButton && !m_bPressed)
            d->UpdateHoverCursor(local);
        return false;
    }
    case QEvent::MouseButtonRelease:
        if (!d->bEdgeGesture || event->button() != Qt::LeftButton)
            return false;
        d->bEdgeGesture = false;
        d->gesture->Release(event->globalPos(), event->button());
        return true;
    default:
        return false;
    }
}

void CVXPanelAtomizationBox::resizeEvent(QResizeEvent* event)
{
    CVXPanelBaseBox::resizeEvent(event);
    d->tabs->setGeometry(rect().adjusted(1, 1, -1, -1));
}

void CVXPanelAtomizationBox::paintEvent(QPaintEvent* event)
{
    (void)event;
    QPainter painter(this);
    vx_ui_res::Provider& provider = vx_ui_res::Provider::Instance();
    painter.fillRect(rect(), provider.GetColor(QStringLiteral("ct_bg_primary")));
    painter.fillRect(QRect(1, 1, width() - 2, kTitleHeight),
                     provider.GetColor(QStringLiteral("ct_title_bar")));
    painter.setPen(provider.GetColor(QStringLiteral("ct_border")));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// ---------------------------------------------------------------------------------------------
// Card events

void CVXPanelAtomizationBox::OnCardEventStockIDChanged(const CardEventStockIDChanged* event)
{
    if (event->u64StockID == PanelLinkageDataNullStockID || event->u64StockID == GetStockID())
        return;
    CVXObjBase::SetStockID(event->u64StockID);
    d->AnnounceLinkage(PanelLinkageDataKind_StockID);
}

void CVXPanelAtomizationBox::OnCardEventAccountInfoChanged(const CardEventAccountInfoChanged* event)
{
    if (event->accountInfo == GetAccountInfo())
        return;
    CVXBoxObjBase::SetAccountInfo(event->accountInfo);
    d->AnnounceLinkage(PanelLinkageDataKind_AccountInfo);
}

void CVXPanelAtomizationBox::OnCardEventComboOptionChanged(const CardEventComboOptionChanged* event)
{
    if (event->comboOptionInfo == d->comboOptionInfo)
        return;
    d->comboOptionInfo = event->comboOptionInfo;
    d->AnnounceLinkage(PanelLinkageDataKind_ComboOptionInfo);
}

void CVXPanelAtomizationBox::OnCardEventOptionIndexChanged(const CardEventOptionIndexChanged* event)
{
    if (event->optionIndexInfo == GetOptionIndexInfo())
        return;
    CVXBoxObjBase::SetOptionIndexInfo(event->optionIndexInfo);
    d->AnnounceLinkage(PanelLinkageDataKind_OptionIndexInfo);
}

void CVXPanelAtomizationBox::OnCardEventClicked(const CardEventClicked* event)
{
    (void)event;
    Q_EMIT Clicked();
}

void CVXPanelAtomizationBox::OnCardEventDoubleClicked(const CardEventDoubleClicked* event)
{
    (void)event;
    Q_EMIT Clicked();
}

void CVXPanelAtomizationBox::OnCardEventSearchClicked(const CardEventSearchClicked* event)
{
    // The security search belongs to the quote module, which sees every card event first.
    VXLOG_DEBUG("CVXPanelAtomizationBox::OnCardEventSearchClicked: box {}, text '{}'", GetBoxId(),
                event->strSearchText);
}

namespace {

CVXVariantMapTree PlaceOrderProperty(unsigned long long stockId, EnVXOrderSide side, long long quantity,
                                     double price)
{
    CVXVariantMapTree property;
    property.Set<unsigned long long>(QString::fromLatin1(card_property_key::StockID), stockId);
    property.Set<int>(QStringLiteral("OrderSide"), static_cast<int>(side));
    property.Set<long long>(QStringLiteral("Quantity"), quantity);
    property.Set<double>(QStringLiteral("Price"), price);
    return property;
}

} // namespace

void CVXPanelAtomizationBox::OnCardEventCommonJump(const CardEventCommonJump* event)
{
    const VXCommonJumpRequest& request = event->request;
    d->RouteTradeRequest<CardEventCommonJumpInner>(request.strTargetCardType, request, CVXVariantMapTree(),
                                                   request.jumpData);
}

void CVXPanelAtomizationBox::OnCardEventPostionsOpenPlaceOrder(const CardEventPostionsOpenPlaceOrder* event)
{
    const VXPlaceOrderRequest& r = event->request;
    d->RouteTradeRequest<CardEventPostionsOpenPlaceOrderInner>(
        trade_card_type::TradePlaceOrderSecuritiesPanel, r, r.accountInfo,
        PlaceOrderProperty(r.u64StockID, r.enSide, r.llQuantity, r.dPrice));
}

void CVXPanelAtomizationBox::OnCardEventPostionsOpenPlaceOrderComboOption(
    const CardEventPostionsOpenPlaceOrderComboOption* event)
{
    const VXComboOptionOrderRequest& r = event->request;
    CVXVariantMapTree property = PlaceOrderProperty(0, r.enSide, r.llQuantity, r.dPrice);
    property.Set<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"), r.comboOptionInfo);
    d->RouteTradeRequest<CardEventPostionsOpenPlaceOrderComboOptionInner>(
        trade_card_type::TradePlaceOrderComboOptionPanel, r, r.accountInfo, property);
}

void CVXPanelAtomizationBox::OnCardEventOpenTradeOrders(const CardEventOpenTradeOrders* event)
{
    const VXTradeOrdersRequest& r = event->request;
    CVXVariantMapTree property;
    property.Set<unsigned long long>(QString::fromLatin1(card_property_key::StockID), r.u64StockID);
    d->RouteTradeRequest<CardEventOpenTradeOrdersInner>(trade_card_type::SecuritiesTradeOrders, r,
                                                        r.accountInfo, property);
}

void CVXPanelAtomizationBox::OnCardEventPlaceOrderComboOptionOpenOptionChain(
    const CardEventPlaceOrderComboOptionOpenOptionChain* event)
{
    const VXOptionChainRequest& r = event->request;
    CVXVariantMapTree property;
    property.Set<unsigned long long>(QString::fromLatin1(card_property_key::StockID), r.u64UnderlyingStockID);
    property.Set<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"), r.comboOptionInfo);
    d->RouteTradeRequest<CardEventPlaceOrderComboOptionOpenOptionChainInner>(
        quote_card_type::OptionChainsPanel, r, r.accountInfo, property);
}
