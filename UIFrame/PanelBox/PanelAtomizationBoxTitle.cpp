// CVXPanelAtomizationBox: its title strip, the row of buttons at the right end of the tab bar.

#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelAtomizationBox_p.h"

#include "UIFrame/Linkage/PanelCurGroupBtn.h"
#include "UIFrame/UIEvent.h"

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/TabWidget.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

namespace {

// The title strip's buttons in a row: fixed-size buttons placed left to right, centred vertically,
// 2 px apart, 4 px in from the left and 8 px from the right, where the margin keeps them clear of
// the right edge's resize band. Placed by hand: a layout per box costs more than this row needs.
// The row is the box's own chrome, never card content: card events spreading through the box
// (a linked stock change reaches every box of its group) stop here instead of visiting each button.
class CTitleButtonRow : public QWidget, public IVUIEventHandlerBase
{
public:
    void DirectHandleUIEvent(const IVUIEventTypeBase*) override {}
    bool IsContinueDispatchUIEventToAllChild() const override { return false; }
    bool HasListenedEvent(const IVUIEventTypeBase*) const override { return false; }

    static constexpr int kLeftMargin = 4;
    static constexpr int kRightMargin = 8;
    static constexpr int kSpacing = 2;

    explicit CTitleButtonRow(int height)
    {
        setObjectName(QStringLiteral("PanelBoxTitleButtons"));
        setFixedHeight(height);
    }

    QSize sizeHint() const override
    {
        int width = kLeftMargin + kRightMargin;
        const QList<QWidget*> buttons = Buttons();
        for (const QWidget* button : buttons)
            width += button->width();
        if (!buttons.isEmpty())
            width += kSpacing * (buttons.size() - 1);
        return QSize(width, height());
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event);
        PlaceButtons();
    }
    void showEvent(QShowEvent* event) override
    {
        QWidget::showEvent(event);
        PlaceButtons();
    }

private:
    void PlaceButtons()
    {
        int x = kLeftMargin;
        for (QWidget* button : Buttons()) {
            button->move(x, (height() - button->height()) / 2);
            x += button->width() + kSpacing;
        }
    }

    QList<QWidget*> Buttons() const { return findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly); }
};

// An icon button of the title strip. Every box shows the same two glyphs in the same few states,
// and stroking a glyph costs far more than copying a picture of it: each look is drawn once by the
// icon button itself into a cached picture, keyed by everything the drawing depends on (glyph,
// size, state and the resolved theme colours, so that a changed theme makes new pictures).
class CTitleIconButton : public vx_std_ui::VIconButton
{
public:
    CTitleIconButton(vx_std_ui::IconGlyph glyph, QWidget* parent) : VIconButton(glyph, QString(), parent) {}

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (HasIcon()) {
            VIconButton::paintEvent(event);
            return;
        }
        const qreal ratio = devicePixelRatioF();
        const QString cacheKey = CacheKey(ratio);
        QPixmap picture;
        if (!QPixmapCache::find(cacheKey, &picture)) {
            picture = QPixmap(size() * ratio);
            picture.setDevicePixelRatio(ratio);
            picture.fill(Qt::transparent);
            {
                QPainter painter(&picture);
                PaintButton(painter);
            }
            QPixmapCache::insert(cacheKey, picture);
        }
        QPainter(this).drawPixmap(0, 0, picture);
    }

private:
    QString CacheKey(qreal ratio) const
    {
        const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
        const QString bgKey =
            vx_std_ui::IconButtonBackgroundKey(IsHovered() && isEnabled(), isDown(), isChecked());
        const QColor background =
            !bgKey.isEmpty() && theme.HasColor(bgKey) ? theme.GetColor(bgKey) : QColor();
        QString glyphKey = isEnabled() ? GlyphColorKey() : QStringLiteral("ct_text_disabled");
        if (!theme.HasColor(glyphKey))
            glyphKey = QStringLiteral("ct_text_secondary");
        return QStringLiteral("vx_title_button:%1:%2x%3@%4:%5:%6")
            .arg(static_cast<int>(Glyph()))
            .arg(width())
            .arg(height())
            .arg(ratio)
            .arg(background.isValid() ? background.rgba() : 0u)
            .arg(theme.GetColor(glyphKey).rgba());
    }
};

} // namespace

void CVXPanelAtomizationBox::Impl::BuildTitleStrip()
{
    auto* buttons = new CTitleButtonRow(kTitleHeight);
    groupBtn = new CVXPanelCurGroupBtn(buttons);
    groupBtn->setObjectName(QStringLiteral("PanelBoxGroupButton"));
    menuBtn = new CTitleIconButton(vx_std_ui::IconGlyph::Menu, buttons);
    menuBtn->setObjectName(QStringLiteral("PanelBoxMenuButton"));
    closeBtn = new CTitleIconButton(vx_std_ui::IconGlyph::Close, buttons);
    closeBtn->setObjectName(QStringLiteral("PanelBoxCloseButton"));
    tabs->setCornerWidget(buttons);
    tabs->tabBar()->setFixedHeight(kTitleHeight);

    QObject::connect(groupBtn, &QAbstractButton::clicked, q, &CVXPanelAtomizationBox::OnClickGroup);
    QObject::connect(menuBtn, &QAbstractButton::clicked, q, &CVXPanelAtomizationBox::OnClickMenu);
    QObject::connect(closeBtn, &QAbstractButton::clicked, q, &CVXPanelAtomizationBox::OnClickClose);
}
