#pragma once

// The manager's private state, shared by its source files (the manager itself and export/import).

#include "UIFrame/Canvas/PanelLayoutManager.h"

#include <QHash>
#include <QMutex>
#include <QVector>

#include <memory>

// Orders the writes and deletions of user-folder files: each request for a key gets a ticket,
// and a worker acts only if its ticket is still the newest for that key when it holds the lock.
// So a save overtaken in the pool by a later save or a deletion of the same layout does nothing.
struct VXPanelLayoutFileTickets
{
    QMutex mutex;
    QHash<unsigned long long, quint64> newest;
    quint64 next = 0; // main thread only

    // A new ticket for the layout's file; only the newest ticket of a key may write it.
    quint64 Issue(unsigned long long key)
    {
        const quint64 ticket = ++next;
        QMutexLocker lock(&mutex);
        newest.insert(key, ticket);
        return ticket;
    }
};

struct CVXPanelLayoutManager::Impl
{
    QList<CVXPanelLayoutTemplate> layouts;
    // The key of each layout at the same position: lookups without reading the trees.
    QVector<unsigned long long> keys;
    QMap<unsigned long long, DefaultLayoutEntry> defaultEntries;
    QSet<unsigned long long> deleteSet;
    unsigned long long userId = 0;
    CVXPanelLayoutCloudSync* cloudSync = nullptr;
    QString recentFolder;
    int builtInCount = 0;       // built-in layouts sit at the front of the list
    quint64 loadGeneration = 0; // a load started before the last clear is dropped
    int pendingFileWork = 0;
    std::shared_ptr<VXPanelLayoutFileTickets> tickets = std::make_shared<VXPanelLayoutFileTickets>();

    int IndexOf(unsigned long long key) const { return keys.indexOf(key); }
};

namespace panel_layout_manager_detail {
// The file-name choice of export and import (the test hook or the non-native Qt dialogs).
QString ChooseFile(QWidget* parent, CVXPanelLayoutManager::FileDialogKind kind, const QString& caption,
                   const QString& proposedPath);
} // namespace panel_layout_manager_detail
