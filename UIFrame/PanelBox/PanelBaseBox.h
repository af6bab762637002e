#pragma once

// CVXPanelBaseBox: what every panel box on the canvas has in common, whatever it holds: a
// process-unique id (never 0), the canvas that owns it, its linkage group, hit testing of its
// edges (resize) and title strip (move), and the command hooks that bracket a user gesture into
// an undoable command.
//
// Command hooks (definitions in PanelBoxCommandHooks.h, include it where gestures are bracketed):
// - BeforeCommand<Cmd>(args...): without an undo stack nothing; otherwise a new Cmd attached to
//   this box replaces (deletes) any pending command and records the state before the gesture.
// - AfterCommand<Cmd>(): when the pending command is a Cmd attached to this box, it records the
//   state after; pushed when it reports a change, deleted otherwise; the pending slot is cleared.
// - IsCurrentCommand<Cmd>(): the pending command is a Cmd.

#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QFrame>
#include <QPointer>

class CVXPanelScrollView;
class CVXPanelBoxMask;
class CVXPanelUndoStack;

class UIFRAME_EXPORT CVXPanelBaseBox : public QFrame
{
    Q_OBJECT
public:
    // Bits of a hit position; corners are sums.
    enum HitPos : int
    {
        HitNone = 0,
        HitTitle = 1,
        HitLeft = 2,
        HitRight = 4,
        HitTop = 8,
        HitBottom = 16,
        HitTopLeft = HitTop | HitLeft,         // 10
        HitTopRight = HitTop | HitRight,       // 12
        HitBottomLeft = HitBottom | HitLeft,   // 18
        HitBottomRight = HitBottom | HitRight, // 20
    };

    explicit CVXPanelBaseBox(QWidget* parent = nullptr);
    ~CVXPanelBaseBox() override;

    // A process-wide counter, incremented before use; wraps to 1, never 0.
    static unsigned long long GenerateNewId();
    // Tests: the counter as if `lastId` had just been issued (the next id is lastId + 1, or 1).
    static void SetIdCounterForTest(unsigned long long lastId);

    virtual CVXPanelScrollView* GetPanelScrollView() const;
    virtual void SetPanelScrollView(CVXPanelScrollView* view);
    virtual void GetObjRestoreData(CVXVariantMapTree* tree) const;
    virtual void GetObjRestoreData(CVXVariantMapTree* tree, int cardIndex) const;
    virtual QString GetGroupID() const;
    virtual void SetGroupID(const QString& groupId);
    virtual void SetGroupColor(const QString& color);
    virtual QString GetGroupColor() const;
    virtual CVXVariantMapTree GetAccountInfo();
    virtual CVXVariantMapTree GetComboOptionInfo();
    virtual CVXVariantMapTree GetOptionIndexInfo();
    virtual unsigned long long GetStockID() const;
    virtual CVXPanelBoxMask* GetMask() const;
    virtual unsigned long long GetBoxId() const = 0;
    virtual bool IsPopup() const;
    // Unregisters from the box manager at once, marks the box deleted, deletes it later.
    virtual void DeleteLaterEx();

    HitPos HitTestMouseMove(const QPoint& local) const;
    void UpdateCursorByHitPos(HitPos pos);
    HitPos GetLastHitPos() const { return m_enLastHitPos; }

    // The canvas's undo stack, null without a canvas.
    CVXPanelUndoStack* GetUndoStack() const;

    template <typename Cmd, typename... Args>
    void BeforeCommand(Args&&... args);
    template <typename Cmd>
    void AfterCommand();
    template <typename Cmd>
    bool IsCurrentCommand() const;

    bool IsDeleted() const { return m_bDeleted; }
    void SetMask(CVXPanelBoxMask* mask);

protected:
    // Gesture state shared by the box kinds.
    QPoint m_ptPress;          // press point, global, whole pixels
    QRect m_rcPressGeometry;   // geometry when the press began
    bool m_bPressed = false;
    HitPos m_enLastHitPos = HitNone;
    QString m_strGroupID;

private:
    QPointer<CVXPanelScrollView> m_pScrollView;
    QPointer<CVXPanelBoxMask> m_pMask;
    bool m_bDeleted = false;
};
