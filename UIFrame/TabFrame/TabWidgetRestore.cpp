#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"

#include <QVector>

#include <algorithm>
#include <vector>

struct CVXTabWidgetRestore::Impl
{
    // The last restored records; a lazy page's share is emptied once it has been applied.
    CVXVariantMapTree restoreData;
    CVXVariantMapTree footPrintData;
    bool hasRestoreData = false;
    QVector<qint64> restoredOrder;
};

namespace {

bool IsNonEmptyTree(const CVXVariantMapTree& tree)
{
    static const CVXVariantMapTree empty;
    return tree != empty;
}

// Cards made by the card factory restore themselves (CVXCardFactory::afterSetParent).
bool IsFactoryMadeCard(const QWidget* page)
{
    return page && page->property(CVXCardFactory::kCreatedByPropertyName).toBool();
}

} // namespace

const QString& CVXTabWidgetRestore::OrderIdKey()
{
    static const QString key = QStringLiteral("orderId");
    return key;
}

const QString& CVXTabWidgetRestore::OrderTextKey()
{
    static const QString key = QStringLiteral("orderText");
    return key;
}

const QString& CVXTabWidgetRestore::CurrentIdxKey()
{
    static const QString key = QStringLiteral("currentIdx");
    return key;
}

CVXTabWidgetRestore::CVXTabWidgetRestore(QWidget* parent)
    : CVXTabWidgetRestore(vx_std_ui::VTabWidget::TabBarStyle::Normal, parent)
{
}

CVXTabWidgetRestore::CVXTabWidgetRestore(vx_std_ui::VTabWidget::TabBarStyle style, QWidget* parent)
    : vx_std_ui::VTabWidget(style, parent), d(std::make_unique<Impl>())
{
    connect(this, &vx_std_ui::VTabWidget::pageCreated, this,
            [this](int index, QWidget* page) { afterPageCreated(index, page); });
}

CVXTabWidgetRestore::CVXTabWidgetRestore(vx_std_ui::VTabBarBase* tabBar, QWidget* parent)
    : vx_std_ui::VTabWidget(tabBar, parent), d(std::make_unique<Impl>())
{
    connect(this, &vx_std_ui::VTabWidget::pageCreated, this,
            [this](int index, QWidget* page) { afterPageCreated(index, page); });
}

CVXTabWidgetRestore::~CVXTabWidgetRestore() = default;

qint64 CVXTabWidgetRestore::tabID(int index) const
{
    if (index < 0 || index >= count())
        return kNoTabID;
    return static_cast<qint64>(tabId(index));
}

CVXRestoreBase* CVXTabWidgetRestore::Page(int index) const
{
    if (!isPageCreated(index))
        return nullptr;
    return dynamic_cast<CVXRestoreBase*>(widget(index));
}

std::shared_ptr<vx_std_ui::PageFactory> CVXTabWidgetRestore::Factory(int index) const
{
    return pageFactory(index);
}

int CVXTabWidgetRestore::FindTab(qint64 id) const
{
    if (id == kNoTabID)
        return -1;
    for (int i = 0; i < count(); ++i) {
        if (tabID(i) == id)
            return i;
    }
    return -1;
}

int CVXTabWidgetRestore::FindTab(const QString& text) const
{
    if (text.isEmpty())
        return -1;
    for (int i = 0; i < count(); ++i) {
        if (tabText(i) == text)
            return i;
    }
    return -1;
}

QString CVXTabWidgetRestore::TabDataKey(qint64 id, const QString& text)
{
    return id == kNoTabID ? text : QString::number(id);
}

QString CVXTabWidgetRestore::TabDataKey(int index) const
{
    if (index < 0 || index >= count())
        return {};
    return TabDataKey(tabID(index), tabText(index));
}

int CVXTabWidgetRestore::GetTabDataIndex(int index) const
{
    const qint64 id = tabID(index);
    if (id == kNoTabID)
        return -1;
    return d->restoredOrder.indexOf(id);
}

bool CVXTabWidgetRestore::HasRestoreData() const
{
    return d->hasRestoreData;
}

namespace {

enum class RecordKind
{
    Restore,
    FootPrint,
};

} // namespace

static void SaveRecord(const CVXTabWidgetRestore& tabs, const CVXVariantMapTree& kept, RecordKind kind,
                       CVXVariantMapTree* data)
{
    QVector<qint64> ids;
    QVector<QString> texts;
    for (int i = 0; i < tabs.count(); ++i) {
        ids.append(tabs.tabID(i));
        texts.append(tabs.tabText(i));
        const QString key = tabs.TabDataKey(i);
        if (key.isEmpty())
            continue; // neither id nor text: nothing to find it by later
        if (const CVXRestoreBase* page = tabs.Page(i)) {
            CVXVariantMapTree& child = data->Child(key);
            if (kind == RecordKind::Restore)
                page->GetObjRestoreData(&child);
            else
                page->GetObjFootPrintData(&child);
            continue;
        }
        const std::shared_ptr<vx_std_ui::PageFactory> factory = tabs.Factory(i);
        if (!factory)
            continue;
        if (const auto* cardFactory = dynamic_cast<const CVXCardFactory*>(factory.get())) {
            const CVXVariantMapTree& held =
                kind == RecordKind::Restore ? cardFactory->GetRestoreData() : cardFactory->GetFootPrintData();
            if (IsNonEmptyTree(held))
                data->Child(key) = held;
        } else if (IsNonEmptyTree(kept.Child(key))) {
            // A page that was never created still owes its saved data to the next save.
            data->Child(key) = kept.Child(key);
        }
    }
    data->Set<int>(CVXTabWidgetRestore::CurrentIdxKey(), tabs.currentIndex());
    data->Set<QVector<qint64>>(CVXTabWidgetRestore::OrderIdKey(), ids);
    data->Set<QVector<QString>>(CVXTabWidgetRestore::OrderTextKey(), texts);
}

