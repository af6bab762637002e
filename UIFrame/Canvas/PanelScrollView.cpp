#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/Canvas/PanelScrollView_p.h"

#include "UIFrame/Canvas/PanelBoxKindRegistry.h"
#include "UIFrame/Canvas/PanelCanvasMenu.h"
#include "UIFrame/Canvas/PanelGeometry.h"
#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/PanelBox/PanelUndoCmd.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/TimeDate.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/TabWidget.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSet>
#include <QUndoStack>

#include <algorithm>
#include <vector>

namespace {

using panel_scroll_view_detail::Key;

constexpr const char* kKeyPanelBoxsData = "PanelBoxsData";
constexpr const char* kKeyBoxCount = "BoxCount";
constexpr const char* kKeyViewX = "ViewX";
constexpr const char* kKeyViewY = "ViewY";
constexpr const char* kKeyUserGroupID = "UserGroupID";
constexpr const char* kKeyLayoutKey = "LayoutKey";
constexpr const char* kKeyPreviousSavedCommandId = "PreviousSavedCommandId";
constexpr const char* kKeyShortcutId = "ShortcutId";
constexpr const char* kKeyIsSaveAsTemplate = "IsSaveAsTemplate";
constexpr const char* kKeyBoxType = "BoxType";

// A card type whose factory has no ideal size still gets a usable box.
constexpr QSize kDefaultCardSize(400, 300);

unsigned long long NextCanvasNumber()
{
    static unsigned long long s_counter = 0;
    return ++s_counter;
}

// The content widget paints the canvas a shade darker than the white card bodies, so that every
// box stands out with its frame and the 4 px gaps read as gaps. Painted rather than set as a
// palette: a palette would pass on to the boxes and their cards.
class CanvasContent : public QWidget
{
public:
    CanvasContent() { UpdateColor(); }
    void UpdateColor()
    {
        m_color = vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_bg_secondary"));
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (!m_color.isValid())
            return;
        QPainter painter(this);
        painter.fillRect(event->rect(), m_color);
    }

private:
    QColor m_color;
};

} // namespace

QVector<QPointer<CVXPanelScrollView>>& panel_scroll_view_detail::LiveCanvases()
{
    static QVector<QPointer<CVXPanelScrollView>> s_canvases;
    return s_canvases;
}

using panel_scroll_view_detail::LiveCanvases;

CVXPanelScrollView::Impl::Item* CVXPanelScrollView::Impl::Find(const CVXPanelBaseBox* box)
{
    for (Item& item : items) {
        if (item.box == box)
            return &item;
    }
    return nullptr;
}

QVector<CVXPanelBaseBox*> CVXPanelScrollView::Impl::BoxesOnCanvas() const
{
    QVector<CVXPanelBaseBox*> boxes;
    for (const Item& item : items) {
        if (item.guard && !item.guard->IsDeleted() && item.data.bOnCanvas &&
            item.guard->parentWidget() == content)
            boxes.append(item.guard);
    }
    return boxes;
}

// ----------------------------------------------------------------------------------------------
// Construction

CVXPanelScrollView::CVXPanelScrollView(QWidget* parent)
    : vx_std_ui::VScrollArea(parent), d(std::make_unique<Impl>(this))
{
    d->ownScope = QStringLiteral("PanelPage_") + QString::number(NextCanvasNumber());
    LiveCanvases().append(this);
    InitUi();
    core::__CMessageDispatch::Instance().Bind(
        kMsgPanelLinkageDataChanged,
        [this](unsigned int, unsigned long long param, const core::CMessageBody& body) {
            QString scope = QString::fromUtf8(body.exdata().data(), static_cast<int>(body.exdata().size()));
            QString group = QString::fromUtf8(body.exparam().data(), static_cast<int>(body.exparam().size()));
            HandlePanelLinkageDataChanged(scope, group, static_cast<unsigned long>(param));
        },
        this);
}

