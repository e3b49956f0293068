// SPDX-License-Identifier: MIT
#pragma once

#include "Host.h"
#include "shared/Command.h"

/// The base class of commands that use the host.
class HostCommand : public Command
{
public:
    HostCommand(Host& host, const TDescription& description)
        : Command(host, description), m_Host(host)
    {
    }

protected:
    Host& m_Host;
};
