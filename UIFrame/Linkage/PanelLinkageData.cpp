#include "UIFrame/Linkage/PanelLinkageData.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "UIFrame/Linkage/PanelColorManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include <utility>

namespace {

const QString kStockIDKey = QStringLiteral("StockID");
const QString kAccountInfoKey = QStringLiteral("AccountInfo");
const QString kComboOptionInfoKey = QStringLiteral("ComboOptionInfo");
const QString kOptionIndexInfoKey = QStringLiteral("OptionIndexInfo");

QString PopScope(const QString& scopeKey)
{
    return scopeKey.isEmpty() ? QString::fromLatin1(kPanelLinkageDataUngroupedColorKey) : scopeKey;
}

// Read-only lookups never create nodes.
const CVXVariantMapTree& GroupRecord(const CVXVariantMapTree& tree, const QString& scope,
                                     const QString& group)
{
    return tree.Child(scope).Child(group);
}

unsigned long long StockOf(const CVXVariantMapTree& record)
{
    return record.Get<unsigned long long>(kStockIDKey, PanelLinkageDataNullStockID);
}

CVXVariantMapTree RecordOf(const CVXVariantMapTree& record, const QString& valueKey)
{
    return record.Get<CVXVariantMapTree>(valueKey);
}

// A stock id lands in a tree when it differs from the old one and the tree is the writer's own
// or already holds an id for the group: the other side never gets entries it did not have.
void WriteStock(CVXVariantMapTree& tree, const QString& scope, const QString& group, bool ownTree,
                unsigned long long stockId)
{
    const unsigned long long old = StockOf(GroupRecord(std::as_const(tree), scope, group));
    if (stockId == old || !(ownTree || old != PanelLinkageDataNullStockID))
        return;
    tree.Child(scope).Child(group).Set<unsigned long long>(kStockIDKey, stockId);
}

// Records are written without comparing: whenever the tree is the writer's own or already holds
// a non-empty record there.
void WriteRecord(CVXVariantMapTree& tree, const QString& scope, const QString& group, bool ownTree,
                 const QString& valueKey, const CVXVariantMapTree& info)
{
    if (!ownTree && RecordOf(GroupRecord(std::as_const(tree), scope, group), valueKey).IsEmpty())
        return;
    tree.Child(scope).Child(group).Set<CVXVariantMapTree>(valueKey, info);
}

// A saved box's stock id and account join its group under `scope`; a box in no group and empty
// values add nothing (not even an empty group entry).
void LoadBoxLinkage(CVXVariantMapTree& tree, const QString& scope, const CVXVariantMapTree& box)
{
    const QString groupId = box.Get<QString>(QStringLiteral("strGroupID"));
    if (groupId.isEmpty())
        return;
    const unsigned long long stockId = StockOf(box);
    if (stockId != PanelLinkageDataNullStockID)
        tree.Child(scope).Child(groupId).Set<unsigned long long>(kStockIDKey, stockId);
    const CVXVariantMapTree account = RecordOf(box, kAccountInfoKey);
    if (!account.IsEmpty())
        tree.Child(scope).Child(groupId).Set<CVXVariantMapTree>(kAccountInfoKey, account);
}

} // namespace

struct CVXPanelLinkageData::Impl
{
    CVXVariantMapTree page;
    CVXVariantMapTree pop;

    CVXVariantMapTree ReadRecord(const QString& scopeKey, const QString& groupId,
                                 const QString& valueKey) const
    {
        if (groupId.isEmpty())
            return CVXVariantMapTree();
        if (!scopeKey.isEmpty()) {
            CVXVariantMapTree found = RecordOf(GroupRecord(page, scopeKey, groupId), valueKey);
            if (!found.IsEmpty())
                return found;
        }
        return RecordOf(GroupRecord(pop, PopScope(scopeKey), groupId), valueKey);
    }

    void SetRecord(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId,
                   const QString& valueKey, const CVXVariantMapTree& info)
    {
        if (groupId.isEmpty())
            return;
        if (!scopeKey.isEmpty())
            WriteRecord(page, scopeKey, groupId, source == PanelLinkageDataSourceType_Page, valueKey, info);
        WriteRecord(pop, PopScope(scopeKey), groupId, source == PanelLinkageDataSourceType_Pop, valueKey,
                    info);
    }
};

CVXPanelLinkageData& CVXPanelLinkageData::GetInstance()
{
    static CVXPanelLinkageData instance;
    return instance;
}

CVXPanelLinkageData::CVXPanelLinkageData() : d(new Impl) {}

CVXPanelLinkageData::~CVXPanelLinkageData()
{
    delete d;
}

unsigned long long CVXPanelLinkageData::GetStockID(const QString& scopeKey, const QString& groupId) const
{
    if (groupId.isEmpty())
        return PanelLinkageDataNullStockID;
    if (!scopeKey.isEmpty()) {
        const unsigned long long id = StockOf(GroupRecord(d->page, scopeKey, groupId));
        if (id != PanelLinkageDataNullStockID)
            return id;
    }
    return StockOf(GroupRecord(d->pop, PopScope(scopeKey), groupId));
}

