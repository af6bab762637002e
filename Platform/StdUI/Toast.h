#pragma once

// VToast: a short message shown as a small rounded label over the bottom centre of a parent
// widget. It is a child of the parent (never a window of its own), takes no input, and fades
// out and deletes itself after the given time. A new toast on the same parent replaces the one
// still shown.

#include "Platform/StdUI/StdUIExport.h"

#include <QWidget>

class QTimer;
class QVariantAnimation;

namespace vx_std_ui {

class VXSTDUI_EXPORT VToast : public QWidget
{
    Q_OBJECT
public:
    // Object name of every toast (tests and automation find it by that name).
    static constexpr const char* kObjectName = "VToast";

    // Shows `text` over `parent` for `ms` milliseconds (at least 1), then fades it out. Returns
    // the toast, owned by the parent; null (with a logged error) for a null parent.
    static VToast* Show(QWidget* parent, const QString& text, int ms = 2000);

    QString text() const { return m_text; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    VToast(QWidget* parent, const QString& text);
    void place();
    void startFade();

    QString m_text;
    qreal m_opacity = 1.0;
    QTimer* m_timer = nullptr;
    QVariantAnimation* m_fade = nullptr;
};

} // namespace vx_std_ui
