#pragma once

// CVXPanelColorButton: one colour of the colour pickers, a checkable 24 x 24 button painting a
// swatch of its colour key resolved through the theme (so it follows the theme). An empty key is
// "no colour" and paints a struck-through ring; a key the theme does not know paints the same
// and is logged once when set.

#include "UIFrame/UIFrameExport.h"

#include <QAbstractButton>
#include <QColor>

class UIFRAME_EXPORT CVXPanelColorButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit CVXPanelColorButton(QWidget* parent = nullptr);
    ~CVXPanelColorButton() override;

    void SetColor(const QString& colorKey);
    QString GetColor() const;

    // The swatch colour in the current theme; invalid for "no colour" and unknown keys.
    QColor ResolvedColor() const;
    // The swatch's square, centred in the button.
    static QRect SwatchRect();

    bool IsHovered() const { return m_hovered; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString m_colorKey;
    bool m_hovered = false;
};
