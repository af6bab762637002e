#include "apps/Workspace/TradeCards/AccountSelector.h"

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace vx_ws {

namespace {

constexpr int kPaddingX = 8;
constexpr int kArrowWidth = 10;

QString AccountText(const vx_trade::AccountInfo& account)
{
    return QString::fromStdString(account.name) + QStringLiteral(" \u00B7 ") +
           QString::fromStdString(account.currency);
}

} // namespace

CVXAccountSelector::CVXAccountSelector(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

CVXAccountSelector::~CVXAccountSelector()
{
    delete m_pMenu.data();
}

void CVXAccountSelector::SetAccountID(unsigned long long accountId)
{
    if (m_u64AccountID == accountId)
        return;
    m_u64AccountID = accountId;
    updateGeometry();
    update();
}

QString CVXAccountSelector::DisplayText() const
{
    const vx_trade::CVXSimTradeService* service = TradeService();
    if (service && m_u64AccountID != 0 && service->HasAccount(m_u64AccountID))
        return AccountText(service->GetAccount(m_u64AccountID));
    return core::langx::tr(970446, "无账户");
}

vx_std_ui::VMenu* CVXAccountSelector::ShowMenu()
{
    const vx_trade::CVXSimTradeService* service = TradeService();
    if (!service)
        return nullptr;
    const std::vector<vx_trade::AccountInfo> accounts = service->Accounts();
    if (accounts.empty())
        return nullptr;
    delete m_pMenu.data();
    // Parented to the selector so that it goes with the card; a popup stays a separate window.
    m_pMenu = new vx_std_ui::VMenu(this);
    m_pMenu->setAttribute(Qt::WA_DeleteOnClose);
    for (const vx_trade::AccountInfo& account : accounts)
        m_pMenu->addRadioAction(QStringLiteral("accounts"), AccountText(account),
                                QVariant::fromValue<qulonglong>(account.id), account.id == m_u64AccountID);
    connect(m_pMenu.data(), &vx_std_ui::VMenu::Triggered, this, &CVXAccountSelector::OnMenuTriggered);
    m_pMenu->popup(mapToGlobal(QPoint(0, height())));
    return m_pMenu;
}

QSize CVXAccountSelector::sizeHint() const
{
    const QFontMetrics fm(font());
    return {fm.horizontalAdvance(DisplayText()) + 2 * kPaddingX + kArrowWidth + 4, fm.height() + 8};
}

QSize CVXAccountSelector::minimumSizeHint() const
{
    const QFontMetrics fm(font());
    return {fm.horizontalAdvance(QStringLiteral("MMMM")) + 2 * kPaddingX + kArrowWidth, fm.height() + 8};
}

void CVXAccountSelector::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool active = m_bHover || hasFocus() || m_pMenu;
    painter.setPen(CVXWorkspaceCardBase::ThemeColor(active ? "ct_focus" : "ct_border"));
    painter.setBrush(CVXWorkspaceCardBase::ThemeColor(m_bHover ? "ct_hover" : "ct_bg_secondary"));
    painter.drawRoundedRect(frame, 3, 3);

    const QRect textRect = rect().adjusted(kPaddingX, 0, -(kPaddingX + kArrowWidth), 0);
    painter.setPen(CVXWorkspaceCardBase::ThemeColor("ct_text_primary"));
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(DisplayText(), Qt::ElideRight, textRect.width()));

    // The drop-down mark: a small filled triangle.
    const QPointF centre(width() - kPaddingX - kArrowWidth / 2.0, height() / 2.0 + 1);
    QPainterPath arrow;
    arrow.moveTo(centre + QPointF(-4, -2));
    arrow.lineTo(centre + QPointF(4, -2));
    arrow.lineTo(centre + QPointF(0, 2.5));
    arrow.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(CVXWorkspaceCardBase::ThemeColor("ct_text_secondary"));
    painter.drawPath(arrow);
}

void CVXAccountSelector::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        ShowMenu();
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void CVXAccountSelector::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        ShowMenu();
        event->accept();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void CVXAccountSelector::enterEvent(QEvent* event)
{
    m_bHover = true;
    update();
    QWidget::enterEvent(event);
}

void CVXAccountSelector::leaveEvent(QEvent* event)
{
    m_bHover = false;
    update();
    QWidget::leaveEvent(event);
}

void CVXAccountSelector::OnMenuTriggered(QAction* action)
{
    const unsigned long long picked = action->data().toULongLong();
    if (m_pMenu)
        m_pMenu->close();
    if (picked == 0 || picked == m_u64AccountID)
        return;
    SetAccountID(picked);
    Q_EMIT AccountPicked(picked);
}

} // namespace vx_ws
