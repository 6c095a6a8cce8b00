// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SessionScope.h"

#include <utility>

namespace {

thread_local SessionScope t_own;
thread_local SessionScope *t_current = nullptr;

} // namespace

SessionScope &SessionScope::current()
{
    return t_current ? *t_current : t_own;
}

SessionScope *SessionScope::enter(SessionScope *scope)
{
    return std::exchange(t_current, scope);
}
