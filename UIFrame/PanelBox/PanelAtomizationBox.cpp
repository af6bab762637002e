#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelAtomizationBox_p.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/Linkage/PanelCurGroupBtn.h"
#include "UIFrame/Linkage/PanelGroupSetting.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxGeometry.h"
#include "UIFrame/PanelBox/PanelBoxGesture.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/PanelBox/PanelBoxMask.h"
#include "UIFrame/PanelBox/PanelBoxMenu.h"
#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/TabWidget.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QMap>
#include <QMouseEvent>
#include <QPainter>

#include <atomic>

namespace {

constexpr const char* kKeyBoxType = "BoxType";
constexpr const char* kKeyPanelBoxPos = "PanelBoxPos";
constexpr const char* kKeyCards = "Cards";
constexpr const char* kKeyCardType = "CardType";
constexpr const char* kKeyCardData = "CardData";
constexpr const char* kKeyCurVisibleCard = "CurVisibleCard";
constexpr const char* kKeyStockID = "StockID";
constexpr const char* kKeyAccountInfo = "AccountInfo";
constexpr const char* kKeyGroupID = "strGroupID";
constexpr const char* kKeyGroupColor = "strGroupColor";

// The box of several tabs keeps at least this size; a single card brings its own limits.
const QSize kSeveralTabsMinSize(150, 150);

QString Key(const char* key)
{
    return QString::fromLatin1(key);
}

// The box's tab bar is its chrome, like the title buttons: card events spreading through the box
// (a linked stock change reaches every box of its group) stop here instead of visiting the bar
// and its scroll buttons.
class CBoxTabBar : public vx_std_ui::VTabBarBase, public IVUIEventHandlerBase
{
public:
    void DirectHandleUIEvent(const IVUIEventTypeBase*) override {}
    bool IsContinueDispatchUIEventToAllChild() const override { return false; }
    bool HasListenedEvent(const IVUIEventTypeBase*) const override { return false; }
};

} // namespace

namespace panelbox_detail {

unsigned long long NewTabId()
{
    static std::atomic<unsigned long long> last{0};
    return ++last;
}

void SendGroupLeft(const QString& scope, const QString& groupId)
{
    core::CMessageBody body;
    const QByteArray scopeUtf8 = scope.toUtf8();
    const QByteArray groupUtf8 = groupId.toUtf8();
    body.set_exdata(scopeUtf8.constData(), static_cast<size_t>(scopeUtf8.size()));
    body.set_exparam(groupUtf8.constData(), static_cast<size_t>(groupUtf8.size()));
    core::__CMessageDispatch::Instance().Send(CVXPanelScrollView::kMsgPanelGroupLeft, 0, body, true);
}

} // namespace panelbox_detail