CVXPanelScrollView::~CVXPanelScrollView()
{
    // The undo stack (a base) is destroyed after d and clears itself then, announcing the index
    // change to a handler that would reach into d.
    disconnect(GetQUndoStack(), nullptr, this, nullptr);
    core::__CMessageDispatch::Instance().UnBind(kMsgPanelLinkageDataChanged, this);
    LiveCanvases().removeAll(QPointer<CVXPanelScrollView>(this));
    LiveCanvases().removeAll(QPointer<CVXPanelScrollView>());
    // The boxes go now, while the whole canvas still exists: QWidget's destructor would delete
    // them after the undo stack and the rest of this object are gone.
    std::vector<Impl::Item> items;
    items.swap(d->items);
    for (Impl::Item& item : items) {
        disconnect(item.data.destroyedConnection);
        if (item.guard) {
            if (auto* mgr = CVXPanelBoxManager::instancePtr())
                mgr->RemovePanelBox(item.guard);
            delete item.guard.data();
        }
    }
    if (auto* mgr = CVXPanelBoxManager::instancePtr()) {
        if (mgr->GetCurrentPanelScrollView() == this)
            mgr->SetCurrentPanelScrollView(nullptr);
    }
}

void CVXPanelScrollView::InitUi()
{
    if (d->uiReady)
        return;
    d->uiReady = true;
    setObjectName(QStringLiteral("panelscrollview"));
    setFocusPolicy(Qt::StrongFocus);

    auto* content = new CanvasContent;
    d->content = content;
    d->content->setObjectName(QStringLiteral("panelscrollview_content"));
    setWidget(d->content);
    // setWidget turns the palette fill on; the content paints itself.
    d->content->setAutoFillBackground(false);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            [content](vx_ui_res::Theme) { content->UpdateColor(); });

    RegisterUIEventHandler<CardEventPostionsOpenPlaceOrderInner>(
        this, &CVXPanelScrollView::OnCardEventPostionsOpenPlaceOrderInner);
    RegisterUIEventHandler<CardEventOpenTradeOrdersInner>(
        this, &CVXPanelScrollView::OnCardEventOpenTradeOrdersInner);
    RegisterUIEventHandler<CardEventPostionsOpenPlaceOrderComboOptionInner>(
        this, &CVXPanelScrollView::OnCardEventPostionsOpenPlaceOrderComboOptionInner);
    RegisterUIEventHandler<CardEventPlaceOrderComboOptionOpenOptionChainInner>(
        this, &CVXPanelScrollView::OnCardEventPlaceOrderComboOptionOpenOptionChainInner);
    RegisterUIEventHandler<CardEventCommonJumpInner>(this, &CVXPanelScrollView::OnCardEventCommonJumpInner);

    // QUndoStack announces canUndo/canRedo on every index move and flips them while a macro is
    // open; the canvas tells its listeners once per real change, after the step has landed.
    QUndoStack* stack = GetQUndoStack();
    connect(stack, &QUndoStack::indexChanged, this, [this](int) {
        DispatchcanUndoChanged(CanUndo());
        DispatchcanRedoChanged(CanRedo());
        Q_EMIT ContentChanged();
    });

    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &CVXPanelScrollView::OnValueChanged);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &CVXPanelScrollView::OnValueChanged);
    for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) {
        connect(bar, &QScrollBar::sliderPressed, this, &CVXPanelScrollView::OnSliderPressed);
        connect(bar, &QScrollBar::sliderReleased, this, &CVXPanelScrollView::OnSliderReleased);
    }
}

QWidget* CVXPanelScrollView::GetContentWidget() const
{
    return d->content;
}

void CVXPanelScrollView::DispatchcanUndoChanged(bool canUndo)
{
    if (canUndo == d->lastCanUndo)
        return;
    d->lastCanUndo = canUndo;
    Q_EMIT canUndoChanged(canUndo);
}

void CVXPanelScrollView::DispatchcanRedoChanged(bool canRedo)
{
    if (canRedo == d->lastCanRedo)
        return;
    d->lastCanRedo = canRedo;
    Q_EMIT canRedoChanged(canRedo);
}

// ----------------------------------------------------------------------------------------------
// Box management

