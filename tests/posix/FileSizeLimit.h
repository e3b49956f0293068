// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

#include <sys/resource.h>

/// Makes writing beyond a file size fail, as on a full disk, as long as it exists.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(std::size_t size) : m_FormerHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_Former);
        set(size);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_Former);
        std::signal(SIGXFSZ, m_FormerHandler);
    }

    void set(std::size_t size) const
    {
        const rlimit limit = {size, m_Former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

private:
    void (*const m_FormerHandler)(int);
    rlimit m_Former = {};
};