CVXVariantMapTree CVXPanelLinkageData::GetAccountInfo(const QString& scopeKey, const QString& groupId) const
{
    return d->ReadRecord(scopeKey, groupId, kAccountInfoKey);
}

CVXVariantMapTree CVXPanelLinkageData::GetComboOptionInfo(const QString& scopeKey,
                                                          const QString& groupId) const
{
    return d->ReadRecord(scopeKey, groupId, kComboOptionInfoKey);
}

CVXVariantMapTree CVXPanelLinkageData::GetOptionIndexInfo(const QString& scopeKey,
                                                          const QString& groupId) const
{
    return d->ReadRecord(scopeKey, groupId, kOptionIndexInfoKey);
}

void CVXPanelLinkageData::SetStockID(PanelLinkageDataSourceType source, const QString& scopeKey,
                                     const QString& groupId, unsigned long long stockId)
{
    if (groupId.isEmpty())
        return;
    if (!scopeKey.isEmpty())
        WriteStock(d->page, scopeKey, groupId, source == PanelLinkageDataSourceType_Page, stockId);
    WriteStock(d->pop, PopScope(scopeKey), groupId, source == PanelLinkageDataSourceType_Pop, stockId);
}

void CVXPanelLinkageData::SetAccountInfo(PanelLinkageDataSourceType source, const QString& scopeKey,
                                         const QString& groupId, const CVXVariantMapTree& info)
{
    d->SetRecord(source, scopeKey, groupId, kAccountInfoKey, info);
}

void CVXPanelLinkageData::SetComboOptionInfo(PanelLinkageDataSourceType source, const QString& scopeKey,
                                             const QString& groupId, const CVXVariantMapTree& info)
{
    d->SetRecord(source, scopeKey, groupId, kComboOptionInfoKey, info);
}

void CVXPanelLinkageData::SetOptionIndexInfo(PanelLinkageDataSourceType source, const QString& scopeKey,
                                             const QString& groupId, const CVXVariantMapTree& info)
{
    d->SetRecord(source, scopeKey, groupId, kOptionIndexInfoKey, info);
}

void CVXPanelLinkageData::ClearLinkageData(PanelLinkageDataSourceType source, const QString& scopeKey,
                                           const QString& groupId)
{
    if (groupId.isEmpty())
        return;
    switch (source) {
    case PanelLinkageDataSourceType_Page:
        // Pages always have a scope; an empty one names nothing in the page tree.
        if (!scopeKey.isEmpty())
            d->page.Child(scopeKey).Child(groupId).Set<unsigned long long>(kStockIDKey,
                                                                           PanelLinkageDataNullStockID);
        return;
    case PanelLinkageDataSourceType_Pop:
        d->pop.Child(PopScope(scopeKey))
            .Child(groupId)
            .Set<unsigned long long>(kStockIDKey, PanelLinkageDataNullStockID);
        return;
    }
    VX_ASSERT(source == PanelLinkageDataSourceType_Page || source == PanelLinkageDataSourceType_Pop);
}

void CVXPanelLinkageData::SetPanelPageLinkageData(QVector<CVXVariantMapTree>& pages)
{
    for (const CVXVariantMapTree& page : std::as_const(pages)) {
        const QString scope = page.Get<QString>(QStringLiteral("TabGroupColor"));
        if (scope.isEmpty()) {
            // Readers never consult the page tree without a scope.
            VXLOG_DEBUG("CVXPanelLinkageData::SetPanelPageLinkageData: page without a tab colour skipped");
            continue;
        }
        const auto boxes = page.Get<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"));
        for (const CVXVariantMapTree& box : boxes)
            LoadBoxLinkage(d->page, scope, box);
    }
}

void CVXPanelLinkageData::SetPanelPopLinkageData(QVector<CVXVariantMapTree>& pops)
{
    CVXPanelColorManager& colors = CVXPanelColorManager::GetInstance();
    for (const CVXVariantMapTree& pop : std::as_const(pops)) {
        // A legacy colour name joins the scope of its present name.
        const QString scope =
            PopScope(colors.GetRealColor(pop.Get<QString>(QStringLiteral("TitleBarColor"))));
        const CVXVariantMapTree box = pop.Get<CVXVariantMapTree>(QStringLiteral("BoxData"));
        if (!box.IsEmpty())
            LoadBoxLinkage(d->pop, scope, box);
    }
}

const CVXVariantMapTree& CVXPanelLinkageData::PageTree() const
{
    return d->page;
}

const CVXVariantMapTree& CVXPanelLinkageData::PopTree() const
{
    return d->pop;
}

void CVXPanelLinkageData::ResetForTest()
{
    d->page = CVXVariantMapTree();
    d->pop = CVXVariantMapTree();
}
