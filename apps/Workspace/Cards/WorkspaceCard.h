#pragma once

// TplVXWorkspaceCard<Card, Base>: answers the frame's questions about a card (type, tab title,
// minimum and ideal size) from the card class's own `kCardType` and `StaticCardStyle()`, the
// same two the card factory reads, so that a live card and its registry entry cannot disagree.
// A card derives from it with its real base as `Base` (CVXWorkspaceCardBase or a base built on
// it); the maximum size stays the frame's default.

#include "apps/Workspace/Cards/WorkspaceCardBase.h"

#include "UIFrame/CardBaseStyle.h"

#include <QSize>
#include <QString>

namespace vx_ws {

// What a card class answers in StaticCardStyle(): its tab title and sizes in pixels.
inline CVXCardBaseStyle MakeCardStyle(const QString& title, QSize ideal, QSize minimum, QSize maximum)
{
    CVXCardBaseStyle style;
    style.idealSize = ideal;
    style.minSize = minimum;
    style.maxSize = maximum;
    style.title = title;
    return style;
}

template <typename Card, typename Base = CVXWorkspaceCardBase> class TplVXWorkspaceCard : public Base
{
public:
    using Base::Base;

    QString GetCardObjType() override { return QString::fromLatin1(Card::kCardType); }
    QString GetCardStaticTitle() override { return Card::StaticCardStyle().title; }
    QSize GetCardMinSize() override { return Card::StaticCardStyle().minSize; }
    QSize GetCardIdealSize() override { return Card::StaticCardStyle().idealSize; }
};

} // namespace vx_ws
