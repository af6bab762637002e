#pragma once

// CVXStackedTabFramePageBase: a tab-frame page whose main content (index 0 of its stack) can be
// replaced by one inner page at a time. CardEventInnerPageSwitch shows the inner page of the
// event's type, made by the factory registered for that type; the inner page that was shown is
// dropped after its state is kept per type, and a later page of that type gets it back.
// CardEventInnerPageBack returns to the main content. The page stops the card-event walk.
// Restore data: the type of the inner page shown ("innerPageType", -1 for the main content) and
// that page's own data ("innerPageData").

#include "UIFrame/TabFrame/TabFramePageBase.h"
#include "UIFrame/UIEventContainer.h"

#include "Platform/Core/VariantMapTree.h"
#include "Platform/StdUI/Factory.h"

#include <QPointer>

#include <map>
#include <memory>

class QStackedWidget;
class CardEventInnerPageSwitch;
class CardEventInnerPageBack;

class UIFRAME_EXPORT CVXStackedTabFramePageBase : public CVXTabFramePageBase, public IVXUIEventContainer
{
    Q_OBJECT
public:
    // Makes the inner page of one type; create() receives the jump information.
    using InnerPageFactory = vx_std_ui::TIFactory<QWidget, CVXVariantMapTree>;
    static constexpr int kNoInnerPage = -1;

    explicit CVXStackedTabFramePageBase(QWidget* parent = nullptr);
    ~CVXStackedTabFramePageBase() override;

    // The main content, index 0 of the stack; replaces (and deletes) an earlier one.
    void SetMainContent(QWidget* content);
    QWidget* MainContent() const;
    QStackedWidget* Stack() const { return m_pStack; }

    void RegisterInnerPageFactory(int type, std::shared_ptr<InnerPageFactory> factory);
    // The inner page held now (shown or not), its type, and whether it is shown.
    QWidget* InnerPage() const;
    int InnerPageType() const { return m_nInnerPageType; }
    bool IsInnerPageShown() const;
    // The state kept for a type when its page was dropped (empty when none).
    CVXVariantMapTree SavedInnerPageState(int type) const;

    // Shows the inner page of `type` (see the header comment); false for -1 or a type without
    // factory (logged), which changes nothing.
    bool SwitchToInnerPage(int type, const CVXVariantMapTree& jumpInfo);
    void BackToMainContent();

    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override;
    void SetObjRestoreData(const CVXVariantMapTree& data) override;

    EnVXUIEventContainerKind ContainerKind() const override;

protected:
    // The new inner page, once it is current, with the jump information that opened it (the
    // factory had it too). Default: nothing.
    virtual void OnInnerPageJump(QWidget* page, int type, const CVXVariantMapTree& jumpInfo);

private:
    void OnCardEventInnerPageSwitch(const CardEventInnerPageSwitch* event);
    void OnCardEventInnerPageBack(const CardEventInnerPageBack* event);

    QStackedWidget* m_pStack = nullptr;
    QPointer<QWidget> m_pMainContent;
    QPointer<QWidget> m_pInnerPage;
    int m_nInnerPageType = kNoInnerPage;
    std::map<int, std::shared_ptr<InnerPageFactory>> m_factories;
    std::map<int, CVXVariantMapTree> m_savedStates;
};
