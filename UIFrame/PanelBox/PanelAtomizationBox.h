#pragma once

// CVXPanelAtomizationBox: the ordinary panel box of the canvas. A framed box whose body is a tab
// widget holding one card per tab (tabs not yet opened hold a CVXCardFactory that creates the card
// on first show), with a title strip carrying the tabs, a group (linkage) button, a menu button and
// a close button. The user moves it by its title strip, resizes it by its edges and corners,
// switches or adds cards from its menu, drags a tab out into a new box, and links it to other boxes
// by group. Every gesture is bracketed by an undo command.
//
// Size limits: the border adds 2 to a card's width and 33 to its height. One card: the card's
// limits plus the border; several tabs: minimum 150 x 150 and no maximum.
//
// A box costs few widgets: its close glyphs are painted by the tab bar, its mask is made on
// first need, and its edge bands are watched through the box manager's application event filter
// (FilterDescendantMouseEvent) rather than covered by grip widgets.

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/PanelBox/PanelBaseBox.h"
#include "UIFrame/UIFrameExport.h"

#include <QPointer>
#include <QVector>

#include <memory>

class CardEventStockIDChanged;
class CardEventAccountInfoChanged;
class CardEventComboOptionChanged;
class CardEventOptionIndexChanged;
class CardEventClicked;
class CardEventDoubleClicked;
class CardEventSearchClicked;
class CardEventCommonJump;
class CardEventPostionsOpenPlaceOrder;
class CardEventPostionsOpenPlaceOrderComboOption;
class CardEventOpenTradeOrders;
class CardEventPlaceOrderComboOptionOpenOptionChain;

class UIFRAME_EXPORT CVXPanelAtomizationBox : public CVXPanelBaseBox, public CVXBoxObjBase
{
    Q_OBJECT
public:
    static constexpr int kBorderWidth = 2;   // added to a card's width
    static constexpr int kBorderHeight = 33; // title strip and frame, added to a card's height
    static constexpr int kTitleHeight = 31;  // the title strip (move handle) ends at y = 31

    // A card to create: its type, restore data, property and where it goes.
    struct CardInfoExt
    {
        QString strCardType;
        CVXVariantMapTree cardData;
        CVXVariantMapTree property;
        int nIndex = -1;                 // -1: at the end
        unsigned long long u64TabId = 0; // 0: a new tab id
    };

    // boxId 0 takes a new id from the generator.
    CVXPanelAtomizationBox(bool isPopup, unsigned long long boxId, QWidget* parent = nullptr);
    ~CVXPanelAtomizationBox() override;

    unsigned long long GetBoxId() const override;
    bool IsPopup() const override;
    void DeleteLaterEx() override;
    // The byte-array forms of the restore interface stay reachable.
    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    // The box record: "BoxType" 0, "PanelBoxPos", "Cards" ({"CardType","CardData"} per tab, an
    // unopened tab saved from its factory), "CurVisibleCard", "StockID", "AccountInfo",
    // "strGroupID", "strGroupColor". The card-index form writes one card only.
    void GetObjRestoreData(CVXVariantMapTree* tree) const override;
    void GetObjRestoreData(CVXVariantMapTree* tree, int cardIndex) const override;
    void SetObjRestoreData(const CVXVariantMapTree& tree) override;
    void SetAccountInfo(const CVXVariantMapTree& info) override;
    void SetComboOptionInfo(const CVXVariantMapTree& info) override;
    void SetOptionIndexInfo(const CVXVariantMapTree& info) override;
    QSize GetBoxMinSize() const override;
    QSize GetBoxMaxSize() const override;

    // Values shared by both bases, answered by the box.
    QString GetGroupID() const override;
    void SetGroupID(const QString& groupId) override;
    void SetGroupColor(const QString& color) override;
    QString GetGroupColor() const override;
    CVXVariantMapTree GetAccountInfo() override;
    CVXVariantMapTree GetComboOptionInfo() override;
    CVXVariantMapTree GetOptionIndexInfo() override;
    unsigned long long GetStockID() const override;
    void SetStockID(const unsigned long long& stockID) override;

