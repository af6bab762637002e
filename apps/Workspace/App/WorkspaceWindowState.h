#pragma once

// CVXWorkspaceWindowState: what the main window remembers of itself between runs, as a plain
// value with its own JSON form: geometry, the current frame, the security of the watch-list
// frame, the panel workspace's page tabs (a gallery with its current tab page, or a canvas with
// its title, layout key and canvas record) and the current page, and the layout shortcuts.
//
// Reading is the first phase of a restore: FromJson checks everything (types, ranges, the
// canvas records' binary form) and either gives a complete state or refuses the whole file.
// The file functions save atomically (a failed write keeps the previous file) and set an
// unreadable file aside under a ".corrupt" name that never replaces an earlier one.

#include "UIFrame/TabFrame/TabFrameKey.h"

#include "Platform/Core/VariantMapTree.h"

#include <QByteArray>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

namespace vx_ws {

struct CVXWorkspaceWindowState
{
    static constexpr int kVersion = 1;
    // Limits that keep a hostile file from costing much: more pages than anyone opens, titles
    // longer than any tab shows.
    static constexpr int kMaxPages = 64;
    static constexpr int kMaxTitleLength = 256;
    static constexpr int kMaxShortcuts = 64;
    static constexpr qint64 kMaxFileSize = 64 * 1024 * 1024;

    enum class PageKind
    {
        Gallery,
        Canvas,
    };

    struct Page
    {
        PageKind kind = PageKind::Gallery;
        QString title;
        int galleryTab = 0;               // gallery: CVXPanelLayoutPage::TabPage
        unsigned long long layoutKey = 0; // canvas: the layout Ctrl+S saves over
        CVXVariantMapTree canvas;         // canvas: its GetObjRestoreData record
        bool unsaved = false;             // canvas: changed since its layout was last saved

        bool operator==(const Page& o) const
        {
            return kind == o.kind && title == o.title && galleryTab == o.galleryTab &&
                   layoutKey == o.layoutKey && canvas == o.canvas && unsaved == o.unsaved;
        }
    };

    QRect geometry; // normal geometry; null: let the window choose
    bool maximized = false;
    EnVXTabFrameKey currentFrame = TabFrameKey_PanelWorkspace;
    unsigned long long watchListStockId = 0; // 0: the frame's default
    QVector<Page> pages;
    int currentPage = 0;
    QStringList shortcuts; // panel shortcut ids, in menu order

    bool operator==(const CVXWorkspaceWindowState& o) const
    {
        return geometry == o.geometry && maximized == o.maximized && currentFrame == o.currentFrame &&
               watchListStockId == o.watchListStockId && pages == o.pages && currentPage == o.currentPage &&
               shortcuts == o.shortcuts;
    }

    // The frames the main window has; the state names no other.
    static bool IsKnownFrame(unsigned int key);

    QByteArray ToJson() const;
    // False with `error` (what is wrong, for the log) when anything is malformed, out of range
    // or of a newer version; `out` is then untouched.
    static bool FromJson(const QByteArray& bytes, CVXWorkspaceWindowState* out, QString* error);

    // "<user folder>/WorkspaceWindowState.json".
    static QString FilePath(unsigned long long userId);

    enum class LoadResult
    {
        Missing, // no file: a first start
        Loaded,
        SetAside, // unreadable: logged with its path and renamed; start fresh
    };
    static LoadResult Load(const QString& path, CVXWorkspaceWindowState* out);
    // Atomic; false (logged) when the file could not be written, the old file then stays.
    static bool Save(const CVXWorkspaceWindowState& state, const QString& path);
    // Where an unreadable file goes: path + ".corrupt", or path + ".N.corrupt" for the first N
    // not taken.
    static QString SetAsidePath(const QString& path);
};

} // namespace vx_ws
