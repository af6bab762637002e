#pragma once

// CVXPanelGroupButton: one linkage group of the group setting popup, a checkable 24 x 24 button
// that paints its group id (selected groups in the theme's selection colour).

#include "UIFrame/UIFrameExport.h"

#include <QAbstractButton>

class UIFRAME_EXPORT CVXPanelGroupButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit CVXPanelGroupButton(QWidget* parent = nullptr);
    ~CVXPanelGroupButton() override;

    void SetGroup(const QString& groupId);
    QString GetGroup() const;

    bool IsHovered() const { return m_hovered; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString m_groupId;
    bool m_hovered = false;
};
