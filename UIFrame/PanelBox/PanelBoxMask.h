#pragma once

// CVXPanelBoxMask: a transparent child laid over a panel box (it follows the box's size and lets
// every mouse event through). It paints the box's group colour as a band along the top edge and a
// frame while the box is selected or dragged, and marks its tab bar while a dragged tab would drop there; it
// is shown only while there is something to paint.

#include "UIFrame/UIFrameExport.h"

#include <QColor>
#include <QWidget>

class UIFRAME_EXPORT CVXPanelBoxMask : public QWidget
{
    Q_OBJECT
public:
    explicit CVXPanelBoxMask(QWidget* box);
    ~CVXPanelBoxMask() override;

    void SetSelected(bool selected);
    bool IsSelected() const { return m_bSelected; }
    void SetDragging(bool dragging);
    bool IsDragging() const { return m_bDragging; }
    // The place where a dragged tab would be dropped (box coordinates); an empty rect clears it.
    void SetDropHighlight(const QRect& rect);
    QRect GetDropHighlight() const { return m_rcDropHighlight; }
    // A colour text: a theme colour key ("ck_indigo450") or a colour name ("#3366ff").
    void SetGroupColor(const QString& color);
    QString GetGroupColor() const { return m_strGroupColor; }
    // The group colour resolved in the current theme; invalid when none or unknown.
    QColor ResolvedGroupColor() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void UpdateVisibility();

    bool m_bSelected = false;
    bool m_bDragging = false;
    QString m_strGroupColor;
    QRect m_rcDropHighlight;
};
