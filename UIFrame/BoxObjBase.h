#pragma once

// CVXBoxObjBase: the common part of every holder of cards as tabs (one card per tab of its tab
// widget). The box is not a widget itself; the concrete box is a QWidget that also derives from
// this class and hands it its tab widget. The card-event walk stops at a box.

#include "UIFrame/ObjBase.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QPointer>
#include <QSize>
#include <QString>

class CVXCardObjBase;

namespace vx_std_ui {
class VTabWidget;
class VTabBarBase;
} // namespace vx_std_ui

class UIFRAME_EXPORT CVXBoxObjBase : public CVXObjBase, public VUIEventHandler
{
public:
    CVXBoxObjBase();

    // Forwards the property to every created card whose card type equals cardType.
    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override;
    void SetAccountInfo(const CVXVariantMapTree& info) override;
    CVXVariantMapTree GetAccountInfo() override;
    void SetOptionIndexInfo(const CVXVariantMapTree& info) override;
    CVXVariantMapTree GetOptionIndexInfo() override;

    ~CVXBoxObjBase() override;

    // Adds the card as a tab at index (out of range: at the end) titled with its style's title,
    // makes this box its parent box, gives it the box's key and account info and, with
    // applyStockID, the box's stock id; then RecalBoxSize(). False for a null card or without a
    // tab widget.
    virtual bool AppendCardWithIndex(CVXCardObjBase* card, long long index, bool applyStockID);
    // Default: AppendCardWithIndex(card, index, true).
    virtual void Insert(int index, CVXCardObjBase* card);
    // Removes the tab; the card is deleted later when deleteCard, else handed back to no parent.
    virtual void Remove(int index, bool deleteCard);
    // Defaults: the card sizes below.
    virtual QSize GetBoxMinSize() const;
    virtual QSize GetBoxMaxSize() const;
    virtual void RecalBoxSize();

    void SetTabWidget(vx_std_ui::VTabWidget* tabWidget);
    vx_std_ui::VTabWidget* GetTabWidget() const;

    // Component-wise maximum of the created cards' minimum (maximum) sizes; (-1, -1) without a
    // tab widget, (0, 0) without cards.
    QSize GetCardMinSize() const;
    QSize GetCardMaxSize() const;
    void ClearAllTab();
    // The card type of the first tab's card, or empty.
    QString GetTabName() const;
    // Null for a bad index, a page that is not a card, or a lazy page not created yet.
    CVXCardObjBase* GetCardByIndex(int index) const;
    CVXCardObjBase* GetCurrentCard() const;
    int GetTabCount() const;
    int GetCurrentTabIndex() const;
    void SetCurrentTabIndex(int index);
    vx_std_ui::VTabBarBase* GetTabBar() const;

private:
    template <typename SizeOf> QSize CombineCardSizes(SizeOf sizeOf) const;

    QPointer<vx_std_ui::VTabWidget> m_pTabWidget;
    CVXVariantMapTree m_accountInfo;
    CVXVariantMapTree m_optionIndexInfo;
};
