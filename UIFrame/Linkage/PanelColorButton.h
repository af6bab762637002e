#pragma once

// CVXPanelColorButton: one colour of the colour pickers, a checkable 24 x 24 button painting a
// swatch of its colour key resolved through the theme (so it follows the theme). An empty key is
// "no colour" and paints a struck-through ring; a key the theme does not know paints the same
// and is logged once when set.

#include "UIFrame/Linkage/PanelHoverButton.h"

#include <QColor>

class UIFRAME_EXPORT CVXPanelColorButton : public CVXPanelHoverButton
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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_colorKey;
};
