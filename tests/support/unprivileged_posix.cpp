#include "tests/support/unprivileged.h"

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace {

constexpr uid_t root = 0;
constexpr uid_t nobody = 65534;

void becomeOrDie(uid_t user)
{
    if (seteuid(user) != 0) {
        std::perror("seteuid");
        std::abort();
    }
}

} // namespace

Unprivileged::Unprivileged()
    : m_isDropped(geteuid() == root)
{
    if (m_isDropped) {
        becomeOrDie(nobody);
    }
}

Unprivileged::~Unprivileged()
{
    if (m_isDropped) {
        becomeOrDie(root);
    }
}
