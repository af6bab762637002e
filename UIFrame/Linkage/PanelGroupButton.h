#pragma once

// CVXPanelGroupButton: one linkage group of the group setting popup, a checkable 24 x 24 button
// that paints its group id (selected groups in the theme's selection colour).

#include "UIFrame/Linkage/PanelHoverButton.h"

class UIFRAME_EXPORT CVXPanelGroupButton : public CVXPanelHoverButton
{
    Q_OBJECT
public:
    explicit CVXPanelGroupButton(QWidget* parent = nullptr);
    ~CVXPanelGroupButton() override;

    void SetGroup(const QString& groupId);
    QString GetGroup() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_groupId;
};
