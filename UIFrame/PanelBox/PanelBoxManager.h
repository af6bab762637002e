#pragma once

// CVXPanelBoxManager: the process-wide registry of live panel boxes (by id, so that undo commands
// find re-created boxes), the current canvas, the active box, the multi-selection and the
// clipboard of copied boxes. It watches every mouse press of the application (an event filter on
// the application object, never consuming) to track the active box and the selection. Null boxes
// are ignored by every operation; boxes destroyed by other paths are skipped.

#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QVector>

#include <memory>

class CVXPanelBaseBox;
class CVXPanelScrollView;

struct UIFRAME_EXPORT VXPanelBoxCopyData
{
    QRect rcGeometry;        // the box's geometry on its canvas when copied
    CVXVariantMapTree data;  // the box record
};

class CVXPanelBoxManagerPrivate;

class UIFRAME_EXPORT CVXPanelBoxManager : public QObject
{
    Q_OBJECT
public:
    static CVXPanelBoxManager* instance();
    static CVXPanelBoxManager* instancePtr(); // null until created

    void AddPanelBox(CVXPanelBaseBox* box);
    void RemovePanelBox(CVXPanelBaseBox* box);
    CVXPanelBaseBox* GetPanelBox(unsigned long long id) const;

    CVXPanelBaseBox* GetActivePanelBox() const;
    void SetActivePanelBox(CVXPanelBaseBox* box);
    CVXPanelScrollView* GetCurrentPanelScrollView() const;
    void SetCurrentPanelScrollView(CVXPanelScrollView* view);

    bool IsPanelBoxSelected(CVXPanelBaseBox* box) const;
    QVector<CVXPanelBaseBox*> GetSelectedPanelBoxs() const;
    void AddSelectedPanelBox(CVXPanelBaseBox* box);
    void SetSelectedPanelBox(CVXPanelBaseBox* box);
    void SetSelectedPanelBoxs(const QVector<CVXPanelBaseBox*>& boxes);
    void ClearSelectedPanelBox();

    void UpdateCopyData();
    void UpdateCopyData(int cardIndex);
    QVector<VXPanelBoxCopyData> GetCopyData() const;

    // Tests: forget everything (boxes, canvas, selection, clipboard).
    void ResetForTest();

Q_SIGNALS:
    void ActivePanelBoxChanged(CVXPanelBaseBox* box);
    void SelectionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CVXPanelBoxManager();
    ~CVXPanelBoxManager() override;
    std::unique_ptr<CVXPanelBoxManagerPrivate> d;
};