void CVXTabWidgetRestore::GetObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data) {
        VXLOG_ERROR("CVXTabWidgetRestore::GetObjRestoreData: null tree");
        return;
    }
    SaveRecord(*this, d->restoreData, RecordKind::Restore, data);
}

void CVXTabWidgetRestore::GetObjFootPrintData(CVXVariantMapTree* data) const
{
    if (!data) {
        VXLOG_ERROR("CVXTabWidgetRestore::GetObjFootPrintData: null tree");
        return;
    }
    SaveRecord(*this, d->footPrintData, RecordKind::FootPrint, data);
}

// Puts the tabs named by the record in the record's order at the front; tabs the record does
// not name keep their relative order behind them.
static void ApplyOrder(CVXTabWidgetRestore& tabs, const CVXVariantMapTree& data)
{
    const QVector<qint64> ids = data.Get<QVector<qint64>>(CVXTabWidgetRestore::OrderIdKey());
    const QVector<QString> texts = data.Get<QVector<QString>>(CVXTabWidgetRestore::OrderTextKey());
    const int saved = std::max(ids.size(), texts.size());

    // Global ids stay with their tabs while tabs move; collect first, then move.
    std::vector<unsigned long long> order;
    for (int i = 0; i < saved; ++i) {
        const qint64 id = ids.value(i, CVXTabWidgetRestore::kNoTabID);
        const int index =
            id != CVXTabWidgetRestore::kNoTabID ? tabs.FindTab(id) : tabs.FindTab(texts.value(i));
        if (index < 0)
            continue;
        const unsigned long long globalId = tabs.tabGlobalId(index);
        if (std::find(order.begin(), order.end(), globalId) == order.end())
            order.push_back(globalId);
    }
    int target = 0;
    for (unsigned long long globalId : order) {
        const int index = tabs.tabBar()->indexOfGlobalId(globalId);
        if (index < 0)
            continue;
        if (index != target)
            tabs.moveTab(index, target);
        ++target;
    }
}

// Hands each created page that has a record in `data` its record through `apply`.
static void ApplyToPages(CVXTabWidgetRestore& tabs, const CVXVariantMapTree& data,
                         void (CVXRestoreBase::*apply)(const CVXVariantMapTree&))
{
    for (int i = 0; i < tabs.count(); ++i) {
        CVXRestoreBase* page = tabs.Page(i);
        if (!page)
            continue;
        const QString key = tabs.TabDataKey(i);
        if (!key.isEmpty() && data.HasChild(key))
            (page->*apply)(data.Child(key));
    }
}

void CVXTabWidgetRestore::SetObjRestoreData(const CVXVariantMapTree& data)
{
    ApplyOrder(*this, data);
    d->restoredOrder = data.Get<QVector<qint64>>(OrderIdKey());
    ApplyToPages(*this, data, &CVXRestoreBase::SetObjRestoreData);
    d->restoreData = data;
    d->hasRestoreData = true;
}

void CVXTabWidgetRestore::SetObjFootPrintData(const CVXVariantMapTree& data)
{
    ApplyOrder(*this, data);
    ApplyToPages(*this, data, &CVXRestoreBase::SetObjFootPrintData);
    d->footPrintData = data;
    const int current = data.Get<int>(CurrentIdxKey(), -1);
    if (current >= 0 && current < count())
        setCurrentIndex(current);
}

void CVXTabWidgetRestore::afterPageCreated(int index, QWidget* page)
{
    if (!d->hasRestoreData || !page || IsFactoryMadeCard(page))
        return;
    auto* restorable = dynamic_cast<CVXRestoreBase*>(page);
    if (!restorable || dynamic_cast<CVXCardObjBase*>(page))
        return;
    const QString key = TabDataKey(index);
    if (key.isEmpty())
        return;
    if (IsNonEmptyTree(d->restoreData.Child(key))) {
        const CVXVariantMapTree share = d->restoreData.Child(key);
        d->restoreData.Child(key) = CVXVariantMapTree();
        restorable->SetObjRestoreData(share);
    }
    if (IsNonEmptyTree(d->footPrintData.Child(key))) {
        const CVXVariantMapTree share = d->footPrintData.Child(key);
        d->footPrintData.Child(key) = CVXVariantMapTree();
        restorable->SetObjFootPrintData(share);
    }
}
