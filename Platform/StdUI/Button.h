#pragma once

// VButton: a push button painted in the theme's colours, in one of two styles. The primary
// style is the filled accent button of a dialog's main action; the secondary style is the
// outlined button of the other actions. No style sheet is involved: the button paints itself.

#include "Platform/StdUI/StdUIExport.h"

#include <QPushButton>

namespace vx_std_ui {

class VXSTDUI_EXPORT VButton : public QPushButton
{
    Q_OBJECT
public:
    enum class Style
    {
        Primary,
        Secondary,
    };

    explicit VButton(QWidget* parent = nullptr);
    VButton(const QString& text, Style style, QWidget* parent = nullptr);
    ~VButton() override;

    Style buttonStyle() const { return m_style; }
    void setButtonStyle(Style style);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Style m_style = Style::Secondary;
    bool m_hovered = false;
};

} // namespace vx_std_ui
