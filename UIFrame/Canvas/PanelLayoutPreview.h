#pragma once

// The cards of the layout gallery. CVXPanelLayoutPreview is one card: a preview image with a
// title and a subtitle (the remarks), a "more" button with the card's menu, click-to-open.
// CVXPanelLayoutList is the scrollable list of the cards of one gallery page, arranged by
// CVXPanelLayoutListLayout in rows of fixed-size cards that reflow with the width.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/ScrollArea.h"

#include <QLayout>
#include <QPixmap>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <memory>

namespace vx_std_ui {
class VIconButton;
class VMenu;
} // namespace vx_std_ui

// The arrangement of fixed-size cards in rows, left to right and top to bottom, without widgets.
namespace panel_layout_list {

struct Metrics
{
    QSize card;
    int margin = 0;  // around the whole grid
    int spacing = 0; // between cards, both directions
};

// The gallery's card size and spacing.
UIFRAME_EXPORT Metrics DefaultMetrics();
// Cards per row for a width: as many as fit between the margins, at least one.
UIFRAME_EXPORT int ColumnCount(const Metrics& metrics, int width);
// The rectangle of card `index` in a grid of the given width.
UIFRAME_EXPORT QRect CardRect(const Metrics& metrics, int width, int index);
// The height that `count` cards need at the given width (margins included; an empty grid is
// the two margins).
UIFRAME_EXPORT int GridHeight(const Metrics& metrics, int width, int count);

} // namespace panel_layout_list

class UIFRAME_EXPORT CVXPanelLayoutPreview : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString title READ GetTitle WRITE SetTitle)
    Q_PROPERTY(QString subtitle READ GetSubtitle WRITE SetSubtitle)
    Q_PROPERTY(QPixmap previewPixmap READ GetPreviewPixmap WRITE SetPreviewPixmap)
    Q_PROPERTY(LayoutType layoutType READ GetLayoutType WRITE SetLayoutType)
public:
    enum LayoutType
    {
        DefaultLayout = 0,    // a built-in layout
        CustomizedLayout = 1, // a user layout
        AddLayout = 2,        // the card that starts a blank canvas
    };
    Q_ENUM(LayoutType)

    // Menu entries: the action data is the text id of the entry.
    enum MenuId
    {
        MenuOpen = 253025,
        MenuDelete = 253026,
        MenuEdit = 252647,
        MenuAddShortcut = 276801,
    };

    explicit CVXPanelLayoutPreview(QWidget* parent = nullptr);
    ~CVXPanelLayoutPreview() override;

    // The add-layout card (texts 253031 and 253032), owned by the caller.
    static CVXPanelLayoutPreview* AddLayoutPreview(QWidget* parent = nullptr);

    QString GetTitle() const;
    void SetTitle(const QString& title);
    QString GetSubtitle() const;
    void SetSubtitle(const QString& subtitle);
    QPixmap GetPreviewPixmap() const;
    void SetPreviewPixmap(const QPixmap& pixmap);
    LayoutType GetLayoutType() const;
    void SetLayoutType(LayoutType type);
    unsigned long long GetLayoutKey() const;
    void SetLayoutKey(unsigned long long key);
    unsigned long long GetUpdatedTimestamp() const;
    void SetUpdatedTimestamp(unsigned long long timestamp);

    // For a built-in layout: its preview image file drawn onto the themed page background
    // ("style_skin_panel/page_background"). A null pixmap for any other card.
    QPixmap GetDefaultLayoutPixmap() const;
    // "<title>_<server time ms>_<random>".
    QString GenerateShortcutId() const;

    // Where the preview image is painted (clicks there open the layout), and the more button.
    QRect PreviewRect() const;
    vx_std_ui::VIconButton* MoreButton() const;
    bool IsHovered() const;

    // The card's menu, owned by the caller: open; delete and edit for a user layout; add
    // shortcut for every card but the add-layout card.
    vx_std_ui::VMenu* BuildMenu();
    // Shows the menu at a global position and returns at once; the menu deletes itself when it
    // closes. The open menu, for tests; null when none is shown.
    void OpenMenu(const QPoint& globalPos);
    vx_std_ui::VMenu* OpenedMenu() const;

    void OnPreviewPixmapClicked();
    // Renames the layout through the save dialog in edit mode.
    void OnPanelLayoutEdit();
    // Asks the main frame's business module for a shortcut to this layout; false when it failed.
    bool AddShortcut();

    QSize sizeHint() const override;

Q_SIGNALS:
    void OpenPanelLayoutRequest(unsigned long long layoutKey, bool isDefaultLayout);
    void DeletePanelLayoutRequest(unsigned long long layoutKey);
    void AddPanelLayoutRequest();

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void OnMenuTriggered(QAction* action);
    void UpdateToolTip(const QPoint& pos);
    void PlaceMoreButton();

    struct Impl;
    std::unique_ptr<Impl> d;
};

// A QLayout of fixed-size cards in rows that reflow with the width (see panel_layout_list).
class UIFRAME_EXPORT CVXPanelLayoutListLayout : public QLayout
{
    Q_OBJECT
public:
    explicit CVXPanelLayoutListLayout(QWidget* parent = nullptr);
    ~CVXPanelLayoutListLayout() override;

    void SetMetrics(const panel_layout_list::Metrics& metrics);
    const panel_layout_list::Metrics& GetMetrics() const;
    // Inserts a widget's item at a position (clamped to the ends).
    void InsertWidget(int index, QWidget* widget);

    void addItem(QLayoutItem* item) override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    int count() const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;

private:
    QVector<QLayoutItem*> m_items;
    panel_layout_list::Metrics m_metrics;
};

// The cards of one gallery page in a vertical scroll area. The list owns its cards.
class UIFRAME_EXPORT CVXPanelLayoutList : public vx_std_ui::VScrollArea
{
    Q_OBJECT
public:
    explicit CVXPanelLayoutList(QWidget* parent = nullptr);
    ~CVXPanelLayoutList() override;

    void AddPreview(CVXPanelLayoutPreview* preview);
    void InsertPreview(int index, CVXPanelLayoutPreview* preview);
    // Removes and deletes the card of that layout (not the add-layout card); false when none.
    bool RemovePreview(unsigned long long layoutKey);
    // The card of a layout, the add-layout card excepted; null when none.
    CVXPanelLayoutPreview* FindPreview(unsigned long long layoutKey) const;
    // The cards in their order.
    QVector<CVXPanelLayoutPreview*> Previews() const;
    int Count() const;
    QWidget* GetContentWidget() const;
    CVXPanelLayoutListLayout* GetListLayout() const;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void UpdateContentSize();

    QWidget* m_pContent = nullptr;
    CVXPanelLayoutListLayout* m_pLayout = nullptr;
};
