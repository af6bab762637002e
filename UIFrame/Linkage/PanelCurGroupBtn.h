#pragma once

// CVXPanelCurGroupBtn: the linkage button in a panel box's title strip. A box in a group shows
// its group id on the group's colour; a box in no group shows a link glyph. Clicking it is
// reported through QAbstractButton::clicked; the box then opens the group setting popup.

#include "UIFrame/Linkage/PanelHoverButton.h"

class UIFRAME_EXPORT CVXPanelCurGroupBtn : public CVXPanelHoverButton
{
    Q_OBJECT
public:
    // 22 x 22, in no group.
    explicit CVXPanelCurGroupBtn(QWidget* parent = nullptr);
    ~CVXPanelCurGroupBtn() override;

    // An empty id means "in no group".
    void SetGroup(const QString& groupId);
    QString GetGroup() const;

    // A colour key: a linkage-group style key, a legacy group colour key (converted) or a theme
    // colour key. An empty or unknown key paints the group in the theme's selection colour.
    void SetColor(const QString& colorKey);
    QString GetColor() const;

    // The colour the group id is painted on, resolved in the current theme.
    QColor ResolvedGroupColor() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_groupId;
    QString m_colorKey;
};
