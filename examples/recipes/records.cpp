// SPDX-License-Identifier: MIT
// Logs to a file and to standard error.
#include <fstream>
#include <iostream>

#include <qor/File.h>
#include <qor/Log.h>

/// Copies the records that were written since the last call to standard error.
static void copyRecords(std::ifstream& log)
{
    for (char byte; log.get(byte);) {
        std::clog.put(byte);
    }
    std::clog.flush();
    log.clear(); // so that the next call reads on after this end of the file
}

int main()
{
    if (!qor::Log::open("records.log", false)) {
        std::cerr << "records.log cannot be opened.\n";
        return 1;
    }
    std::ifstream log("records.log");
    qor::Log::info("Started with %d arguments", 0);
    copyRecords(log);
    qor::File::deleteFile("missing.txt"); // the library's own record
    qor::Log::close();
    copyRecords(log);
}
