#pragma once

// Who is logged in. Signals fire only on a change, on the main thread.

#include "Platform/Core/CoreExport.h"

#include <QObject>

namespace core {

class VXCORE_EXPORT CLoginState : public QObject
{
    Q_OBJECT
public:
    static CLoginState& Instance();

    bool IsLoggedIn() const { return m_u64UserID != 0; }
    unsigned long long GetUserID() const { return m_u64UserID; }

    // Logging in as another user logs the current one out first. A user id of 0 is refused.
    bool Login(unsigned long long userId);
    void Logout();

Q_SIGNALS:
    void LoggedIn(unsigned long long userId);
    void LoggedOut(unsigned long long userId);

private:
    CLoginState() = default;
    unsigned long long m_u64UserID = 0;
};

} // namespace core
