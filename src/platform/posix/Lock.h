#pragma once

namespace qor::platform
{

struct TLock;

/// Gives a lock that the calling thread holds to another one that waits for it, if there is any,
/// and takes it back.
void offer(TLock& lock);

} // namespace qor::platform
