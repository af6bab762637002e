#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"

#include "Platform/Core/Environment.h"
#include "Platform/StdUI/Menu.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionMenuItem>

namespace {

CVXDefaultPanelLayoutExporter* s_exporter = nullptr;

const QWidget* StyleWidget(const QStyleOptionMenuItem& option)
{
    return qobject_cast<const QWidget*>(option.styleObject);
}

QStyle* StyleOf(const QWidget* widget)
{
    return widget ? widget->style() : QApplication::style();
}

// The entry inside its menu: builds the menu item option the way the menu would and lets the
// action paint; a click triggers the action and closes the menu.
class ExportItemWidget : public QWidget
{
public:
    ExportItemWidget(CVXDefaultPanelLayoutExportAction* action, QWidget* parent)
        : QWidget(parent), m_action(action)
    {
        setMouseTracking(true);
        setAttribute(Qt::WA_Hover);
    }

    QSize sizeHint() const override
    {
        const QStyleOptionMenuItem option = MakeOption();
        QFont font = option.font;
        font.setPixelSize(CVXDefaultPanelLayoutExportAction::FontTokenPixelSize(
            CVXDefaultPanelLayoutExportAction::kFontToken));
        const QFontMetrics metrics(font);
        const int indent = CVXDefaultPanelLayoutExportAction::TextIndent(option, Menu());
        const QSize content(indent * 2 + metrics.horizontalAdvance(option.text), metrics.height());
        return StyleOf(Menu())->sizeFromContents(QStyle::CT_MenuItem, &option, content, Menu());
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (!m_action)
            return;
        QPainter painter(this);
        m_action->paint(&painter, MakeOption(), Menu());
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (!m_action || event->button() != Qt::LeftButton || !rect().contains(event->pos()))
            return;
        QPointer<vx_std_ui::VMenu> menu(Menu());
        m_action->trigger();
        if (menu)
            menu->close();
    }

    void enterEvent(QEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

private:
    vx_std_ui::VMenu* Menu() const { return qobject_cast<vx_std_ui::VMenu*>(parentWidget()); }

    QStyleOptionMenuItem MakeOption() const
    {
        QStyleOptionMenuItem option;
        option.initFrom(Menu() ? static_cast<const QWidget*>(Menu()) : this);
        option.styleObject = Menu() ? static_cast<QObject*>(Menu()) : const_cast<ExportItemWidget*>(this);
        option.rect = rect();
        option.menuItemType = QStyleOptionMenuItem::Normal;
        option.checkType = QStyleOptionMenuItem::NotCheckable;
        option.text = m_action ? m_action->text() : QString();
        option.icon = m_action ? m_action->icon() : QIcon();
        option.font = font();
        option.menuRect = Menu() ? Menu()->rect() : rect();
        option.maxIconWidth = StyleOf(Menu())->pixelMetric(QStyle::PM_SmallIconSize, nullptr, Menu());
        option.state = QStyle::State_Enabled;
        if (underMouse())
            option.state |= QStyle::State_Selected;
        return option;
    }

    QPointer<CVXDefaultPanelLayoutExportAction> m_action;
};

} // namespace

CVXDefaultPanelLayoutExporter* CVXDefaultPanelLayoutExporter::Instance()
{
    if (core::environment::IsReleaseAppVersion())
        return nullptr;
    if (!s_exporter)
        s_exporter = new CVXDefaultPanelLayoutExporter();
    return s_exporter;
}

void CVXDefaultPanelLayoutExporter::ResetForTest()
{
    delete s_exporter;
    s_exporter = nullptr;
}

bool CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout()
{
    const CVXDefaultPanelLayoutExporter* exporter = Instance();
    return exporter && exporter->m_bExportDefaultPanelLayout;
}

void CVXDefaultPanelLayoutExporter::SetExportDefaultPanelLayout(bool on)
{
    m_bExportDefaultPanelLayout = on;
}

int CVXDefaultPanelLayoutExportAction::FontTokenPixelSize(int token)
{
    // Tokens 0..5 of the toolkit's type scale.
    static constexpr int kPixelSizes[] = {10, 11, 12, 13, 14, 16};
    constexpr int count = int(sizeof(kPixelSizes) / sizeof(kPixelSizes[0]));
    return kPixelSizes[qBound(0, token, count - 1)];
}

CVXDefaultPanelLayoutExportAction::CVXDefaultPanelLayoutExportAction(const QString& text,
                                                                     vx_std_ui::VMenu* menu)
    : QWidgetAction(menu)
{
    setText(text);
}

int CVXDefaultPanelLayoutExportAction::TextIndent(const QStyleOptionMenuItem& option, const QWidget* menu)
{
    QStyle* style = StyleOf(menu);
    const int padding = style->pixelMetric(QStyle::PM_MenuHMargin, &option, menu) +
                        style->pixelMetric(QStyle::PM_MenuPanelWidth, &option, menu);
    const int checkWidth =
        qMax(option.maxIconWidth, style->pixelMetric(QStyle::PM_IndicatorWidth, &option, menu));
    return padding + checkWidth;
}

void CVXDefaultPanelLayoutExportAction::paint(QPainter* painter, const QStyleOptionMenuItem& option,
                                              const vx_std_ui::VMenu* menu) const
{
    if (!painter)
        return;
    // The style draws the item without text or icon: background and selection only.
    QStyleOptionMenuItem background = option;
    background.text.clear();
    background.icon = QIcon();
    StyleOf(menu)->drawControl(QStyle::CE_MenuItem, &background, painter, menu);

    drawText(painter, option, option.rect.left(), option.rect.top());

    if (!option.icon.isNull()) {
        QStyle* style = StyleOf(menu);
        const int size = style->pixelMetric(QStyle::PM_SmallIconSize, &option, menu);
        const int margin = style->pixelMetric(QStyle::PM_MenuHMargin, &option, menu) +
                           style->pixelMetric(QStyle::PM_MenuPanelWidth, &option, menu);
        const QRect column(option.rect.left() + margin, option.rect.top(), qMax(option.maxIconWidth, size),
                           option.rect.height());
        const QRect iconRect = QStyle::visualRect(
            option.direction, option.rect,
            QStyle::alignedRect(option.direction, Qt::AlignCenter, QSize(size, size), column));
        const QIcon::Mode mode =
            option.state.testFlag(QStyle::State_Enabled) ? QIcon::Normal : QIcon::Disabled;
        option.icon.paint(painter, iconRect, Qt::AlignCenter, mode);
    }
}

void CVXDefaultPanelLayoutExportAction::drawText(QPainter* painter, const QStyleOptionMenuItem& option,
                                                 int left, int top) const
{
    if (!painter)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setRenderHint(QPainter::TextAntialiasing, true);
    QFont font = option.font;
    font.setPixelSize(FontTokenPixelSize(kFontToken));
    painter->setFont(font);
    painter->setPen(QColor(Qt::red));
    const int x = left + TextIndent(option, StyleWidget(option));
    const QRect textRect(x, top, qMax(0, option.rect.right() - x), option.rect.height());
    painter->drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
    painter->restore();
}

QWidget* CVXDefaultPanelLayoutExportAction::createWidget(QWidget* parent)
{
    return new ExportItemWidget(this, parent);
}
