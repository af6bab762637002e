#include "UIFrame/CardObjBase.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/TabFrame/WidgetReportHelper.h"
#include "UIFrame/VisibilityTracker.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/Report.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/LightScrollArea.h"

#include <json/value.h>

#include <QEvent>
#include <QResizeEvent>

#include <algorithm>
#include <cstdint>

namespace {

constexpr const char* kExposureTimerName = "card_exposure";
constexpr int kExposureReportType = 2;
constexpr int kExposureReportValue = 100;

const QSize kDefaultMinSize(50, 50);
const QSize kDefaultMaxSize(5000, 5000);

int ClampToBounds(int value, int lower, int upper)
{
    if (lower >= 0)
        value = std::max(value, lower);
    if (upper >= 0)
        value = std::min(value, upper);
    return value;
}

} // namespace

CVXCardObjBase::CVXCardObjBase(EnVXCardPos pos, QWidget* parent) : QWidget(parent), m_enCardPos(pos)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_StyledBackground, true);

    RegisterUIEventHandler<CardEventStockIDChanged>(this, &CVXCardObjBase::OnCardEventStockIDChanged);
    RegisterUIEventHandler<CardEventAccountInfoChanged>(this, &CVXCardObjBase::OnCardEventAccountInfoChanged);
    RegisterUIEventHandler<CardEventComboOptionChanged>(this, &CVXCardObjBase::OnCardEventComboOptionChanged);
    RegisterUIEventHandler<CardEventOptionIndexChanged>(this, &CVXCardObjBase::OnCardEventOptionIndexChanged);

    core::__CMessageDispatch::Instance().Bind(
        kMsgStockDataUpdate,
        [this](unsigned int, unsigned long long, const core::CMessageBody& body) {
            if (body.p1() == 0 || body.p2() == 0)
                return;
            const auto* stockIDs =
                reinterpret_cast<const std::set<unsigned long>*>(static_cast<std::uintptr_t>(body.p1()));
            const auto* dataFields =
                reinterpret_cast<const std::set<unsigned long>*>(static_cast<std::uintptr_t>(body.p2()));
            OnStockDataUpdate(*stockIDs, *dataFields);
        },
        this);

    CVXVisibilityTracker::Instance().Watch(this, [this](bool visible) { OnVisibilityChanged(visible); });
}

CVXCardObjBase::~CVXCardObjBase()
{
    CVXVisibilityTracker::Instance().Unwatch(this);
    EndExposureReport();
    core::__CMessageDispatch::Instance().UnBind(kMsgStockDataUpdate, this);
    if (m_pPanelBoxTopWidget) {
        m_pPanelBoxTopWidget->removeEventFilter(this);
        delete m_pPanelBoxTopWidget.data();
    }
}

QSize CVXCardObjBase::GetCardIdealSize()
{
    return QSize(-1, -1);
}

QSize CVXCardObjBase::GetCardMinSize()
{
    return kDefaultMinSize;
}

QSize CVXCardObjBase::GetCardMaxSize()
{
    return kDefaultMaxSize;
}

QString CVXCardObjBase::GetCardStaticTitle()
{
    return QStringLiteral("card title");
}

EnVXPanelBoxTopWidgetType CVXCardObjBase::GetCardPanelBoxTopWidgetType()
{
    return EnVXPanelBoxTopWidgetType::None;
}

QString CVXCardObjBase::GetCardObjType()
{
    return {};
}

void CVXCardObjBase::OnCardWidthChangeNotify(const EnVXCardWidthRange& range)
{
    (void)range;
}

void CVXCardObjBase::GetCardMenu(vx_std_ui::VMenu* menu)
{
    (void)menu;
}

void CVXCardObjBase::GetCombinationMenu(vx_std_ui::VMenu* menu)
{
    (void)menu;
}

bool CVXCardObjBase::IsContinueDispatchUIEventToAllChild() const
{
    return m_bContinueDispatchUIEventToAllChild;
}

