#pragma once

// CVXTabWidgetRestore: the tab widget of tab frames and expanded regions, made restorable. Its
// record keeps the tab order ("orderId": QVector<qint64>, "orderText": QVector<QString>), the
// current tab ("currentIdx": int) and, under each tab's key (the decimal tab id, or the tab text
// for a tab without id), that tab's page data. Pages not created yet save what their factory
// holds. The last restored record is kept so that a lazy page created later takes its share,
// once; cards made by CVXCardFactory are left to the card factory, which restores them itself.

#include "UIFrame/RestoreBase.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"
#include "Platform/StdUI/TabWidget.h"

#include <QString>

#include <limits>
#include <memory>

class UIFRAME_EXPORT CVXTabWidgetRestore : public vx_std_ui::VTabWidget, public CVXRestoreBase
{
    Q_OBJECT
public:
    // The tab id of a tab without one, as a signed number (== vx_std_ui::kNoTabId).
    static constexpr qint64 kNoTabID = std::numeric_limits<qint64>::min();

    static const QString& OrderIdKey();    // "orderId"
    static const QString& OrderTextKey();  // "orderText"
    static const QString& CurrentIdxKey(); // "currentIdx"

    explicit CVXTabWidgetRestore(QWidget* parent = nullptr);
    CVXTabWidgetRestore(vx_std_ui::VTabWidget::TabBarStyle style, QWidget* parent = nullptr);
    // `tabBar` must be a fresh bar without tabs; the widget takes ownership of it.
    CVXTabWidgetRestore(vx_std_ui::VTabBarBase* tabBar, QWidget* parent = nullptr);
    ~CVXTabWidgetRestore() override;

    // The tab's id as a signed number; kNoTabID for a tab without id or a bad index.
    qint64 tabID(int index) const;
    // The created page when it is a restorable object; null otherwise (not created, not
    // restorable, bad index).
    CVXRestoreBase* Page(int index) const;
    // The factory of a tab whose page is not created yet; null otherwise.
    std::shared_ptr<vx_std_ui::PageFactory> Factory(int index) const;
    // The first tab with that id / that text; -1 when none (kNoTabID finds nothing).
    int FindTab(qint64 id) const;
    int FindTab(const QString& text) const;
    // The key of a tab's data in the record: its decimal id, or its text without id.
    QString TabDataKey(int index) const;
    static QString TabDataKey(qint64 id, const QString& text);
    // The position of the tab in the last restored order, found by its id; -1 when the tab has
    // no id, nothing was restored, or the id was not in the saved order.
    int GetTabDataIndex(int index) const;

    // True once SetObjRestoreData has been given a record.
    bool HasRestoreData() const;

    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override;
    void SetObjRestoreData(const CVXVariantMapTree& data) override;
    void GetObjFootPrintData(CVXVariantMapTree* data) const override;
    // Same as SetObjRestoreData for footprints, then makes the saved current tab current.
    void SetObjFootPrintData(const CVXVariantMapTree& data) override;

protected:
    // Runs for every lazy page when it has been created (VTabWidget::pageCreated): applies the
    // kept restore and footprint data under the tab's key to a restorable page that is not a
    // factory-made card, and forgets them so that they are applied only once.
    virtual void afterPageCreated(int index, QWidget* page);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};
