#pragma once

// Test-only cards, boxes and holders for the foundation tests, and a fixture that captures
// usage-report lines (so that no test writes into a user folder).

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Report.h"
#include "Platform/StdUI/TabWidget.h"

#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace uiframe_test {

// Captures report lines for the duration of a test.
class ReportCapture
{
public:
    ReportCapture()
    {
        core::report::SetWriter([this](const std::string& line) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_lines.push_back(line);
        });
    }
    ~ReportCapture() { core::report::SetWriter({}); }

    std::vector<std::string> Lines() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines;
    }
    void Clear()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_lines.clear();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

class FoundationTest : public ::testing::Test
{
protected:
    ReportCapture m_reports;
};

// A card that records what the base class tells it.
class CTestCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "TestCard";

    explicit CTestCard(EnVXCardPos pos = CardPos_PanelBox, QWidget* parent = nullptr)
        : CVXCardObjBase(pos, parent)
    {
        RegisterUIEventHandler<CardEventClicked>(this, &CTestCard::OnCardEventClicked);
    }

    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    QSize GetCardIdealSize() override { return idealSize; }
    QSize GetCardMinSize() override { return minSize; }
    QSize GetCardMaxSize() override { return maxSize; }
    void OnCardWidthChangeNotify(const EnVXCardWidthRange& range) override
    {
        widthNotifications.push_back(range);
    }
    void OnInitContent(QWidget* content) override { initContentCalls.push_back(content); }
    QWidget* CreatePanelBoxTopWidget() override
    {
        ++topWidgetCreations;
        return new QWidget;
    }
    void OnPanelBoxTopWidgetVisibleChanged(bool visible) override { topWidgetVisibility.push_back(visible); }

    void OnCardEventClicked(const CardEventClicked* event)
    {
        ++clicks;
        if (onClicked)
            onClicked(event);
    }

    QSize idealSize{300, 200};
    QSize minSize{50, 50};
    QSize maxSize{5000, 5000};
    std::vector<EnVXCardWidthRange> widthNotifications;
    std::vector<QWidget*> initContentCalls;
    int topWidgetCreations = 0;
    std::vector<bool> topWidgetVisibility;
    int clicks = 0;
    std::function<void(const CardEventClicked*)> onClicked;
};

// A box widget holding a VTabWidget; records the events it receives.
class CTestBox : public QWidget, public CVXBoxObjBase
{
    Q_OBJECT
public:
    explicit CTestBox(QWidget* parent = nullptr, bool withTabWidget = true) : QWidget(parent)
    {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        if (withTabWidget) {
            m_pTabs = new vx_std_ui::VTabWidget(this);
            layout->addWidget(m_pTabs);
            SetTabWidget(m_pTabs);
        }
        RegisterUIEventHandler<CardEventStockIDChanged>(this, &CTestBox::OnCardEventStockIDChanged);
        RegisterUIEventHandler<CardEventClicked>(this, &CTestBox::OnCardEventClicked);
    }

    CVXVariantMapTree GetComboOptionInfo() override { return comboOptionInfo; }
    void RecalBoxSize() override { ++recalCount; }

    void OnCardEventStockIDChanged(const CardEventStockIDChanged* event)
    {
        stockIDs.push_back(event->u64StockID);
    }
    void OnCardEventClicked(const CardEventClicked* event)
    {
        ++clicks;
        if (onClicked)
            onClicked(event);
    }

    vx_std_ui::VTabWidget* m_pTabs = nullptr;
    CVXVariantMapTree comboOptionInfo;
    int recalCount = 0;
    std::vector<unsigned long long> stockIDs;
    int clicks = 0;
    std::function<void(const CardEventClicked*)> onClicked;
};

// A plain widget that listens to CardEventClicked.
class CClickListener : public QWidget, public VUIEventHandler
{
    Q_OBJECT
public:
    explicit CClickListener(QWidget* parent = nullptr, const char* name = "") : QWidget(parent)
    {
        setObjectName(QString::fromLatin1(name));
        RegisterUIEventHandler<CardEventClicked>(this, &CClickListener::OnCardEventClicked);
    }
    bool IsContinueDispatchUIEventToAllChild() const override { return continueToChildren; }

    void OnCardEventClicked(const CardEventClicked* event)
    {
        ++clicks;
        if (log)
            log->push_back(objectName().toStdString());
        if (onClicked)
            onClicked(event);
    }

    int clicks = 0;
    bool continueToChildren = true;
    std::vector<std::string>* log = nullptr;
    std::function<void(const CardEventClicked*)> onClicked;
};

// A holder that is a stop of the card-event walk (canvas, main frame, ...).
class CTestContainer : public CClickListener, public IVXUIEventContainer
{
    Q_OBJECT
public:
    CTestContainer(EnVXUIEventContainerKind kind, QWidget* parent, const char* name)
        : CClickListener(parent, name), m_kind(kind)
    {
    }
    EnVXUIEventContainerKind ContainerKind() const override { return m_kind; }
    QWidget* CurrentExpandedRegion() const override { return region; }
    QWidget* CurrentRegionContent() const override { return regionContent; }

    QWidget* region = nullptr;
    QWidget* regionContent = nullptr;

private:
    EnVXUIEventContainerKind m_kind;
};

} // namespace uiframe_test