void CVXCardObjBase::InitWithData(CVXVariantMapTree data)
{
    m_initData = std::move(data);
}

void CVXCardObjBase::SetAccountInfo(const CVXVariantMapTree& info)
{
    m_accountInfo = info;
}

CVXVariantMapTree CVXCardObjBase::GetAccountInfo()
{
    return m_accountInfo;
}

void CVXCardObjBase::SetComboOptionInfo(const CVXVariantMapTree& info)
{
    m_comboOptionInfo = info;
}

CVXVariantMapTree CVXCardObjBase::GetComboOptionInfo()
{
    return m_comboOptionInfo;
}

void CVXCardObjBase::SetOptionIndexInfo(const CVXVariantMapTree& info)
{
    m_optionIndexInfo = info;
}

CVXVariantMapTree CVXCardObjBase::GetOptionIndexInfo()
{
    return m_optionIndexInfo;
}

bool CVXCardObjBase::IsResponseGroupStockIDInquire() const
{
    return m_bResponseGroupStockIDInquire;
}

void CVXCardObjBase::SetStockID(const unsigned long long& stockID)
{
    // A copy: the argument may refer to the pending id cleared below.
    const unsigned long long newStockID = stockID;
    const unsigned long long oldStockID = GetOwnStockID();
    CVXObjBase::SetStockID(newStockID);
    m_u64PendingStockID = 0;
    if (oldStockID == newStockID)
        return;
    Q_EMIT CardStockIDChanged(static_cast<unsigned long>(newStockID), static_cast<unsigned long>(oldStockID));
    EndExposureReport();
    StartExposureReport();
}

void CVXCardObjBase::OnStockDataUpdate(const std::set<unsigned long>& stockIDs,
                                       const std::set<unsigned long>& dataFields)
{
    (void)dataFields;
    if (m_u64PendingStockID != 0)
        return;
    const unsigned long long current = GetOwnStockID();
    if (current == 0 || stockIDs.count(static_cast<unsigned long>(current)) == 0)
        return;
    SetStockID(0);
    SetStockID(current);
}

void CVXCardObjBase::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXRestoreBase::GetObjRestoreData(data);
}

void CVXCardObjBase::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXRestoreBase::SetObjRestoreData(data);
}

void CVXCardObjBase::UpdateExposureParamCardType(const std::string& strCardType)
{
    if (!VX_ASSERT(!strCardType.empty()))
        return;
    if (m_exposure.strCardType == strCardType) {
        m_exposure.bCardTypeSet = true;
        return;
    }
    // Time spent under the unknown type is dropped (cancelled), never reported.
    if (strCardType == core::report::kstrUnknownTabType)
        m_exposure.strCardType = strCardType;
    EndExposureReport();
    m_exposure.strCardType = strCardType;
    m_exposure.bCardTypeSet = true;
}

void CVXCardObjBase::GetObjRestoreData(CVXVariantMapTree* data) const
{
    GetCardObjRestoreData(data);
}

void CVXCardObjBase::SetObjRestoreData(const CVXVariantMapTree& data)
{
    SetCardObjRestoreData(data);
}

QWidget* CVXCardObjBase::CreatePanelBoxTopWidget()
{
    return nullptr;
}

void CVXCardObjBase::OnPanelBoxTopWidgetVisibleChanged(bool visible)
{
    (void)visible;
}

void CVXCardObjBase::SetIsInCombination(bool inCombination)
{
    m_bIsInCombination = inCombination;
}

void CVXCardObjBase::OnInitContent(QWidget* content)
{
    (void)content;
}

QString CVXCardObjBase::TabTitle()
{
    return GetCardStaticTitle();
}

CVXCardBaseStyle CVXCardObjBase::CardStyle()
{
    CVXCardBaseStyle style;
    style.idealSize = GetCardIdealSize();
    style.minSize = GetCardMinSize();
    style.maxSize = GetCardMaxSize();
    style.title = GetCardStaticTitle();
    return style;
}

