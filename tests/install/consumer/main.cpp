// SPDX-License-Identifier: MIT
#include <cstdio>

#include <qor/qor.h>

int main()
{
    qor::Thread thread;
    if (!thread.start(nullptr)) {
        return 1;
    }
    thread.wait();
    qor::XMLElement document("");
    if (document.parse("<answer>42</answer>") < 0 || document.getValueAsInteger() != 42) {
        return 1;
    }
    std::puts(qor::getVersion());
    return 0;
}
