#pragma once

// CVXWorkspacePreferences: what the program remembers for every user of the machine, in the
// data root: the last user id the login dialog offers, the theme and the language. A missing or
// unreadable file gives the defaults (logged when unreadable); saving is atomic.

#include <QString>

namespace vx_ws {

struct CVXWorkspacePreferences
{
    unsigned long long lastUserId = 0;
    QString theme = QStringLiteral("light");    // "light" | "dark"
    QString language = QStringLiteral("zh_CN"); // "zh_CN" | "en"

    // The folder that holds "users/<id>" (core::product_path's data root).
    static QString DataRoot();
    // "<data root>/workspace-preferences.json".
    static QString FilePath();
    // "<data root>/cloud-store.sqlite": the embedded cloud store every user of the machine shares.
    static QString DefaultStorePath();

    static CVXWorkspacePreferences Load(const QString& path);
    bool Save(const QString& path) const;
};

} // namespace vx_ws