void CVXPanelScrollView::InsertItem(CVXPanelBaseBox* box)
{
    if (!box) {
        VXLOG_WARN("CVXPanelScrollView::InsertItem: null box");
        return;
    }
    if (box->parentWidget() != d->content)
        box->setParent(d->content);
    box->SetPanelScrollView(this);
    if (!d->Find(box)) {
        Impl::Item item;
        item.box = box;
        item.guard = box;
        item.data.bOnCanvas = true;
        item.data.destroyedConnection =
            connect(box, &QObject::destroyed, this, [this, box]() { OnItemDestroy(box); });
        d->items.push_back(item);
    }
    CVXPanelBoxManager::instance()->AddPanelBox(box);
    box->show();
}

void CVXPanelScrollView::RemoveItem(CVXPanelBaseBox* box)
{
    if (!box)
        return;
    const auto it = std::find_if(d->items.begin(), d->items.end(),
                                 [box](const Impl::Item& item) { return item.box == box; });
    if (it != d->items.end()) {
        disconnect(it->data.destroyedConnection);
        d->items.erase(it);
    }
    CVXPanelBoxManager::instance()->RemovePanelBox(box);
    if (d->dragInTarget == box)
        d->dragInTarget = nullptr;
    if (d->dragOutBox == box)
        d->dragOutBox = nullptr;
}

void CVXPanelScrollView::OnItemDestroy(CVXPanelBaseBox* box)
{
    // The box is being destroyed: forget it without calling into it.
    const auto it = std::find_if(d->items.begin(), d->items.end(),
                                 [box](const Impl::Item& item) { return item.box == box; });
    if (it != d->items.end())
        d->items.erase(it);
}

void CVXPanelScrollView::ClearAllPanelBox()
{
    const QVector<CVXPanelBaseBox*> boxes = GetPanelBoxes();
    for (CVXPanelBaseBox* box : boxes) {
        RemoveItem(box);
        // Hidden at once: until the deferred deletion runs it must not be seen or hit.
        box->hide();
        box->DeleteLaterEx();
    }
}

void CVXPanelScrollView::CleanUp()
{
    ClearAllPanelBox();
    d->dragOutBox = nullptr;
    d->dragInTarget = nullptr;
    // The history refers to boxes that are gone.
    const long long saved = GetPreviousSavedCommandId();
    ClearHistory(GetCurrentCommandId());
    SetPreviousSavedCommandId(saved);
}

QVector<CVXPanelBaseBox*> CVXPanelScrollView::GetPanelBoxes() const
{
    QVector<CVXPanelBaseBox*> boxes;
    boxes.reserve(static_cast<int>(d->items.size()));
    for (const Impl::Item& item : d->items) {
        if (item.guard && !item.guard->IsDeleted())
            boxes.append(item.guard);
    }
    return boxes;
}

CVXPanelBaseBox* CVXPanelScrollView::FindPanelBox(unsigned long long boxId) const
{
    for (const Impl::Item& item : d->items) {
        if (item.guard && !item.guard->IsDeleted() && item.guard->GetBoxId() == boxId)
            return item.guard;
    }
    return nullptr;
}

CVXPanelBaseBox* CVXPanelScrollView::CreateBoxFromRecord(const CVXVariantMapTree& record,
                                                         unsigned long long boxId)
{
    const VXPanelBoxType type = record.Get<VXPanelBoxType>(Key(kKeyBoxType), VXPanelBoxType_AtomizationBox);
    if (type == VXPanelBoxType_CombinationBox) {
        CVXPanelBoxKindRegistry& kinds = CVXPanelBoxKindRegistry::Instance();
        if (!kinds.IsRegistered(type)) {
            VXLOG_WARN("CVXPanelScrollView::CreateBoxFromRecord: no creator for box type {}",
                       static_cast<int>(type));
            return nullptr;
        }
        CVXPanelBaseBox* box = kinds.Create(type, boxId);
        if (!box)
            return nullptr;
        InsertItem(box);
        if (!kinds.Restore(type, box, record)) {
            RemoveItem(box);
            delete box;
            return nullptr;
        }
        return box;
    }

    auto* box = new CVXPanelAtomizationBox(false, boxId, d->content);
    InsertItem(box);
    box->SetObjRestoreData(record);
    if (box->GetTabCount() == 0) {
        // A record without cards leaves nothing worth keeping.
        RemoveItem(box);
        delete box;
        return nullptr;
    }
    return box;
}