    // Card management.
    bool Append(const QString& cardType, const CVXVariantMapTree& cardData, int index,
                const CVXVariantMapTree& property);
    // Appends the cards of a saved box record; the tab ids given (one per card) are reused.
    bool Append(const CVXVariantMapTree& record, const QVector<unsigned long long>& tabIds);
    void SwitchCard(const QString& cardType);
    bool CreateCard(CardInfoExt& info);
    bool CreateCardAndOpen(const QString& cardType, const CVXVariantMapTree& data,
                           const CVXVariantMapTree& property);
    bool FindCardByCardTypeToSetAccountAndProperty(const QString& cardType, const CVXVariantMapTree& account,
                                                   const CVXVariantMapTree& property);
    bool FindCardByCardTypeAndAccountToSetProperty(const QString& cardType, const CVXVariantMapTree& account,
                                                   const CVXVariantMapTree& property);
    void RemoveTabAt(int index);
    void OnTabDraggedOut(int index, const QPoint& globalPos);
    // Moves the box into a pop-out window (when that window type is available).
    void DetachPanelBox();

    // The title strip's tab area in box coordinates (drop test of the canvas); tab ids in order.
    QRect GetTabRect() const;
    QVector<unsigned long long> GetTabIds() const;
    // Removes the tab with that id (its page deleted); false when absent.
    bool RemoveTabById(unsigned long long tabId);
    // The card type and restore data of a tab, whether or not its card exists yet.
    bool GetTabCardData(int index, QString* cardType, CVXVariantMapTree* cardData) const;
    static QSize CardSizeAddBoxBorder(const QSize& cardSize);
    // The clamping of a resize proposal against the box's limits (see PanelBoxGeometry.h).
    QRect AdjustRectByDrag(const QRect& rect, int hitPos) const;

    bool IsWaitingDrop() const;
    void SetIsWaitingDrop(bool waiting);
    void SetIsWaitingOtherDrop(bool waiting); // shows the drop indication on this box's tab bar
    void UpdateBoxStockID(unsigned long long stockID);
    void UpdateBoxAccountInfo(const CVXVariantMapTree& info);
    void UpdataBoxComboOptionInfo(const CVXVariantMapTree& info);

    // Continues a move gesture started elsewhere (a tab torn out follows the mouse).
    void SetDraggingPosition(const QPoint& globalPos);

    // A mouse event on its way to one of the box's descendants in the box's window (the box's own
    // events go to its handlers). The edge bands lie over the cards, which cover the box nearly
    // edge to edge: a left press in a band starts a resize, the moves and the release of that
    // resize follow it, and hovering a band shows its resize cursor. True when the box took it.
    bool FilterDescendantMouseEvent(QMouseEvent* event);

    // Made when first needed (selected, dragged, linked, a tab about to drop); the box owns it.
    CVXPanelBoxMask* GetMask() const override;

Q_SIGNALS:
    void Clicked();

public Q_SLOTS:
    void OnClickGroup();
    void OnClickMenu();
    void OnClickClose();
    void OnCardCurrentSizeChanged(QSize size);
    void OnCardMaxMinSizeChanged();
    void OnTabWidgetCurrentPageChanged(int index, QWidget* page);
    void OnTabCurrentPageChanged(int index);
    void OnGroupIDChanged(QString groupId);
    void OnGroupIDAdded(QString groupId);
    void OnGroupColorChanged(QString color);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void OnCardEventStockIDChanged(const CardEventStockIDChanged* event);
    void OnCardEventAccountInfoChanged(const CardEventAccountInfoChanged* event);
    void OnCardEventComboOptionChanged(const CardEventComboOptionChanged* event);
    void OnCardEventOptionIndexChanged(const CardEventOptionIndexChanged* event);
    void OnCardEventClicked(const CardEventClicked* event);
    void OnCardEventDoubleClicked(const CardEventDoubleClicked* event);
    void OnCardEventSearchClicked(const CardEventSearchClicked* event);
    void OnCardEventCommonJump(const CardEventCommonJump* event);
    void OnCardEventPostionsOpenPlaceOrder(const CardEventPostionsOpenPlaceOrder* event);
    void
    OnCardEventPostionsOpenPlaceOrderComboOption(const CardEventPostionsOpenPlaceOrderComboOption* event);
    void OnCardEventOpenTradeOrders(const CardEventOpenTradeOrders* event);
    void OnCardEventPlaceOrderComboOptionOpenOptionChain(
        const CardEventPlaceOrderComboOptionOpenOptionChain* event);

    struct Impl;
    std::unique_ptr<Impl> d;
};