void CVXCardObjBase::SetScrollViewAutoResize(bool on)
{
    m_bScrollViewAutoResize = on;
    UpdateContentGeometry();
}

void CVXCardObjBase::InitContent()
{
    if (m_bContentInited)
        return;
    m_bContentInited = true;
    if (!m_bContentEnableScroll) {
        m_pContentWidget = this;
        OnInitContent(this);
        return;
    }
    m_pScrollArea = new vx_std_ui::VLightScrollArea(this);
    m_pScrollArea->setObjectName(QStringLiteral("CVXCardObjBase_scrollview"));
    m_pScrollWidget = new QWidget;
    m_pScrollWidget->setObjectName(QStringLiteral("CVXCardObjBase_scrollview_widget"));
    const QSize ideal = GetCardIdealSize();
    if (ideal.isValid())
        m_pScrollWidget->resize(ideal);
    m_pScrollArea->setWidget(m_pScrollWidget);
    m_pContentWidget = m_pScrollWidget;
    UpdateContentGeometry();
    m_pScrollArea->show();
    OnInitContent(m_pScrollWidget);
}

QWidget* CVXCardObjBase::GetContentWidget() const
{
    return m_pContentWidget;
}

QSize CVXCardObjBase::GetContentSize() const
{
    if (m_bContentSizeSet)
        return m_contentSize;
    return m_pContentWidget ? m_pContentWidget->size() : QSize();
}

void CVXCardObjBase::SetContentSize(const QSize& size)
{
    m_contentSize = size;
    m_bContentSizeSet = true;
    if (m_pScrollWidget)
        m_pScrollWidget->resize(size);
}

void CVXCardObjBase::UpdateBoxSizeByContentSize(const QSize& size)
{
    SetContentSize(size);
    Q_EMIT CardCurrentSizeChanged(size);
}

QWidget* CVXCardObjBase::GetOrCreatePanelBoxTopWidget()
{
    if (!m_bTopWidgetCreated) {
        m_bTopWidgetCreated = true;
        if (QWidget* widget = CreatePanelBoxTopWidget()) {
            widget->installEventFilter(this);
            m_pPanelBoxTopWidget = widget;
        }
    }
    return m_pPanelBoxTopWidget.data();
}

void CVXCardObjBase::UpdatePanelBoxTopWidget()
{
    Q_EMIT PanelBoxTopWidgetUpdateRequest();
}

void CVXCardObjBase::NotifyPanelBoxTopWidgetVisibleChanged(bool visible)
{
    OnPanelBoxTopWidgetVisibleChanged(visible);
}

std::string CVXCardObjBase::GetExposureParamCardTypeDefault()
{
    return GetCardObjType().toStdString();
}

bool CVXCardObjBase::eventFilter(QObject* watched, QEvent* event)
{
    if (watched && watched == m_pPanelBoxTopWidget.data()) {
        if (event->type() == QEvent::Show)
            NotifyPanelBoxTopWidgetVisibleChanged(true);
        else if (event->type() == QEvent::Hide)
            NotifyPanelBoxTopWidgetVisibleChanged(false);
    }
    return QWidget::eventFilter(watched, event);
}

void CVXCardObjBase::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    UpdateContentGeometry();
    ClassifyWidth(event->size().width(), event->oldSize().width());
}

void CVXCardObjBase::showEvent(QShowEvent* event)
{
    ApplyPendingStockID();
    QWidget::showEvent(event);
}

void CVXCardObjBase::OnCardEventStockIDChanged(const CardEventStockIDChanged* event)
{
    if (!m_bChangeStockIDWhenInvisible && !isVisible()) {
        m_u64PendingStockID = event->u64StockID;
        return;
    }
    SetStockID(event->u64StockID);
}

void CVXCardObjBase::OnCardEventAccountInfoChanged(const CardEventAccountInfoChanged* event)
{
    SetAccountInfo(event->accountInfo);
}

void CVXCardObjBase::OnCardEventComboOptionChanged(const CardEventComboOptionChanged* event)
{
    SetComboOptionInfo(event->comboOptionInfo);
}