// ----------------------------------------------------------------------------------------------
// Adding content

CVXPanelAtomizationBox* CVXPanelScrollView::AddPanelBoxWithCardInitType(const QString& cardType,
                                                                        const CVXVariantMapTree& initData,
                                                                        const QPoint& globalPos, bool hasPos)
{
    CVXCardBaseStyle style;
    if (cardType.isEmpty() || !CVXCardFactoryMgr::Instance().GetCardStyle(cardType, &style)) {
        VXLOG_WARN("CVXPanelScrollView::AddPanelBoxWithCardInitType: unknown card type '{}'", cardType);
        return nullptr;
    }
    const QSize cardSize = style.idealSize.isValid() ? style.idealSize : kDefaultCardSize;
    const QSize boxSize = CVXPanelAtomizationBox::CardSizeAddBoxBorder(cardSize);
    const QPoint topLeft = hasPos ? d->content->mapFromGlobal(globalPos) : GetPlacementPosition(boxSize);

    auto* box = new CVXPanelAtomizationBox(false, 0, d->content);
    box->setGeometry(QRect(topLeft, boxSize));
    InsertItem(box);
    box->BeforeCommand<panelbox_undo_cmd::Created>();
    if (!box->CreateCardAndOpen(cardType, initData, CVXVariantMapTree()) || box->GetTabCount() == 0) {
        VXLOG_WARN("CVXPanelScrollView::AddPanelBoxWithCardInitType: no card made for '{}'", cardType);
        SetPendingCommand(nullptr);
        RemoveItem(box);
        delete box;
        return nullptr;
    }
    box->SetCurrentTabIndex(box->GetTabCount() - 1);
    const QString groupId = GetLastUsedGroupID();
    if (!groupId.isEmpty())
        box->SetGroupID(groupId);
    box->raise();
    UpdateScrollInfo();
    box->AfterCommand<panelbox_undo_cmd::Created>();
    if (!groupId.isEmpty())
        d->TakeGroupValues(box);
    return box;
}

CVXPanelAtomizationBox* CVXPanelScrollView::AddPanelBoxWithCardInitType(const QString& cardType,
                                                                        const QPoint& globalPos,
                                                                        const CVXVariantMapTree& initData)
{
    return AddPanelBoxWithCardInitType(cardType, initData, globalPos, true);
}

void CVXPanelScrollView::Impl::TakeGroupValues(CVXPanelAtomizationBox* box)
{
    // The linkage store answers first (joining the group did that); boxes of the group on this
    // canvas fill what the store does not know.
    const QString groupId = box->GetGroupID();
    if (box->GetStockID() == PanelLinkageDataNullStockID) {
        const unsigned long long stockId = q->GetCurrentGroupStockID(groupId, box);
        if (stockId != PanelLinkageDataNullStockID)
            box->UpdateBoxStockID(stockId);
    }
    if (box->GetAccountInfo().IsEmpty()) {
        const CVXVariantMapTree account = q->GetCurrentGroupAccountInfo(groupId, box);
        if (!account.IsEmpty())
            box->SetAccountInfo(account);
    }
    if (box->GetComboOptionInfo().IsEmpty()) {
        const CVXVariantMapTree combo = q->GetCurrentGroupComboOptionInfo(groupId, box);
        if (!combo.IsEmpty())
            box->SetComboOptionInfo(combo);
    }
    if (box->GetOptionIndexInfo().IsEmpty()) {
        const CVXVariantMapTree optionIndex = q->GetCurrentGroupOptionIndexInfo(groupId, box);
        if (!optionIndex.IsEmpty())
            box->SetOptionIndexInfo(optionIndex);
    }
}

