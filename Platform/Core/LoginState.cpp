#include "Platform/Core/LoginState.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/Post.h"

namespace core {

CLoginState& CLoginState::Instance()
{
    // Never destroyed: objects torn down after the application may still ask who is logged in.
    static CLoginState* instance = new CLoginState;
    return *instance;
}

bool CLoginState::Login(unsigned long long userId)
{
    if (userId == 0) {
        VXLOG_ERROR("CLoginState::Login: user id 0 refused");
        return false;
    }
    if (!VX_ASSERT(post::IsMainThread()))
        return false;
    if (userId == m_u64UserID)
        return true;
    Logout();
    m_u64UserID = userId;
    VXLOG_INFO("CLoginState::Login: user {} logged in", userId);
    Q_EMIT LoggedIn(userId);
    return true;
}

void CLoginState::Logout()
{
    if (m_u64UserID == 0)
        return;
    if (!VX_ASSERT(post::IsMainThread()))
        return;
    const unsigned long long previous = m_u64UserID;
    m_u64UserID = 0;
    VXLOG_INFO("CLoginState::Logout: user {} logged out", previous);
    Q_EMIT LoggedOut(previous);
}

} // namespace core
