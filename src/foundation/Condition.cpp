// SPDX-License-Identifier: MIT
#include "qor/Condition.h"

#include "platform/Platform.h"

namespace qor
{

Condition::Condition() : m_Handle(platform::createEvent(), platform::destroyEvent) {}

Condition::Condition(const Condition& other) = default;

Condition& Condition::operator=(const Condition& other) = default;

Condition::~Condition() = default;

void Condition::wait(Mutex& mutex, unsigned int timeOut)
{
    static_assert(platform::NO_TIME_LIMIT == 0, "a time-out of 0 waits without a limit");
    platform::waitForEvent(*m_Handle, *mutex.m_Handle, timeOut);
}

void Condition::signal()
{
    platform::set(*m_Handle);
}

} // namespace qor