CVXPanelAtomizationBox::CVXPanelAtomizationBox(bool isPopup, unsigned long long boxId, QWidget* parent)
    : CVXPanelBaseBox(parent), d(std::make_unique<Impl>())
{
    d->q = this;
    d->bPopup = isPopup;
    d->u64BoxId = boxId != 0 ? boxId : GenerateNewId();
    setObjectName(QStringLiteral("CVXPanelAtomizationBox"));

    // The tab widget fills the box inside one pixel of frame (resizeEvent); the title strip is its
    // bar row. Limits are the box's own (GetBoxMinSize / AdjustRectByDrag), not a layout's.
    d->tabs = new vx_std_ui::VTabWidget(new CBoxTabBar, this);
    d->tabs->setObjectName(QStringLiteral("PanelBoxTabWidget"));
    d->tabs->tabBar()->setTabDragOutEnabled(true);
    d->tabs->tabBar()->setMovable(true);
    d->tabs->setTabsClosable(true);
    d->tabs->setGeometry(rect().adjusted(1, 1, -1, -1));
    SetTabWidget(d->tabs);
    d->BuildTitleStrip();

    d->gesture = std::make_unique<panelbox_detail::CPanelBoxGesture>(
        this, panelbox_detail::GestureFields{m_ptPress, m_rcPressGeometry, m_bPressed, m_enLastHitPos});
    auto* titleFilter = new panelbox_detail::CPanelBoxTitleFilter(this, d->gesture.get());
    titleFilter->Watch(d->tabs->tabBar());
    titleFilter->Watch(d->tabs->tabBar()->parentWidget());
    titleFilter->Watch(d->tabs->cornerWidget());

    connect(d->tabs, &vx_std_ui::VTabWidget::currentChanged, this,
            &CVXPanelAtomizationBox::OnTabCurrentPageChanged);
    connect(d->tabs, &vx_std_ui::VTabWidget::pageCreated, this,
            [this](int index, QWidget* page) { d->OnPageCreated(index, page); });
    connect(d->tabs, &vx_std_ui::VTabWidget::tabCloseRequested, this, &CVXPanelAtomizationBox::RemoveTabAt);
    connect(d->tabs->tabBar(), &vx_std_ui::VTabBarBase::TabDragOut, this,
            &CVXPanelAtomizationBox::OnTabDraggedOut);

    RegisterUIEventHandler<CardEventStockIDChanged>(this, &CVXPanelAtomizationBox::OnCardEventStockIDChanged);
    RegisterUIEventHandler<CardEventAccountInfoChanged>(
        this, &CVXPanelAtomizationBox::OnCardEventAccountInfoChanged);
    RegisterUIEventHandler<CardEventComboOptionChanged>(
        this, &CVXPanelAtomizationBox::OnCardEventComboOptionChanged);
    RegisterUIEventHandler<CardEventOptionIndexChanged>(
        this, &CVXPanelAtomizationBox::OnCardEventOptionIndexChanged);
    RegisterUIEventHandler<CardEventClicked>(this, &CVXPanelAtomizationBox::OnCardEventClicked);
    RegisterUIEventHandler<CardEventDoubleClicked>(this, &CVXPanelAtomizationBox::OnCardEventDoubleClicked);
    RegisterUIEventHandler<CardEventSearchClicked>(this, &CVXPanelAtomizationBox::OnCardEventSearchClicked);
    RegisterUIEventHandler<CardEventCommonJump>(this, &CVXPanelAtomizationBox::OnCardEventCommonJump);
    RegisterUIEventHandler<CardEventPostionsOpenPlaceOrder>(
        this, &CVXPanelAtomizationBox::OnCardEventPostionsOpenPlaceOrder);
    RegisterUIEventHandler<CardEventPostionsOpenPlaceOrderComboOption>(
        this, &CVXPanelAtomizationBox::OnCardEventPostionsOpenPlaceOrderComboOption);
    RegisterUIEventHandler<CardEventOpenTradeOrders>(this,
                                                     &CVXPanelAtomizationBox::OnCardEventOpenTradeOrders);
    RegisterUIEventHandler<CardEventPlaceOrderComboOptionOpenOptionChain>(
        this, &CVXPanelAtomizationBox::OnCardEventPlaceOrderComboOptionOpenOptionChain);

    CVXPanelBoxManager::instance()->AddPanelBox(this);
}

CVXPanelAtomizationBox::~CVXPanelAtomizationBox()
{
    CVXPanelBoxManager::instance()->RemovePanelBox(this);
    // The pop-out windows release a group when its last box goes.
    if (!m_strGroupID.isEmpty())
        panelbox_detail::SendGroupLeft(d->Scope(), m_strGroupID);
    // The tab widget (a child) still signals while it is destroyed; d must not be reached then.
    disconnect(d->tabs, nullptr, this, nullptr);
}

unsigned long long CVXPanelAtomizationBox::GetBoxId() const
{
    return d->u64BoxId;
}

bool CVXPanelAtomizationBox::IsPopup() const
{
    return d->bPopup;
}

void CVXPanelAtomizationBox::DeleteLaterEx()
{
    if (d->groupSetting)
        d->groupSetting->close();
    // Until the deferred deletion runs the box must be neither seen nor hit.
    hide();
    CVXPanelBaseBox::DeleteLaterEx();
}

// ---------------------------------------------------------------------------------------------
// Record

void CVXPanelAtomizationBox::GetObjRestoreData(CVXVariantMapTree* tree) const
{
    GetObjRestoreData(tree, -1);
}

