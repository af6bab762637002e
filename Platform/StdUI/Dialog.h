#pragma once

// VDialog: the toolkit's modal dialog. A frameless window painted in the theme's colours, with
// an optional title bar (title text, close button "Close_Button", drag to move), a content area
// and a row of VButtons at the bottom right. It is opened with open() (window modal over its
// parent, application modal without one), never with exec(), and is centred over its parent
// each time it is shown. Escape and the close button reject(); Return clicks the default button.
// Derived dialogs decide what their buttons do: a button added here only emits clicked().

#include "Platform/StdUI/Button.h"
#include "Platform/StdUI/StdUIExport.h"

#include <QDialog>

#include <memory>

class QVBoxLayout;

namespace vx_std_ui {

class VXSTDUI_EXPORT VDialog : public QDialog
{
    Q_OBJECT
public:
    enum class Frame
    {
        Titled,    // a painted title bar with the title and a close button
        Frameless, // content and buttons only
    };

    explicit VDialog(QWidget* parent = nullptr, Frame frame = Frame::Titled);
    ~VDialog() override;

    void setTitle(const QString& title);
    QString title() const;
    Frame frame() const;

    // The layout of the content area, between the title bar and the button row.
    QVBoxLayout* contentLayout() const;
    // Appends a button to the button row; it is owned by the dialog. `objectName` names it for
    // tests and automation.
    VButton* addButton(const QString& text, VButton::Style style, const QString& objectName);
    // The button Return clicks (null: Return does nothing).
    void setDefaultButton(VButton* button);
    VButton* defaultButton() const;

    // Moves the dialog so that its centre is over the centre of its parent's window (or of the
    // screen without a parent).
    void centreOverParent();

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_std_ui
