#pragma once

// CVXOrderTicketButton: the flat button of the order-entry cards, painted in theme colours. A
// button has an accent colour key (ct_buy, ct_sell, ct_selected, ...): a checked or "solid"
// button is filled with it, an unchecked one shows it as an outline and text. Checkable buttons
// of one QButtonGroup make the side and order-type toggles.

#include <QAbstractButton>

namespace vx_ws {

class CVXOrderTicketButton : public QAbstractButton
{
    Q_OBJECT
public:
    CVXOrderTicketButton(const QString& text, const char* accentKey, QWidget* parent = nullptr);

    void SetAccentKey(const char* accentKey);
    // Filled even when not checked (the main action of a card).
    void SetSolid(bool solid);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    const char* m_accentKey;
    bool m_solid = false;
    bool m_hover = false;
};

} // namespace vx_ws