void CVXCardObjBase::OnCardEventOptionIndexChanged(const CardEventOptionIndexChanged* event)
{
    SetOptionIndexInfo(event->optionIndexInfo);
}

void CVXCardObjBase::OnVisibilityChanged(bool visible)
{
    EndExposureReport();
    if (!visible)
        return;
    // The tracker sees Show before showEvent: apply a pending id first so that the report that
    // starts now already carries it.
    if (!ApplyPendingStockID())
        StartExposureReport();
}

bool CVXCardObjBase::ApplyPendingStockID()
{
    if (m_bChangeStockIDWhenInvisible || m_u64PendingStockID == 0)
        return false;
    const unsigned long long before = GetOwnStockID();
    const unsigned long long pending = m_u64PendingStockID;
    SetStockID(pending);
    return GetOwnStockID() != before;
}

void CVXCardObjBase::UpdateContentGeometry()
{
    if (!m_pScrollArea)
        return;
    m_pScrollArea->setGeometry(rect());
    if (!m_bScrollViewAutoResize || !m_pScrollWidget)
        return;
    const QSize minSize = GetCardMinSize();
    const QSize maxSize = GetCardMaxSize();
    m_pScrollWidget->resize(ClampToBounds(width(), minSize.width(), maxSize.width()),
                            ClampToBounds(height(), minSize.height(), maxSize.height()));
}

void CVXCardObjBase::ClassifyWidth(int newWidth, int oldWidth)
{
    const auto outside = [oldWidth](int low, int high) { return oldWidth < low || oldWidth > high; };
    EnVXCardWidthRange range = CardWidthRange_Unclassified;
    bool notify = false;
    if (newWidth >= 1004) {
        range = CardWidthRange_From1004;
        notify = oldWidth < 1004;
    } else if (newWidth >= 776) {
        range = CardWidthRange_From776;
        notify = outside(776, 1003);
    } else if (newWidth >= 640) {
        // The two middle classes notify on every resize within them.
        range = CardWidthRange_From640;
        notify = true;
    } else if (newWidth >= 360) {
        range = CardWidthRange_From360;
        notify = true;
    } else if (newWidth >= 240) {
        range = CardWidthRange_From240;
        notify = outside(240, 359);
    } else if (newWidth >= 200) {
        range = CardWidthRange_From200;
        notify = outside(200, 239);
    }
    if (!notify)
        return;
    m_enWidthRange = range;
    OnCardWidthChangeNotify(range);
}

void CVXCardObjBase::StartExposureReport()
{
    EndExposureReport();
    if (!isVisible())
        return;
    const std::string cardType =
        m_exposure.bCardTypeSet ? m_exposure.strCardType : GetExposureParamCardTypeDefault();
    if (cardType == core::report::kstrUnknownTabType)
        return;
    m_exposure.strCardType = cardType;
    m_exposure.strTabType = CVXWidgetReportHelper::GetCardReportTabPosString(this).toStdString();
    m_exposure.strStockID = std::to_string(GetStockID());
    m_exposure.strCardPosition = std::to_string(static_cast<int>(m_enCardPos));
    m_exposure.u64Timer = core::report::TimerStart(kExposureTimerName);
}

void CVXCardObjBase::EndExposureReport()
{
    if (m_exposure.u64Timer == 0)
        return;
    const unsigned long long timer = m_exposure.u64Timer;
    m_exposure.u64Timer = 0;
    if (m_exposure.strCardType == core::report::kstrUnknownTabType) {
        core::report::TimerCancel(timer);
        return;
    }
    Json::Value fields(Json::objectValue);
    fields["stock_id"] = m_exposure.strStockID;
    fields["card_type"] = m_exposure.strCardType;
    fields["tab_type"] = m_exposure.strTabType;
    fields["card_position"] = m_exposure.strCardPosition;
    core::report::TimerEnd(timer, kExposureReportType, fields, kExposureReportValue);
}