void CVXPanelAtomizationBox::GetObjRestoreData(CVXVariantMapTree* tree, int cardIndex) const
{
    if (!tree)
        return;
    QVector<CVXVariantMapTree> cards;
    int current = GetCurrentTabIndex();
    for (int i = 0; i < GetTabCount(); ++i) {
        if (cardIndex >= 0 && i != cardIndex)
            continue;
        CVXVariantMapTree entry;
        QString type;
        CVXVariantMapTree data;
        GetTabCardData(i, &type, &data);
        entry.Set<QString>(Key(kKeyCardType), type);
        entry.Set<CVXVariantMapTree>(Key(kKeyCardData), data);
        cards.append(entry);
    }
    if (cardIndex >= 0)
        current = 0;
    tree->Set<VXPanelBoxType>(Key(kKeyBoxType), VXPanelBoxType_AtomizationBox);
    tree->Set<QRect>(Key(kKeyPanelBoxPos), geometry());
    tree->Set<QVector<CVXVariantMapTree>>(Key(kKeyCards), cards);
    tree->Set<int>(Key(kKeyCurVisibleCard), current);
    tree->Set<unsigned long long>(Key(kKeyStockID), GetStockID());
    tree->Set<CVXVariantMapTree>(Key(kKeyAccountInfo),
                                 const_cast<CVXPanelAtomizationBox*>(this)->GetAccountInfo());
    tree->Set<QString>(Key(kKeyGroupID), m_strGroupID);
    tree->Set<QString>(Key(kKeyGroupColor), GetGroupColor());
}

void CVXPanelAtomizationBox::SetObjRestoreData(const CVXVariantMapTree& tree)
{
    // Everything is read first; the box changes only afterwards.
    const QRect pos = tree.Get<QRect>(Key(kKeyPanelBoxPos));
    const QVector<CVXVariantMapTree> cards = tree.Get<QVector<CVXVariantMapTree>>(Key(kKeyCards));
    const int current = tree.Get<int>(Key(kKeyCurVisibleCard), 0);
    const unsigned long long stockId = tree.Get<unsigned long long>(Key(kKeyStockID), 0);
    const CVXVariantMapTree account = tree.Get<CVXVariantMapTree>(Key(kKeyAccountInfo));
    const QString groupId = tree.Get<QString>(Key(kKeyGroupID));
    const QString groupColor = tree.Get<QString>(Key(kKeyGroupColor));

    if (pos.isValid())
        setGeometry(pos);
    CVXObjBase::SetStockID(stockId);
    CVXBoxObjBase::SetAccountInfo(account);
    const int shown = (current >= 0 && current < cards.size()) ? current : 0;
    // Hidden while tabs go in: the first tab inserted becomes current, and a current lazy tab of a
    // visible tab widget would be built at once.
    const bool tabsWereHidden = d->tabs->isHidden();
    d->tabs->hide();
    int shownAt = -1;
    for (int i = 0; i < cards.size(); ++i) {
        const QString type = cards[i].Get<QString>(Key(kKeyCardType));
        const CVXVariantMapTree data = cards[i].Get<CVXVariantMapTree>(Key(kKeyCardData));
        if (!CVXCardFactoryMgr::Instance().HasFactory(type)) {
            VXLOG_WARN(
                "CVXPanelAtomizationBox::SetObjRestoreData: card type '{}' has no factory; tab dropped",
                type);
            continue;
        }
        // Only the tab on show is built now; the others when first opened.
        if (i == shown) {
            if (CVXCardObjBase* card = d->MakeCard(type, CVXVariantMapTree(), data, CVXVariantMapTree()))
                shownAt = d->InsertCard(card, type, -1, 0);
        } else {
            d->InsertLazyTab(type, data, 0);
        }
    }
    if (shownAt >= 0)
        SetCurrentTabIndex(shownAt);
    if (!tabsWereHidden)
        d->tabs->show();
    SetGroupColor(groupColor);
    SetGroupID(groupId);
}