void CVXPanelScrollView::Paste()
{
    const QPoint cursor = d->content->mapFromGlobal(QCursor::pos());
    if (!GetVisibleRectInView().contains(cursor))
        return;
    const QVector<VXPanelBoxCopyData> copies = CVXPanelBoxManager::instance()->GetCopyData();
    if (copies.isEmpty())
        return;

    auto command = std::make_unique<panelbox_undo_cmd::Pasted>();
    command->SetPanelScrollView(this);
    command->BeforeCommand();
    for (const VXPanelBoxCopyData& copy : copies) {
        CVXPanelBaseBox* box = CreateBoxFromRecord(copy.data, 0);
        if (!box)
            continue;
        // The clipboard keeps rectangles relative to the copied group: the cursor anchors them.
        box->setGeometry(copy.rcGeometry.translated(cursor));
        box->raise();
        command->AddPastedBox(box);
    }
    if (command->GetPastedCount() == 0)
        return;
    UpdateScrollInfo();
    command->AfterCommand();
    PushCommand(command.release());
}

// ----------------------------------------------------------------------------------------------
// Geometry

QPoint CVXPanelScrollView::GetPlacementPosition(const QSize& size) const
{
    QVector<QRect> rects;
    for (CVXPanelBaseBox* box : d->BoxesOnCanvas())
        rects.append(box->geometry());
    const QSize page = viewport()->size();
    return panel_geometry::FindPlacement(rects, size, page.width(), page.height());
}

QRect CVXPanelScrollView::GetVisibleRectInView() const
{
    return QRect(-d->content->pos(), viewport()->size());
}

QRect CVXPanelScrollView::CalcItemsRect() const
{
    QVector<QRect> rects;
    for (CVXPanelBaseBox* box : d->BoxesOnCanvas())
        rects.append(box->geometry());
    return panel_geometry::ItemsRect(rects);
}

void CVXPanelScrollView::OffsetItems(const QPoint& offset)
{
    if (offset.isNull())
        return;
    for (const Impl::Item& item : d->items) {
        if (item.guard && item.guard->parentWidget() == d->content)
            item.guard->move(item.guard->pos() + offset);
    }
}

void CVXPanelScrollView::UpdateScrollInfo()
{
    if (!d->content)
        return;
    QScrollBar* hbar = horizontalScrollBar();
    QScrollBar* vbar = verticalScrollBar();
    const QSize page = viewport()->size();
    const panel_geometry::ExtentUpdate update = panel_geometry::ComputeExtent(
        CalcItemsRect(), hbar->value(), vbar->value(), page.width(), page.height(), d->content->size());
    if (!update.changed)
        return;

    QScopedValueRollback<int> guard(d->guardCounter, d->guardCounter + 1);
    d->content->resize(update.contentSize);
    // The bars learn the content's new size only when its resize event arrives: make room for
    // the new values now.
    if (update.h > hbar->maximum())
        hbar->setMaximum(update.h);
    if (update.v > vbar->maximum())
        vbar->setMaximum(update.v);
    hbar->setValue(update.h);
    vbar->setValue(update.v);
    OffsetItems(update.shift);
}

void CVXPanelScrollView::SetBanDealScrollbarValueChangedEvt(bool ban)
{
    d->banScrollbarEvt = ban;
}

void CVXPanelScrollView::SetSnapEnabled(bool on)
{
    d->snapEnabled = on;
}

bool CVXPanelScrollView::IsSnapEnabled() const
{
    return d->snapEnabled;
}

void CVXPanelScrollView::resizeEvent(QResizeEvent* event)
{
    vx_std_ui::VScrollArea::resizeEvent(event);
    UpdateScrollInfo();
}

void CVXPanelScrollView::OnSliderPressed()
{
    // While the user holds a slider the extent stays put: shrinking it under the mouse would
    // make the slider jump.
    d->sliderPressed = true;
}

void CVXPanelScrollView::OnSliderReleased()
{
    d->sliderPressed = false;
    UpdateScrollInfo();
}

void CVXPanelScrollView::OnValueChanged()
{
    if (d->guardCounter > 0 || d->banScrollbarEvt || d->sliderPressed)
        return;
    UpdateScrollInfo();
}

// ----------------------------------------------------------------------------------------------
// Persistence

