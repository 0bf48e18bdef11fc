#include "platform/startup/initcount.h"

int InitCount::init()
{
    ++m_count;
    return m_count > 1 ? 0 : m_start();
}

void InitCount::cleanup()
{
    if (m_count == 0) {
        return;
    }
    --m_count;
    if (m_count == 0) {
        m_stop();
    }
}
