// SPDX-License-Identifier: MIT
// Logs to standard error instead of a file.
#include <iostream>

#include <qor/File.h>
#include <qor/Log.h>

int main()
{
    // Append, since standard error may be a file that holds more than this program's records.
    if (!qor::Log::open("/dev/stderr", true)) {
        std::cout << "Standard error cannot be opened.\n";
    }
    qor::Log::info("Started with %d arguments", 0);
    qor::File::deleteFile("missing.txt"); // the library's own record
    qor::Log::close();
    std::cout << "done\n";
}
