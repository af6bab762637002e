#pragma once

// CVXPanelLinkageData: the one store of the last value of each linkage kind (stock id, account,
// combination option, option index) per scope and group. Two trees: the page tree (boxes on layout
// pages, source 1) and the pop tree (boxes in pop-out windows, source 2), each
// scope key -> group id -> value record. It holds no widgets and sends nothing; the boxes write,
// read, and announce changes on the bus themselves. An empty group id is a silent no-op for every
// operation. A write lands in its own tree, and in the other tree only where that tree already
// holds a value for the same scope and group.

#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QObject>
#include <QString>
#include <QVector>

enum PanelLinkageDataSourceType : int
{
    PanelLinkageDataSourceType_Page = 1,
    PanelLinkageDataSourceType_Pop = 2,
};

// Kinds carried by bus message 20250 in its numeric parameter.
enum PanelLinkageDataKind : unsigned long
{
    PanelLinkageDataKind_StockID = 1,
    PanelLinkageDataKind_AccountInfo = 2,
    PanelLinkageDataKind_ComboOptionInfo = 3,
    PanelLinkageDataKind_OptionIndexInfo = 4,
};

inline constexpr unsigned long long PanelLinkageDataNullStockID = 0;
inline constexpr const char* kPanelLinkageDataUngroupedColorKey = "PanelLinkageDataUngroupedColorKey";

class UIFRAME_EXPORT CVXPanelLinkageData : public QObject
{
    Q_OBJECT
public:
    static CVXPanelLinkageData& GetInstance();

    unsigned long long GetStockID(const QString& scopeKey, const QString& groupId) const;
    CVXVariantMapTree GetAccountInfo(const QString& scopeKey, const QString& groupId) const;
    CVXVariantMapTree GetComboOptionInfo(const QString& scopeKey, const QString& groupId) const;
    CVXVariantMapTree GetOptionIndexInfo(const QString& scopeKey, const QString& groupId) const;

    void SetStockID(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId,
                    unsigned long long stockId);
    void SetAccountInfo(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId,
                        const CVXVariantMapTree& info);
    void SetComboOptionInfo(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId,
                            const CVXVariantMapTree& info);
    void SetOptionIndexInfo(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId,
                            const CVXVariantMapTree& info);
    // Zeroes the group's stock id only; an unknown source is an assertion failure.
    void ClearLinkageData(PanelLinkageDataSourceType source, const QString& scopeKey, const QString& groupId);

    // Seeding from saved layout pages ("TabGroupColor", "PanelBoxsData") and pop-out windows
    // ("TitleBarColor", "BoxData").
    void SetPanelPageLinkageData(QVector<CVXVariantMapTree>& pages);
    void SetPanelPopLinkageData(QVector<CVXVariantMapTree>& pops);

    // Tests.
    const CVXVariantMapTree& PageTree() const;
    const CVXVariantMapTree& PopTree() const;
    void ResetForTest();

private:
    CVXPanelLinkageData();
    ~CVXPanelLinkageData() override;
    struct Impl;
    Impl* d;
};