void CVXPanelScrollView::GetObjRestoreData(CVXVariantMapTree* tree) const
{
    if (!tree) {
        VXLOG_WARN("CVXPanelScrollView::GetObjRestoreData: null tree");
        return;
    }
    QVector<CVXVariantMapTree> records;
    for (CVXPanelBaseBox* box : GetPanelBoxes()) {
        CVXVariantMapTree record;
        box->GetObjRestoreData(&record);
        records.append(record);
    }
    tree->Set<QVector<CVXVariantMapTree>>(Key(kKeyPanelBoxsData), records);
    tree->Set<int>(Key(kKeyBoxCount), records.size());
    tree->Set<int>(Key(kKeyViewX), horizontalScrollBar()->value());
    tree->Set<int>(Key(kKeyViewY), verticalScrollBar()->value());
    tree->Set<QStringList>(Key(kKeyUserGroupID), d->userGroupIds);
    tree->Set<qulonglong>(Key(kKeyLayoutKey), GetObjKey());
    tree->Set<qlonglong>(Key(kKeyPreviousSavedCommandId), GetPreviousSavedCommandId());
    tree->Set<QString>(Key(kKeyShortcutId), d->shortcutId);
    tree->Set<bool>(Key(kKeyIsSaveAsTemplate), d->isSaveAsTemplate);
}

void CVXPanelScrollView::SetObjRestoreData(const CVXVariantMapTree& tree)
{
    QElapsedTimer timer;
    timer.start();
    // Everything is read before anything changes.
    const QStringList userGroupIds = tree.Get<QStringList>(Key(kKeyUserGroupID));
    const int viewX = tree.Get<int>(Key(kKeyViewX), 0);
    const int viewY = tree.Get<int>(Key(kKeyViewY), 0);
    const QVector<CVXVariantMapTree> records = tree.Get<QVector<CVXVariantMapTree>>(Key(kKeyPanelBoxsData));
    const unsigned long long layoutKey = tree.Get<qulonglong>(Key(kKeyLayoutKey), 0);
    const QString shortcutId = tree.Get<QString>(Key(kKeyShortcutId));
    const bool isSaveAsTemplate = tree.Get<bool>(Key(kKeyIsSaveAsTemplate), false);
    const long long savedCommandId = tree.Get<qlonglong>(Key(kKeyPreviousSavedCommandId), 0);

    d->userGroupIds = userGroupIds;
    {
        QScopedValueRollback<int> guard(d->guardCounter, d->guardCounter + 1);
        QScrollBar* hbar = horizontalScrollBar();
        QScrollBar* vbar = verticalScrollBar();
        if (viewX > hbar->maximum())
            hbar->setMaximum(viewX);
        hbar->setValue(viewX);
        if (viewY > vbar->maximum())
            vbar->setMaximum(viewY);
        vbar->setValue(viewY);
    }
    CleanUp();
    for (const CVXVariantMapTree& record : records)
        CreateBoxFromRecord(record, 0);
    SetObjKey(layoutKey);
    d->shortcutId = shortcutId;
    d->isSaveAsTemplate = isSaveAsTemplate;
    UpdateScrollInfo();
    ClearHistory(savedCommandId);
    VXLOG_INFO("Load cards. cards_count : {}, time : {} ms.", records.size(), timer.elapsed());
}

QPixmap CVXPanelScrollView::GrabPixmap()
{
    return grab();
}

QString CVXPanelScrollView::GetTabTitle() const
{
    return d->tabTitle;
}

void CVXPanelScrollView::SetTabTitle(const QString& title)
{
    d->tabTitle = title;
}

QString CVXPanelScrollView::GetShortcutId() const
{
    return d->shortcutId;
}

QString CVXPanelScrollView::GenerateShortcutId()
{
    if (d->shortcutId.isEmpty()) {
        d->shortcutId =
            QString::fromStdString(fmt::format("{}_{}_{}", d->tabTitle, core::time_date::GetServerTimeMs(),
                                               QRandomGenerator::global()->generate()));
    }
    return d->shortcutId;
}

bool CVXPanelScrollView::IsSaveAsTemplate() const
{
    return d->isSaveAsTemplate;
}

void CVXPanelScrollView::SetIsSaveAsTemplate(bool on)
{
    d->isSaveAsTemplate = on;
}
