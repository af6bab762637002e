#pragma once

// CVXAccountSelector: a compact account picker. It shows the current account as
// "name · currency" with a drop-down mark; a click (or Space/Enter) opens a menu of the trade
// service's accounts. AccountPicked fires only when the user chooses an account other than the
// current one, never for SetAccountID. Without a trade service (or with an id the service does
// not know) it shows a placeholder and opens no menu.

#include "Platform/StdUI/Menu.h"

#include <QPointer>
#include <QWidget>

namespace vx_ws {

class CVXAccountSelector : public QWidget
{
    Q_OBJECT
public:
    explicit CVXAccountSelector(QWidget* parent = nullptr);
    ~CVXAccountSelector() override;

    void SetAccountID(unsigned long long accountId);
    unsigned long long AccountID() const { return m_u64AccountID; }
    // What the selector shows: "name · currency", or the placeholder.
    QString DisplayText() const;
    // Opens the account menu below the selector (non-blocking). Null when there is nothing to
    // pick from.
    vx_std_ui::VMenu* ShowMenu();
    // The menu while it is open, else null.
    vx_std_ui::VMenu* OpenMenu() const { return m_pMenu; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void AccountPicked(unsigned long long accountId);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void OnMenuTriggered(QAction* action);

    unsigned long long m_u64AccountID = 0;
    bool m_bHover = false;
    QPointer<vx_std_ui::VMenu> m_pMenu;
};

} // namespace vx_ws
