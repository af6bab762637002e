#pragma once

// CVXCardObjBase: the base class of every card, the content widget that the quote, trade and
// web modules supply and that panel boxes, tab pages and expanded regions host.
//
// - Content: InitContent() (once) hands OnInitContent() either an inner widget of a scroll area
//   (content enable scroll, the default) or the card itself. The scroll area is the toolkit's
//   light one: a single widget that makes scroll bars only once the content outgrows the card.
// - Width classes: every resize classifies the width (EnVXCardWidthRange) and calls
//   OnCardWidthChangeNotify(). The classes 640..775 and 360..639 notify on every resize within
//   them; the others only when the width enters them.
// - Stock id: SetStockID emits CardStockIDChanged(new, old) on change. The card follows
//   CardEventStockIDChanged from its surroundings; with ChangeStockIDWhenInvisible(false) a change
//   that arrives while the card is hidden is kept and applied once on the next show.
// - Stock data updates: bus message 30203. Its body's p1 and p2 hold the addresses of two
//   `std::set<unsigned long>` (the changed stock ids and the changed data fields), valid only
//   while the message is delivered; senders therefore send it immediately (synchronously) on the
//   main thread. A body whose p1 or p2 is 0 is ignored. A card whose own stock id is among the
//   changed ids sets its stock id to 0 and back, so it reloads.
// - Exposure report: while the card is visible a report timer runs; it is ended (one report
//   line, type 2, value 100) when the card hides, its stock id changes or it is destroyed.

#include "UIFrame/CardBaseStyle.h"
#include "UIFrame/CardPos.h"
#include "UIFrame/ObjBase.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QPointer>
#include <QSize>
#include <QString>
#include <QWidget>

#include <set>
#include <string>

class CardEventStockIDChanged;
class CardEventAccountInfoChanged;
class CardEventComboOptionChanged;
class CardEventOptionIndexChanged;

namespace vx_std_ui {
class VLightScrollArea;
class VMenu;
} // namespace vx_std_ui

// What the box shows above a card: nothing, or the card's own widget (CreatePanelBoxTopWidget).
enum class EnVXPanelBoxTopWidgetType : int
{
    None = 0,
    CardWidget = 1,
};

class UIFRAME_EXPORT CVXCardObjBase : public QWidget, public CVXObjBase, public VUIEventHandler
{
    Q_OBJECT
public:
    // The bus message of stock data updates.
    static constexpr unsigned int kMsgStockDataUpdate = 30203;

