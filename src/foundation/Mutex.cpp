// SPDX-License-Identifier: MIT
#include "qor/Mutex.h"

#include "platform/Platform.h"

namespace qor
{

Mutex::Mutex() : m_Handle(platform::createLock(), platform::destroyLock) {}

Mutex::Mutex(const Mutex& other) = default;

Mutex& Mutex::operator=(const Mutex& other) = default;

Mutex::~Mutex() = default;

void Mutex::lock()
{
    platform::acquire(*m_Handle);
}

void Mutex::unlock()
{
    platform::release(*m_Handle);
}

} // namespace qor