bool CVXPanelAtomizationBox::GetTabCardData(int index, QString* cardType, CVXVariantMapTree* cardData) const
{
    if (index < 0 || index >= GetTabCount())
        return false;
    const Impl::TabInfo info = d->tabInfos.value(d->tabs->tabGlobalId(index));
    CVXCardObjBase* card = GetCardByIndex(index);
    if (cardType)
        *cardType = info.strCardType.isEmpty() && card ? card->GetCardObjType() : info.strCardType;
    if (cardData) {
        *cardData = CVXVariantMapTree();
        if (card)
            card->GetObjRestoreData(cardData);
        else
            *cardData = info.lazyData;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// Values

void CVXPanelAtomizationBox::SetAccountInfo(const CVXVariantMapTree& info)
{
    CVXBoxObjBase::SetAccountInfo(info);
    for (int i = 0; i < GetTabCount(); ++i) {
        if (CVXCardObjBase* card = GetCardByIndex(i))
            card->SetAccountInfo(info);
    }
}

void CVXPanelAtomizationBox::SetComboOptionInfo(const CVXVariantMapTree& info)
{
    d->comboOptionInfo = info;
    for (int i = 0; i < GetTabCount(); ++i) {
        if (CVXCardObjBase* card = GetCardByIndex(i))
            card->SetComboOptionInfo(info);
    }
}

void CVXPanelAtomizationBox::SetOptionIndexInfo(const CVXVariantMapTree& info)
{
    CVXBoxObjBase::SetOptionIndexInfo(info);
    for (int i = 0; i < GetTabCount(); ++i) {
        if (CVXCardObjBase* card = GetCardByIndex(i))
            card->SetOptionIndexInfo(info);
    }
}

CVXVariantMapTree CVXPanelAtomizationBox::GetAccountInfo()
{
    return CVXBoxObjBase::GetAccountInfo();
}

CVXVariantMapTree CVXPanelAtomizationBox::GetComboOptionInfo()
{
    return d->comboOptionInfo;
}

CVXVariantMapTree CVXPanelAtomizationBox::GetOptionIndexInfo()
{
    return CVXBoxObjBase::GetOptionIndexInfo();
}

unsigned long long CVXPanelAtomizationBox::GetStockID() const
{
    // A box follows its own security, never its tab frame's.
    return GetOwnStockID();
}

void CVXPanelAtomizationBox::SetStockID(const unsigned long long& stockID)
{
    CVXObjBase::SetStockID(stockID);
}

void CVXPanelAtomizationBox::UpdateBoxStockID(unsigned long long stockID)
{
    if (stockID == GetStockID())
        return;
    CVXObjBase::SetStockID(stockID);
    CardEventStockIDChanged event(stockID);
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(this, &event, this);
}

void CVXPanelAtomizationBox::UpdateBoxAccountInfo(const CVXVariantMapTree& info)
{
    CVXBoxObjBase::SetAccountInfo(info);
}

void CVXPanelAtomizationBox::UpdataBoxComboOptionInfo(const CVXVariantMapTree& info)
{
    d->comboOptionInfo = info;
}

QString CVXPanelAtomizationBox::GetGroupID() const
{
    return m_strGroupID;
}

void CVXPanelAtomizationBox::SetGroupID(const QString& groupId)
{
    if (groupId == m_strGroupID)
        return;
    const QString oldGroup = m_strGroupID;
    m_strGroupID = groupId;
    d->groupBtn->SetGroup(groupId);
    if (CVXPanelScrollView* view = GetPanelScrollView(); view && !groupId.isEmpty())
        view->UpdateUserSelectedGroupID(groupId);
    d->ExchangeGroupValues();
    if (!oldGroup.isEmpty())
        panelbox_detail::SendGroupLeft(d->Scope(), oldGroup);
}

void CVXPanelAtomizationBox::SetGroupColor(const QString& color)
{
    d->groupColor = color;
    // An unlinked box without a mask needs none for an empty colour.
    if (d->mask || !color.isEmpty())
        GetMask()->SetGroupColor(color);
    d->groupBtn->SetColor(color);
}

QString CVXPanelAtomizationBox::GetGroupColor() const
{
    return d->groupColor;
}

CVXPanelBoxMask* CVXPanelAtomizationBox::GetMask() const
{
    if (!d->mask) {
        // Made on demand from const readers too: the mask is the box's look, not its state.
        auto* self = const_cast<CVXPanelAtomizationBox*>(this);
        d->mask = new CVXPanelBoxMask(self);
        d->mask->SetGroupColor(d->groupColor);
        self->SetMask(d->mask);
    }
    return d->mask;
}

// ---------------------------------------------------------------------------------------------
// Size

QSize CVXPanelAtomizationBox::CardSizeAddBoxBorder(const QSize& cardSize)
{
    return panelbox_geometry::CardSizeAddBoxBorder(cardSize);
}

QSize CVXPanelAtomizationBox::GetBoxMinSize() const
{
    CVXCardObjBase* card = GetTabCount() == 1 ? GetCardByIndex(0) : nullptr;
    return card ? CardSizeAddBoxBorder(card->GetCardMinSize()) : kSeveralTabsMinSize;
}

QSize CVXPanelAtomizationBox::GetBoxMaxSize() const
{
    CVXCardObjBase* card = GetTabCount() == 1 ? GetCardByIndex(0) : nullptr;
    return card ? CardSizeAddBoxBorder(card->GetCardMaxSize()) : QSize(-1, -1);
}

QRect CVXPanelAtomizationBox::AdjustRectByDrag(const QRect& rect, int hitPos) const
{
    return panelbox_geometry::AdjustRectByDrag(rect, geometry(), hitPos, GetBoxMinSize(), GetBoxMaxSize());
}

void CVXPanelAtomizationBox::OnCardCurrentSizeChanged(QSize size)
{
    const QSize wanted = CardSizeAddBoxBorder(size);
    if (!wanted.isValid() || wanted == this->size())
        return;
    resize(wanted);
    if (CVXPanelScrollView* view = GetPanelScrollView())
        view->UpdateScrollInfo();
}

void CVXPanelAtomizationBox::OnCardMaxMinSizeChanged()
{
    const QSize minSize = GetBoxMinSize();
    const QSize maxSize = GetBoxMaxSize();
    QSize size = this->size();
    if (maxSize.width() >= 0)
        size.setWidth(std::min(size.width(), maxSize.width()));
    if (maxSize.height() >= 0)
        size.setHeight(std::min(size.height(), maxSize.height()));
    size = size.expandedTo(minSize);
    if (size != this->size())
        resize(size);
}

// ---------------------------------------------------------------------------------------------
// Cards and tabs

bool CVXPanelAtomizationBox::Append(const QString& cardType, const CVXVariantMapTree& cardData, int index,
                                    const CVXVariantMapTree& property)
{
    CardInfoExt info;
    info.strCardType = cardType;
    info.cardData = cardData;
    info.property = property;
    info.nIndex = index;
    return CreateCard(info);
}

bool CVXPanelAtomizationBox::Append(const CVXVariantMapTree& record,
                                    const QVector<unsigned long long>& tabIds)
{
    const QVector<CVXVariantMapTree> cards = record.Get<QVector<CVXVariantMapTree>>(Key(kKeyCards));
    bool any = false;
    for (int i = 0; i < cards.size(); ++i) {
        CardInfoExt info;
        info.strCardType = cards[i].Get<QString>(Key(kKeyCardType));
        info.cardData = cards[i].Get<CVXVariantMapTree>(Key(kKeyCardData));
        info.u64TabId = i < tabIds.size() ? tabIds[i] : 0;
        any = CreateCard(info) || any;
    }
    return any;
}

bool CVXPanelAtomizationBox::CreateCard(CardInfoExt& info)
{
    if (info.strCardType.isEmpty())
        return false;
    // A tab id already used here would make two tabs answer to one id.
    if (info.u64TabId != 0 && d->tabs->indexOfTabId(info.u64TabId) >= 0)
        info.u64TabId = 0;
    CVXCardObjBase* card = d->MakeCard(info.strCardType, CVXVariantMapTree(), info.cardData, info.property);
    if (!card)
        return false;
    const int at = d->InsertCard(card, info.strCardType, info.nIndex, info.u64TabId);
    if (at < 0)
        return false;
    info.nIndex = at;
    info.u64TabId = d->tabs->tabId(at);
    return true;
}

bool CVXPanelAtomizationBox::CreateCardAndOpen(const QString& cardType, const CVXVariantMapTree& data,
                                               const CVXVariantMapTree& property)
{
    CVXCardObjBase* card = d->MakeCard(cardType, data, CVXVariantMapTree(), property);
    if (!card)
        return false;
    const int at = d->InsertCard(card, cardType, -1, 0);
    if (at < 0)
        return false;
    SetCurrentTabIndex(at);
    return true;
}

void CVXPanelAtomizationBox::SwitchCard(const QString& cardType)
{
    const int index = GetCurrentTabIndex();
    if (cardType.isEmpty() || index < 0)
        return;
    CVXCardObjBase* card =
        d->MakeCard(cardType, CVXVariantMapTree(), CVXVariantMapTree(), CVXVariantMapTree());
    if (!card)
        return;
    const unsigned long long tabId = d->tabs->tabId(index);
    d->tabInfos.remove(d->tabs->tabGlobalId(index));
    Remove(index, true);
    d->InsertCard(card, cardType, index, tabId);
    SetCurrentTabIndex(index);
}

namespace {
bool SameAccount(CVXCardObjBase* card, const CVXVariantMapTree& account)
{
    return card->GetAccountInfo() == account;
}
} // namespace

bool CVXPanelAtomizationBox::FindCardByCardTypeToSetAccountAndProperty(const QString& cardType,
                                                                       const CVXVariantMapTree& account,
                                                                       const CVXVariantMapTree& property)
{
    for (int i = 0; i < GetTabCount(); ++i) {
        QString type;
        GetTabCardData(i, &type, nullptr);
        if (type != cardType)
            continue;
        SetCurrentTabIndex(i);
        auto* card = dynamic_cast<CVXCardObjBase*>(d->tabs->widget(i, true));
        if (!card)
            return false;
        if (!account.IsEmpty())
            card->SetAccountInfo(account);
        card->SetObjProperty(cardType, property);
        return true;
    }
    return false;
}

bool CVXPanelAtomizationBox::FindCardByCardTypeAndAccountToSetProperty(const QString& cardType,
                                                                       const CVXVariantMapTree& account,
                                                                       const CVXVariantMapTree& property)
{
    for (int i = 0; i < GetTabCount(); ++i) {
        QString type;
        GetTabCardData(i, &type, nullptr);
        auto* card = type == cardType ? dynamic_cast<CVXCardObjBase*>(d->tabs->widget(i, true)) : nullptr;
        if (!card || !SameAccount(card, account))
            continue;
        SetCurrentTabIndex(i);
        card->SetObjProperty(cardType, property);
        return true;
    }
    return false;
}

QVector<unsigned long long> CVXPanelAtomizationBox::GetTabIds() const
{
    QVector<unsigned long long> ids;
    for (int i = 0; i < GetTabCount(); ++i)
        ids.append(d->tabs->tabId(i));
    return ids;
}

bool CVXPanelAtomizationBox::RemoveTabById(unsigned long long tabId)
{
    const int index = d->tabs->indexOfTabId(tabId);
    if (index < 0)
        return false;
    d->tabInfos.remove(d->tabs->tabGlobalId(index));
    Remove(index, true);
    return true;
}

QRect CVXPanelAtomizationBox::GetTabRect() const
{
    vx_std_ui::VTabBarBase* bar = d->tabs->tabBar();
    return QRect(bar->mapTo(this, QPoint(0, 0)), bar->size());
}

void CVXPanelAtomizationBox::RemoveTabAt(int index)
{
    if (index < 0 || index >= GetTabCount())
        return;
    if (GetTabCount() == 1) {
        // The last tab takes the box with it; undo brings both back.
        BeforeCommand<panelbox_undo_cmd::Deleted>();
        DeleteLaterEx();
        AfterCommand<panelbox_undo_cmd::Deleted>();
        return;
    }
    QString type;
    CVXVariantMapTree data;
    GetTabCardData(index, &type, &data);
    BeforeCommand<panelbox_undo_cmd::CardDeleted>(static_cast<long long>(index), type, data);
    d->tabInfos.remove(d->tabs->tabGlobalId(index));
    Remove(index, true);
    // Closing a tab always changes the box: the command is pushed as it stands.
    if (CVXPanelUndoStack* stack = GetUndoStack()) {
        auto* cmd = dynamic_cast<panelbox_undo_cmd::CardDeleted*>(stack->GetPendingCommand());
        if (cmd && cmd->GetPanelBoxId() == GetBoxId())
            stack->PushCommand(static_cast<panelbox_undo_cmd::IBaseCmd*>(stack->TakePendingCommand()));
    }
}

void CVXPanelAtomizationBox::OnClickClose()
{
    BeforeCommand<panelbox_undo_cmd::Deleted>();
    DeleteLaterEx();
    AfterCommand<panelbox_undo_cmd::Deleted>();
}

void CVXPanelAtomizationBox::OnTabDraggedOut(int index, const QPoint& globalPos)
{
    CVXPanelScrollView* view = GetPanelScrollView();
    if (!view || d->bPopup || GetTabCount() < 2 || !GetCardByIndex(index))
        return;
    // The source's state before the tab leaves it.
    BeforeCommand<panelbox_undo_cmd::TabDragMoved>(index);

    auto* box = new CVXPanelAtomizationBox(false, 0, view->GetContentWidget());
    view->SetDragOutPanelBox(box);
    view->InsertItem(box);
    // Values first: a card appended to a box takes the box's security.
    box->CVXObjBase::SetStockID(GetStockID());
    box->SetAccountInfo(GetAccountInfo());
    box->SetComboOptionInfo(GetComboOptionInfo());
    box->SetOptionIndexInfo(GetOptionIndexInfo());
    CardInfoExt info;
    GetTabCardData(index, &info.strCardType, &info.cardData);
    info.u64TabId = d->tabs->tabId(index);
    d->tabInfos.remove(d->tabs->tabGlobalId(index));
    Remove(index, true);
    box->CreateCard(info);
    box->resize(size());
    box->move(view->GetContentWidget()->mapFromGlobal(globalPos) - QPoint(16, 16));
    box->raise();
    box->show();
    box->d->gesture->StartDragOut(globalPos, this);
    if (CVXPanelUndoStack* stack = GetUndoStack()) {
        if (auto* cmd = dynamic_cast<panelbox_undo_cmd::TabDragMoved*>(stack->GetPendingCommand()))
            cmd->SetTornOutBox(box);
    }
    d->gesture->SetForwardingTabDrag(true);
}

void CVXPanelAtomizationBox::SetDraggingPosition(const QPoint& globalPos)
{
    d->gesture->StartDragOut(globalPos, nullptr);
}

void CVXPanelAtomizationBox::DetachPanelBox()
{
    VXLOG_DEBUG("CVXPanelAtomizationBox::DetachPanelBox: pop-out windows are not available; box {} stays",
                GetBoxId());
}

bool CVXPanelAtomizationBox::IsWaitingDrop() const
{
    return d->bWaitingDrop;
}

void CVXPanelAtomizationBox::SetIsWaitingDrop(bool waiting)
{
    d->bWaitingDrop = waiting;
}

void CVXPanelAtomizationBox::SetIsWaitingOtherDrop(bool waiting)
{
    if (waiting || d->mask)
        GetMask()->SetDropHighlight(waiting ? GetTabRect() : QRect());
}

void CVXPanelAtomizationBox::OnTabWidgetCurrentPageChanged(int index, QWidget* page)
{
    (void)index;
    // A lazy page made on show already has its context; one that is current keeps the box's.
    if (auto* card = dynamic_cast<CVXCardObjBase*>(page);
        card && GetStockID() != 0 && card->GetStockID() == 0)
        card->SetStockID(GetStockID());
}

void CVXPanelAtomizationBox::OnTabCurrentPageChanged(int index)
{
    OnTabWidgetCurrentPageChanged(index, d->tabs->widget(index));
}