    explicit CVXCardObjBase(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXCardObjBase() override;

    virtual QSize GetCardIdealSize();
    virtual QSize GetCardMinSize();
    virtual QSize GetCardMaxSize();
    virtual QString GetCardStaticTitle();
    virtual EnVXPanelBoxTopWidgetType GetCardPanelBoxTopWidgetType();
    // The card type (registry key); empty for a card that does not say.
    virtual QString GetCardObjType();
    virtual void OnCardWidthChangeNotify(const EnVXCardWidthRange& range);
    // Adds the card's own entries to the box menu (combination box menu).
    virtual void GetCardMenu(vx_std_ui::VMenu* menu);
    virtual void GetCombinationMenu(vx_std_ui::VMenu* menu);
    bool IsContinueDispatchUIEventToAllChild() const override;
    virtual void InitWithData(CVXVariantMapTree data);
    void SetAccountInfo(const CVXVariantMapTree& info) override;
    CVXVariantMapTree GetAccountInfo() override;
    void SetComboOptionInfo(const CVXVariantMapTree& info) override;
    CVXVariantMapTree GetComboOptionInfo() override;
    void SetOptionIndexInfo(const CVXVariantMapTree& info) override;
    CVXVariantMapTree GetOptionIndexInfo() override;
    virtual bool IsResponseGroupStockIDInquire() const;
    void SetStockID(const unsigned long long& stockID) override;
    virtual void OnStockDataUpdate(const std::set<unsigned long>& stockIDs,
                                   const std::set<unsigned long>& dataFields);
    // Defaults: the byte-array form under "CVXObjBaseProtoData" (CVXRestoreBase).
    virtual void GetCardObjRestoreData(CVXVariantMapTree* data) const;
    virtual void SetCardObjRestoreData(const CVXVariantMapTree& data);
    // The card type reported by the exposure report; empty is refused (assertion).
    virtual void UpdateExposureParamCardType(const std::string& strCardType);
    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override;
    void SetObjRestoreData(const CVXVariantMapTree& data) override;
    // Made once, on demand; the card owns the result.
    virtual QWidget* CreatePanelBoxTopWidget();
    virtual void OnPanelBoxTopWidgetVisibleChanged(bool visible);
    virtual void SetIsInCombination(bool inCombination);
    // content: the scroll area's inner widget, or the card itself without scrolling.
    virtual void OnInitContent(QWidget* content);

    QString TabTitle();
    CVXCardBaseStyle CardStyle();
    void SetParentBox(CVXObjBase* box) { m_pParentBox = box; }
    CVXObjBase* GetParentBox() const { return m_pParentBox; }
    EnVXCardPos GetCardPos() const { return m_enCardPos; }
    void SetCardPos(EnVXCardPos pos) { m_enCardPos = pos; }
    EnVXCardWidthRange GetCardWidthRange() const { return m_enWidthRange; }
    void SetContinueDispatchUiEventToAllChild(bool on) { m_bContinueDispatchUIEventToAllChild = on; }
    void SetResponseGroupStockIDInquire(bool on) { m_bResponseGroupStockIDInquire = on; }
    // Takes effect at InitContent().
    void SetContentEnableScroll(bool on) { m_bContentEnableScroll = on; }
    bool IsContentEnableScroll() const { return m_bContentEnableScroll; }
    // With auto resize the inner widget follows the card's size within [min, max]; without, it
    // keeps its size (ideal or SetContentSize) and the scroll area scrolls.
    void SetScrollViewAutoResize(bool on);
    bool IsScrollViewAutoResize() const { return m_bScrollViewAutoResize; }
    void InitContent();
    // Null before InitContent().
    QWidget* GetContentWidget() const;
    // The size set with SetContentSize, else the content widget's size.
    QSize GetContentSize() const;
    void SetContentSize(const QSize& size);
    // Sets the content size and asks the holder to fit the card to it (CardCurrentSizeChanged).
    void UpdateBoxSizeByContentSize(const QSize& size);
    QWidget* GetOrCreatePanelBoxTopWidget();
    void UpdatePanelBoxTopWidget();
    void NotifyPanelBoxTopWidgetVisibleChanged(bool visible);
    void ChangeStockIDWhenInvisible(bool on) { m_bChangeStockIDWhenInvisible = on; }
    bool GetIsInCombination() const { return m_bIsInCombination; }
    // The card type the exposure report uses until UpdateExposureParamCardType: GetCardObjType().
    std::string GetExposureParamCardTypeDefault();
    // The tree given to InitWithData.
    const CVXVariantMapTree& GetInitData() const { return m_initData; }
    unsigned long long GetPendingStockID() const { return m_u64PendingStockID; }

Q_SIGNALS:
    void CardStockIDChanged(unsigned long newStockID, unsigned long oldStockID);
    void CardCurrentSizeChanged(QSize size);
    void CardMaxMinSizeChanged();
    void PanelBoxTopWidgetUpdateRequest();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void OnCardEventStockIDChanged(const CardEventStockIDChanged* event);
    void OnCardEventAccountInfoChanged(const CardEventAccountInfoChanged* event);
    void OnCardEventComboOptionChanged(const CardEventComboOptionChanged* event);
    void OnCardEventOptionIndexChanged(const CardEventOptionIndexChanged* event);
    void OnVisibilityChanged(bool visible);
    // True when a pending id was applied and changed the stock id.
    bool ApplyPendingStockID();
    void UpdateContentGeometry();
    void ClassifyWidth(int newWidth, int oldWidth);
    void StartExposureReport();
    void EndExposureReport();

    struct ExposureReport
    {
        std::string strStockID;
        std::string strCardType;
        std::string strTabType;
        std::string strCardPosition;
        bool bCardTypeSet = false; // by UpdateExposureParamCardType
        unsigned long long u64Timer = 0;
    };

    EnVXCardPos m_enCardPos;
    CVXObjBase* m_pParentBox = nullptr;
    EnVXCardWidthRange m_enWidthRange = CardWidthRange_Unclassified;
    bool m_bIsInCombination = false;
    bool m_bContinueDispatchUIEventToAllChild = true;
    bool m_bResponseGroupStockIDInquire = true;
    bool m_bContentEnableScroll = true;
    bool m_bScrollViewAutoResize = false;
    bool m_bContentSizeSet = false;
    QSize m_contentSize;
    vx_std_ui::VLightScrollArea* m_pScrollArea = nullptr;
    QWidget* m_pScrollWidget = nullptr;
    QWidget* m_pContentWidget = nullptr;
    bool m_bContentInited = false;
    bool m_bChangeStockIDWhenInvisible = true;
    unsigned long long m_u64PendingStockID = 0;
    bool m_bTopWidgetCreated = false;
    QPointer<QWidget> m_pPanelBoxTopWidget;
    CVXVariantMapTree m_accountInfo;
    CVXVariantMapTree m_comboOptionInfo;
    CVXVariantMapTree m_optionIndexInfo;
    CVXVariantMapTree m_initData;
    ExposureReport m_exposure;
};
