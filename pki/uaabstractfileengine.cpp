#include "pki/uaabstractfileengine.h"

#include "pki/uafileengine.h"

#include <memory>
#include <utility>

namespace {

UaAbstractFileEngine* s_pEngine = nullptr;

/// Never destroyed: static objects of a host may use files while the process ends.
UaAbstractFileEngine& systemEngine() noexcept
{
    static UaAbstractFileEngine* const pEngine = std::make_unique<UaFileEngine>().release();
    return *pEngine;
}

} // namespace

UaAbstractFileEngine::~UaAbstractFileEngine() = default;

UaAbstractFileEngine& uaFileEngine() noexcept
{
    return s_pEngine != nullptr ? *s_pEngine : systemEngine();
}

UaAbstractFileEngine* uaSetFileEngine(UaAbstractFileEngine* pEngine) noexcept
{
    return std::exchange(s_pEngine, pEngine);
}
