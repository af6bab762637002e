#pragma once

// UIFrame's own value types stored in state trees, and their registration.

#include "UIFrame/UIFrameExport.h"

#include <QMetaType>

class QDataStream;

// The kind of a panel box, stored in a box record under "BoxType".
enum VXPanelBoxType : int
{
    VXPanelBoxType_AtomizationBox = 0, // single-card box
    VXPanelBoxType_CombinationBox = 1,
};
Q_DECLARE_METATYPE(VXPanelBoxType)

// Written as a qint32.
UIFRAME_EXPORT QDataStream& operator<<(QDataStream& stream, VXPanelBoxType type);
UIFRAME_EXPORT QDataStream& operator>>(QDataStream& stream, VXPanelBoxType& type);

// Registers every UIFrame value type with the state tree (meta-type, stream operators, codec,
// text form). Idempotent and thread-safe; it runs when the library loads and again, harmlessly,
// from the typed accessors. Needs no GUI application.
UIFRAME_EXPORT void RegisterStateTreeTypes();
